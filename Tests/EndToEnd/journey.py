# SPDX-License-Identifier: MIT
"""One journey through all that the sheets and commands do, told once and walked twice: by a hand that
presses keys and clicks, and by one that has assistive technology alone. What lies in the files after
each step is held, whole, against what was made by hand."""

import datetime as dt
import re

from driver import Home, Vantle, eventually, shown_text

# Values that differ from run to run, and say nothing of what the person did.
OWN = re.compile(rb"(?m)^(UID|DTSTAMP|CREATED|LAST-MODIFIED|COMPLETED):[^\r]*")

# The rules of 1996 until today, as the system's zone has them.
BERLIN = """BEGIN:VTIMEZONE
TZID:Europe/Berlin
BEGIN:DAYLIGHT
DTSTART:19700329T020000
TZOFFSETFROM:+0100
TZOFFSETTO:+0200
RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU
END:DAYLIGHT
BEGIN:STANDARD
DTSTART:19701025T030000
TZOFFSETFROM:+0200
TZOFFSETTO:+0100
RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU
END:STANDARD
END:VTIMEZONE
"""


def calendar(components):
    return f"BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Vantle//Vantle//EN\n{BERLIN}{components}END:VCALENDAR\n"


def shown_date(instant):
    """As a picker writes it in Britain."""
    month = "Jan Feb Mar Apr May Jun Jul Aug Sept Oct Nov Dec".split()[instant.month - 1]
    weekday = "Mon Tue Wed Thu Fri Sat Sun".split()[instant.weekday()]
    return f"{weekday} {instant.day} {month} {instant.year}   {instant:%H:%M}"


def local(instant):
    return f"TZID=Europe/Berlin:{instant:%Y%m%dT%H%M%S}"


class Journey:
    """The steps, in their order. A hand says how a thing is done; see test_journey.py for what it offers."""

    def __init__(self, test, make_hand):
        self.test = test
        test.maxDiff = None
        self.home = Home(sample=False)
        test.addCleanup(self.home.remove)
        for name, colour in (("Home", "#2f7de1"), ("Work", "#d6455d")):
            folder = self.home.calendars / name
            folder.mkdir()
            (folder / "displayname").write_text(name)
            (folder / "color").write_text(colour)
        self.vantle = Vantle(self.home, LC_ALL="en_GB.UTF-8")
        test.addCleanup(self.vantle.close)
        self.hand = make_hand(self.vantle)
        day = dt.datetime.combine(self.home.day, dt.time())
        self.start = day - dt.timedelta(days=1) + dt.timedelta(hours=9, minutes=30)
        self.end = day + dt.timedelta(days=1, hours=11)
        self.reminder = day + dt.timedelta(hours=8, minutes=15)
        self.due = day + dt.timedelta(hours=18, minutes=30)

    # --- What is in the files ---

    def files(self, calendar_name):
        return sorted((self.home.calendars / calendar_name).glob("*.ics"))

    def file_with(self, calendar_name, title):
        return next((file for file in self.files(calendar_name) if f"\r\nSUMMARY:{title}\r\n".encode()
                     in file.read_bytes()), None)

    def expect(self, calendar_name, title, wanted):
        """The item's file is that text, but for the values that are its own, in the end."""
        def content():
            file = self.file_with(calendar_name, title)
            if not file:
                return None
            unfolded = file.read_bytes().replace(b"\r\n ", b"")
            return OWN.sub(rb"\1:*", unfolded).decode().replace("\r\n", "\n")
        try:
            eventually(lambda: content() == wanted)
        except AssertionError:
            self.test.assertEqual(content(), wanted)

    # --- What is expected of each step ---

    def event(self, alarms, stamps=""):
        return calendar(f"""BEGIN:VEVENT
UID:*
DTSTAMP:*
CREATED:*
DTSTART;{local(self.start)}
DTEND;{local(self.end)}
SUMMARY:Design review
DESCRIPTION:Bring the boards.\\nAll of them.
URL:http://meet.example.org/review
LOCATION:Studio 2\\, Harbour house
{stamps}{alarms}END:VEVENT
""")

    def to_do(self, state="", stamps=""):
        return calendar(f"""BEGIN:VTODO
UID:*
DTSTAMP:*
CREATED:*
SUMMARY:Order bulbs
DESCRIPTION:Tulips and alliums.
URL:http://bulbs.example.org
DUE;{local(self.due)}
PRIORITY:1
{state}{stamps}BEGIN:VALARM
ACTION:DISPLAY
TRIGGER;RELATED=END:-P1D
DESCRIPTION:Order bulbs
END:VALARM
END:VTODO
""")

    SOUND = "BEGIN:VALARM\nACTION:AUDIO\nTRIGGER:-PT2H\nATTACH:bell\nEND:VALARM\n"

    def absolute(self):
        utc = self.reminder.astimezone(dt.timezone.utc)
        return (f"BEGIN:VALARM\nACTION:DISPLAY\nTRIGGER;VALUE=DATE-TIME:{utc:%Y%m%dT%H%M%SZ}\n"
                "DESCRIPTION:Design review\nEND:VALARM\n")

    @staticmethod
    def email(minutes):
        return (f"BEGIN:VALARM\nACTION:EMAIL\nTRIGGER:-PT{minutes}M\nATTENDEE:mailto:ada@example.org\n"
                "SUMMARY:Design review\nDESCRIPTION:Design review\nEND:VALARM\n")

    # --- The steps ---

    def walk(self):
        self.add_an_event_with_everything()
        self.change_and_remove_alarms()
        self.add_a_to_do_with_everything()
        self.tick_and_untick()
        self.move_both()
        self.delete_and_take_back()
        self.cancel_everywhere()

    def add_an_event_with_everything(self):
        hand = self.hand
        sheet = hand.new("Event")
        hand.type(sheet, "Title", "Design review")
        hand.type(sheet, "Location", "Studio 2, Harbour house")
        hand.type(sheet, "Link", "meet.example.org/review")
        hand.type(sheet, "Notes", "Bring the boards.\nAll of them.")
        hand.set_date(sheet, "Starts", self.start)

        alarm = hand.add_alarm(sheet)
        hand.type(alarm, "How long", "2")
        hand.choose(alarm, "Unit", "hours")
        hand.choose(alarm, "Sound", "bell")
        hand.confirm(alarm, "Alarm", "OK")
        alarm = hand.add_alarm(sheet)
        hand.switch(alarm, "radio button", "At a date and time")
        hand.set_date(alarm, "At a date and time", self.reminder)
        hand.confirm(alarm, "Alarm", "OK")
        alarm = hand.add_alarm(sheet)
        hand.type(alarm, "How long", "15")
        hand.switch(alarm, "radio button", "Send an e-mail")
        hand.type(alarm, "E-mail address", "ada@example.org")
        hand.confirm(alarm, "Alarm", "OK")

        # Last, so that the hand that has keys confirms from within a date.
        hand.set_date(sheet, "Ends", self.end)
        hand.confirm(sheet, "Event", "Save")
        self.expect("Home", "Design review", self.event(self.SOUND + self.absolute() + self.email(15)))

    def change_and_remove_alarms(self):
        hand = self.hand
        sheet = hand.edit("Events", "Design review", "Event")
        for role, name, text in (("text", "Title", "Design review"), ("text", "Location", "Studio 2, Harbour house"),
                                 ("spin button", "Starts", shown_date(self.start)),
                                 ("spin button", "Ends", shown_date(self.end)),
                                 ("text", "Link", "http://meet.example.org/review"),
                                 ("text", "Notes", "Bring the boards.\nAll of them.")):
            self.test.assertEqual(shown_text(sheet.find(role, name)), text)
        self.test.assertEqual(self.alarms(sheet)[0], "2 hours before, display a message and play bell alert sound")
        self.test.assertEqual(self.alarms(sheet)[2], "15 minutes before, send an email to ada@example.org")

        alarm = hand.edit_alarm(sheet, 2)
        hand.type(alarm, "How long", "25")
        hand.confirm(alarm, "Alarm", "OK")
        hand.remove_alarm(sheet, 1)
        eventually(lambda: len(self.alarms(sheet)) == 2, what="two alarms")
        hand.confirm(sheet, "Event", "Save")
        self.expect("Home", "Design review",
                    self.event(self.SOUND + self.email(25), "LAST-MODIFIED:*\nSEQUENCE:1\n"))

    @staticmethod
    def alarms(sheet):
        return [row.name for row in sheet.find("list", "Alarms").children()]

    def add_a_to_do_with_everything(self):
        hand = self.hand
        sheet = hand.new("To do")
        hand.type(sheet, "Title", "Order bulbs")
        hand.choose(sheet, "Priority", "High")
        hand.type(sheet, "Link", "bulbs.example.org")
        hand.type(sheet, "Notes", "Tulips and alliums.")
        hand.switch(sheet, "check box", "Has a due date")
        alarm = hand.add_alarm(sheet)
        hand.type(alarm, "How long", "1")
        hand.choose(alarm, "Unit", "days")
        hand.confirm(alarm, "Alarm", "OK")
        hand.set_date(sheet, "Due", self.due)
        hand.confirm(sheet, "To do", "Save")
        self.expect("Home", "Order bulbs", self.to_do())

    def tick_and_untick(self):
        self.hand.tick("Order bulbs")
        self.expect("Home", "Order bulbs", self.to_do(
            "COMPLETED:*\nPERCENT-COMPLETE:100\nSTATUS:COMPLETED\n", "LAST-MODIFIED:*\nSEQUENCE:1\n"))
        self.hand.tick("Order bulbs")
        self.expect("Home", "Order bulbs", self.to_do("STATUS:NEEDS-ACTION\n", "LAST-MODIFIED:*\nSEQUENCE:2\n"))

    def move_both(self):
        for kind, title, name in (("Events", "Design review", "Event"), ("To dos", "Order bulbs", "To do")):
            sheet = self.hand.edit(kind, title, name)
            self.hand.choose(sheet, "Calendar", "Work")
            self.hand.confirm(sheet, name, "Save")
        # The items themselves are as they were.
        self.expect("Work", "Design review", self.event(self.SOUND + self.email(25), "LAST-MODIFIED:*\nSEQUENCE:1\n"))
        self.expect("Work", "Order bulbs", self.to_do("STATUS:NEEDS-ACTION\n", "LAST-MODIFIED:*\nSEQUENCE:2\n"))
        eventually(lambda: not self.files("Home"), what="nothing left in the first calendar")
        self.test.assertEqual(len(self.files("Work")), 2)

    def delete_and_take_back(self):
        for kind, title in (("Events", "Design review"), ("To dos", "Order bulbs")):
            file = self.file_with("Work", title)
            before = file.read_bytes()
            self.hand.delete(kind, title)
            eventually(lambda file=file: not file.exists(), what="the file gone")
            eventually(lambda kind=kind, title=title: self.vantle.row(kind, title) is None, what="the row gone")
            self.hand.undo(title)
            eventually(file.exists, what="the file back")
            self.test.assertEqual(file.read_bytes(), before)
            eventually(lambda kind=kind, title=title: self.vantle.row(kind, title), what="the row back")

    def cancel_everywhere(self):
        hand = self.hand
        before = {file: file.read_bytes() for file in self.files("Work")}
        for kind, title, name in (("Events", "Design review", "Event"), ("To dos", "Order bulbs", "To do")):
            for change in (lambda sheet: hand.type(sheet, "Title", "Something else"),
                           lambda sheet: hand.type(sheet, "Notes", "Something else"),
                           lambda sheet, name=name: hand.set_date(
                               sheet, "Starts" if name == "Event" else "Due", self.end),
                           lambda sheet: hand.remove_alarm(sheet, 0),
                           lambda sheet: hand.choose(sheet, "Calendar", "Home")):
                sheet = hand.edit(kind, title, name)
                change(sheet)
                hand.cancel(sheet, name)
        sheet = hand.edit("Events", "Design review", "Event")
        alarm = hand.edit_alarm(sheet, 0)
        hand.type(alarm, "How long", "45")
        hand.cancel(alarm, "Alarm")
        self.test.assertEqual(self.alarms(sheet)[0], "2 hours before, display a message and play bell alert sound")
        hand.cancel(sheet, "Event")
        for name in ("Event", "To do"):
            sheet = hand.new(name)
            hand.type(sheet, "Title", "Nothing")
            hand.cancel(sheet, name)
        self.test.assertEqual({file: file.read_bytes() for file in self.files("Work")}, before)
        self.test.assertEqual(self.files("Home"), [])
