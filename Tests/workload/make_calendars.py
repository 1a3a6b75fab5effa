#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Make deterministic iCalendar test data for Vantle.

The same options always give byte-identical output, on any machine and any
Python from 3.8 on: the only source of chance is the seed, and no clock, time
zone database, locale or hash order is used.

Three layouts:
  vdir    OUT/<calendar>/displayname, OUT/<calendar>/color and one
          OUT/<calendar>/<uid>.ics per item (an override of one occurrence
          lies in the file of its series)
  big     OUT/<calendar>.ics, one file per calendar, with X-WR-CALNAME
  import  one VCALENDAR with every item, on standard output

Sizes (--size): small 500 events/100 to-dos over 3 years, medium 10,000/1,000
over 8 years, large 100,000/10,000 over 15 years. Whatever the size, every day
of the focus window (--focus-days around --date) holds exactly
--events-per-focus-day event occurrences, and the number of open to-dos
(--open-todos) and of to-dos completed in the shown week (--done-this-week) is
fixed: a day query must return the same amount at every size, so a time that
grows with the size is the store's doing and not the day's. A heavy day is made
with large values of those options.

--expect FILE writes what a reader must find: for every day of the focus window
the occurrences (uid, summary, start, end), the open to-dos and those completed
since the Monday of the week of --date. Day bounds are those of --local-zone:
run the program under test with TZ set to it.

Examples:
  make_calendars.py --size small --out /tmp/small --expect /tmp/small.json
  make_calendars.py --size medium --layout big --out /tmp/medium-big
  make_calendars.py --size small --layout import > /tmp/import.ics
  make_calendars.py --size small --events-per-focus-day 200 \\
      --focus-days 1 --open-todos 2000 --todos 2500 --out /tmp/heavy-day
"""

import argparse
import datetime as dt
import json
import os
import random
import sys

D, T, DAY = dt.datetime, dt.timedelta, dt.timedelta(days=1)
SIZES = {
    "small": dict(calendars=4, events=500, todos=100, years_before=2, years_after=1),
    "medium": dict(calendars=8, events=10000, todos=1000, years_before=6, years_after=2),
    "large": dict(calendars=16, events=100000, todos=10000, years_before=12, years_after=3),
}

# zone: (standard minutes, summer minutes, rule, standard name, summer name)
ZONES = {
    "Europe/Berlin": (60, 120, "EU", "CET", "CEST"),
    "Europe/London": (0, 60, "EU", "GMT", "BST"),
    "America/New_York": (-300, -240, "US", "EST", "EDT"),
    "America/Los_Angeles": (-480, -420, "US", "PST", "PDT"),
    "Australia/Sydney": (600, 660, "AU", "AEST", "AEDT"),
    "Asia/Tokyo": (540, 540, None, "JST", "JST"),
    "Asia/Kolkata": (330, 330, None, "IST", "IST"),
}
# rule: (start month, nth Sunday, end month, nth Sunday); -1 is the last one
RULES = {"EU": (3, -1, 10, -1), "US": (3, 2, 11, 1), "AU": (10, 1, 4, 1)}
DAYCODE = ["MO", "TU", "WE", "TH", "FR", "SA", "SU"]
COLORS = ["#1E6FD9", "#D93025", "#188038", "#E37400", "#8430CE", "#12A4AF",
          "#B3261E", "#5F6368", "#C2185B", "#00796B", "#6D4C41", "#3949AB"]
CALNAMES = ["Home", "Work", "Family", "Team", "Birthdays", "Travel", "School",
            "Projects", "Sports", "Büro", "Gesundheit", "Vereine", "予定",
            "Holidays", "On call", "Rooms"]
WHAT = ["Review", "Stand-up", "Planning", "Lunch", "Call", "Workshop", "Interview",
        "Training", "Dentist", "Rehearsal", "Dinner", "Deadline", "Demo", "Flight",
        "Sprechstunde", "Überprüfung", "会議", "Résumé", "Check-in", "Retrospective"]
WITH = ["Anna", "the board", "Jörg", "design", "Mei", "customer", "platform group",
        "parents", "Σοφία", "finance", "the choir", "supplier", "Olu", "neighbours"]
TASKS = ["Pay", "Write", "Buy", "Fix", "Send", "Call", "Book", "Clean", "Read",
         "Prepare", "Order", "Check", "Renew", "Return", "Überweisen", "買う"]
THING = ["invoice", "report", "tickets", "printer", "contract", "letter", "bicycle",
         "slides", "passport", "garden", "Protokoll", "insurance", "books", "牛乳"]
PLACES = ["Room 4", "Main Street 12, Springfield", "Office", "Café Größenwahn",
          "Station, platform 3", "video call", "Hall B; upper floor"]
WORDS = ("please bring the notes from last time and check the numbers before we "
         "start because some of them changed agenda one two three open points "
         "decision minutes follow up für später größere Änderungen 資料 確認 "
         "see https://example.org/notes/42 call +49 30 1234567 thanks").split()


class Chance:
    """All chance comes from random(), whose sequence Python guarantees."""

    def __init__(self, seed):
        self.r = random.Random(seed).random

    def hit(self, share):
        return self.r() < share

    def between(self, low, high):
        return low + int(self.r() * (high - low + 1))

    def pick(self, seq):
        return seq[int(self.r() * len(seq))]

    def weighted(self, pairs):
        x = self.r() * sum(w for _, w in pairs)
        for value, w in pairs:
            x -= w
            if x < 0:
                return value
        return pairs[-1][0]


def sunday(year, month, nth):
    if nth > 0:
        first = dt.date(year, month, 1)
        return first + T(days=(6 - first.weekday()) % 7 + 7 * (nth - 1))
    last = dt.date(year + month // 12, month % 12 + 1, 1) - DAY
    return last - T(days=(last.weekday() - 6) % 7)


def offset(zone, local):
    """Minutes east of UTC at a local time (never asked inside a gap)."""
    std, summer, rule = ZONES[zone][:3]
    if rule is None:
        return std
    m1, n1, m2, n2 = RULES[rule]
    hour1 = 2 if rule != "EU" else 1 + std // 60
    hour2 = {"EU": 2 + std // 60, "US": 2, "AU": 3}[rule]
    begin = D.combine(sunday(local.year, m1, n1), dt.time(hour1))
    end = D.combine(sunday(local.year, m2, n2), dt.time(hour2))
    on = begin <= local < end if m1 < m2 else (local >= begin or local < end)
    return summer if on else std


def vtimezone(zone):
    std, summer, rule, std_name, summer_name = ZONES[zone]

    def hhmm(m):
        return "%s%02d%02d" % ("-" if m < 0 else "+", abs(m) // 60, abs(m) % 60)
    out = ["BEGIN:VTIMEZONE", "TZID:" + zone]
    if rule is None:
        out += ["BEGIN:STANDARD", "DTSTART:20070101T000000", "TZNAME:" + std_name,
                "TZOFFSETFROM:" + hhmm(std), "TZOFFSETTO:" + hhmm(std), "END:STANDARD"]
    else:
        m1, n1, m2, n2 = RULES[rule]
        hour1 = 2 if rule != "EU" else 1 + std // 60
        hour2 = {"EU": 2 + std // 60, "US": 2, "AU": 3}[rule]
        for kind, m, n, hour, a, b, name in (
                ("DAYLIGHT", m1, n1, hour1, std, summer, summer_name),
                ("STANDARD", m2, n2, hour2, summer, std, std_name)):
            out += ["BEGIN:" + kind,
                    "DTSTART:%s" % D.combine(sunday(2007, m, n), dt.time(hour)).strftime("%Y%m%dT%H%M%S"),
                    "TZNAME:" + name, "TZOFFSETFROM:" + hhmm(a), "TZOFFSETTO:" + hhmm(b),
                    "RRULE:FREQ=YEARLY;BYMONTH=%d;BYDAY=%dSU" % (m, n), "END:" + kind]
    return out + ["END:VTIMEZONE"]


def esc(text):
    return (text.replace("\\", "\\\\").replace(";", "\\;")
            .replace(",", "\\,").replace("\n", "\\n"))


def fold(line):
    raw = line.encode("utf-8")
    if len(raw) <= 75:
        return raw + b"\r\n"
    out, limit = [], 75
    while len(raw) > limit:
        cut = limit
        while raw[cut] & 0xC0 == 0x80:
            cut -= 1
        out.append(raw[:cut])
        raw, limit = raw[cut:], 74
    out.append(raw)
    return b"\r\n ".join(out) + b"\r\n"


def stamp(t):
    return t.strftime("%Y%m%dT%H%M%S")


class Maker:
    def __init__(self, o):
        self.o = o
        self.c = Chance(o.seed)
        self.first = o.date - T(days=round(365.25 * o.years_before))
        self.last = o.date + T(days=round(365.25 * o.years_after))
        if self.first < dt.date(2008, 1, 1):
            sys.exit("make_calendars.py: the span must not begin before 2008 (zone rules)")
        self.f0 = o.date - T(days=o.focus_days // 2)
        self.quota = {self.f0 + i * DAY: o.events_per_focus_day for i in range(o.focus_days)}
        self.expected = {d: [] for d in self.quota}
        self.endless = self.serial = 0
        self.week0 = o.date - T(days=o.date.weekday())
        self.cals = ["cal%02d" % i for i in range(o.calendars)]
        # the first calendars hold most items, as people's do
        self.weights = [(c, 1.0 / (i + 1)) for i, c in enumerate(self.cals)]
        self.todo_info = {"open": [], "completed_since_monday": [], "completed_earlier": 0}

    def uid(self, kind):
        self.serial += 1
        return "%s-%06d-%08x@vantle.example" % (kind, self.serial, int(self.c.r() * 2**32))

    def notes(self):
        c, n = self.c, self.c.weighted([(8, 50), (25, 30), (80, 15), (400, 5)])
        words = [c.pick(WORDS) for _ in range(c.between(n // 2, n * 2))]
        for i in range(11, len(words), 12):
            words[i] += "\n"
        return " ".join(words)

    def common(self, created):
        o, c, out = self.o, self.c, []
        changed = created + T(minutes=c.between(0, 60 * 24 * 30))
        out += ["DTSTAMP:%sZ" % stamp(changed), "CREATED:%sZ" % stamp(created),
                "LAST-MODIFIED:%sZ" % stamp(changed), "SEQUENCE:%d" % c.weighted([(0, 7), (1, 2), (5, 1)])]
        if c.hit(o.notes):
            out.append("DESCRIPTION:" + esc(self.notes()))
        if c.hit(0.08):
            out.append("URL:https://example.org/items/%d" % c.between(1, 99999))
        if c.hit(0.15):
            out.append("CATEGORIES:" + c.pick(["work", "private", "urgent,work", "travel"]))
        return out

    def alarms(self, title, todo=False):
        o, c, out = self.o, self.c, []
        if not c.hit(o.alarms):
            return out
        for _ in range(c.weighted([(1, 80), (2, 15), (4, 5)])):
            action = c.weighted([("DISPLAY", 75), ("AUDIO", 18), ("EMAIL", 7)])
            trigger = c.weighted([("-PT15M", 40), ("-PT5M", 15), ("PT0S", 10), ("-PT1H", 15),
                                  ("-P1D", 12), ("PT30M", 4), ("", 4)])
            out += ["BEGIN:VALARM", "ACTION:" + action]
            if trigger:
                out.append("TRIGGER%s:%s" % (";RELATED=END" if todo else "", trigger))
            else:
                out.append("TRIGGER;VALUE=DATE-TIME:%sZ" % stamp(D.combine(
                    self.o.date + T(days=c.between(-300, 300)), dt.time(7, 0))))
            if action != "AUDIO":
                out.append("DESCRIPTION:" + esc(title))
            if action == "EMAIL":
                out += ["SUMMARY:" + esc(title), "ATTENDEE:mailto:me@example.org"]
            if c.hit(0.1) and trigger:
                out += ["REPEAT:2", "DURATION:PT5M"]
            out.append("END:VALARM")
        return out

    def attendees(self):
        o, c, out = self.o, self.c, []
        if not c.hit(o.attendees):
            return out
        out.append("ORGANIZER;CN=Anna Example:mailto:anna@example.org")
        for i in range(c.weighted([(2, 50), (5, 30), (12, 15), (40, 5)])):
            out.append("ATTENDEE;CN=Person %d;ROLE=%s;PARTSTAT=%s;CUTYPE=%s:mailto:p%d@example.org" % (
                i, c.weighted([("REQ-PARTICIPANT", 8), ("OPT-PARTICIPANT", 2)]),
                c.weighted([("ACCEPTED", 6), ("NEEDS-ACTION", 2), ("DECLINED", 1), ("TENTATIVE", 1)]),
                c.weighted([("INDIVIDUAL", 9), ("ROOM", 1)]), c.between(1, 500)))
        return out

    # recurrence ---------------------------------------------------------

    def rule(self, start):
        """A rule as a dict; 'starts' lists the occurrences up to past the focus window."""
        c, o = self.c, self.o
        freq = c.weighted([("WEEKLY", 55), ("DAILY", 12), ("MONTHLY", 18), ("YEARLY", 15)])
        interval = c.weighted([(1, 84), (2, 12), (3, 4)])
        by, wanted = "", None
        endless = (self.endless < o.endless_series and freq != "DAILY" and
                   c.hit(0.6 if freq == "YEARLY" else 0.3))
        n = {"DAILY": (3, 20), "WEEKLY": (4, 40), "MONTHLY": (3, 24), "YEARLY": (2, 8)}[freq]
        count = 10**6 if endless else c.between(*n)
        if freq == "WEEKLY":
            wanted = {start.weekday()}
            if c.hit(0.35):
                for _ in range(c.between(1, 2)):
                    wanted.add(c.between(0, 4))
            by = ";BYDAY=" + ",".join(DAYCODE[d] for d in sorted(wanted))
        nth = None
        if freq == "MONTHLY":
            if c.hit(0.5):
                nth = (start.day - 1) // 7 + 1
                if nth == 5:
                    nth = -1
                by = ";BYDAY=%d%s" % (nth, DAYCODE[start.weekday()])
            else:
                if start.day > 28:
                    start = start.replace(day=28)
                by = ";BYMONTHDAY=%d" % start.day
        if freq == "YEARLY" and (start.month, start.day) == (2, 29):
            start = start.replace(day=28)
        starts, horizon = [], D.combine(self.f0 + T(days=o.focus_days + 2), dt.time(0))
        k = 0
        monday = start - T(days=start.weekday())
        while len(starts) < count and (not starts or starts[-1] < horizon or not endless):
            if freq == "DAILY":
                starts.append(start + T(days=k * interval))
            elif freq == "WEEKLY":
                for d in sorted(wanted):
                    day = monday + T(days=7 * interval * k + d)
                    if day >= start and len(starts) < count:
                        starts.append(day)
            else:
                if freq == "YEARLY":
                    y, m = start.year + k * interval, start.month
                else:
                    y, m = divmod(start.year * 12 + start.month - 1 + k * interval, 12)
                    m += 1
                if nth is None:
                    starts.append(start.replace(year=y, month=m))
                else:
                    if nth > 0:
                        first = dt.date(y, m, 1)
                        day = first + T(days=(start.weekday() - first.weekday()) % 7 + 7 * (nth - 1))
                    else:
                        end = dt.date(y + m // 12, m % 12 + 1, 1) - DAY
                        day = end - T(days=(end.weekday() - start.weekday()) % 7)
                    starts.append(D.combine(day, start.time()))
            k += 1
        text = "FREQ=" + freq + (";INTERVAL=%d" % interval if interval > 1 else "")
        return dict(start=start, text=text + by, starts=starts, endless=endless,
                    end=None if endless else c.weighted([("COUNT", 45), ("UNTIL", 55)]))

    def draw(self, forced_day=None):
        """One event as plain data, with its occurrences; nothing is recorded yet."""
        c, o = self.c, self.o
        e = dict(allday=c.hit(0.12) and forced_day is None)
        if forced_day is not None:
            day = forced_day
        else:
            span = (self.last - self.first).days
            # half spread evenly, half leaning towards the present
            x = c.r() if c.hit(0.5) else (c.r() + c.r()) / 2 * 0.5 + o.years_before / (
                o.years_before + o.years_after) * 0.75 - 0.125
            day = self.first + T(days=int(min(max(x, 0), 0.9999) * span))
            if not e["allday"] and day.weekday() > 4 and c.hit(0.7):
                day -= T(days=c.between(2, 5))
        if e["allday"]:
            e["zone"], e["len"] = "date", T(days=c.weighted([(1, 80), (2, 8), (5, 8), (14, 4)]))
            start = D.combine(day, dt.time(0))
        else:
            e["zone"] = c.weighted([(o.local_zone, 80), ("UTC", 6), ("floating", 4)] +
                                   [(z, 10.0 / len(ZONES)) for z in sorted(ZONES)])
            if forced_day is not None:
                e["zone"] = o.local_zone
            hour = c.weighted([(7, 2), (8, 6), (9, 12), (10, 13), (11, 10), (12, 8), (13, 9),
                               (14, 11), (15, 10), (16, 8), (17, 5), (18, 5), (19, 5), (20, 3), (21, 1)])
            start = D.combine(day, dt.time(hour, c.weighted([(0, 55), (30, 30), (15, 10), (45, 5)])))
            e["len"] = T(minutes=c.weighted([(30, 30), (60, 40), (15, 6), (45, 6), (90, 8), (120, 7), (0, 1)] +
                                            ([(60 * 30, 2)] if forced_day is None else [])))
        e["rule"] = None
        starts = [start]
        if forced_day is None and c.hit(o.recurring):
            if e["len"] > DAY:
                e["len"] = DAY if e["allday"] else T(hours=1)
            e["rule"] = self.rule(start)
            start, starts = e["rule"]["start"], e["rule"]["starts"]
        e["start"], e["ex"], e["over"] = start, [], []
        if e["rule"] and len(starts) > 3:
            if c.hit(o.exdates):
                for _ in range(c.between(1, 4)):
                    x = starts[c.between(1, min(len(starts) - 2, 60))]
                    if x not in e["ex"]:
                        e["ex"].append(x)
            if c.hit(o.overrides):
                for _ in range(c.between(1, 3)):
                    x = starts[c.between(1, min(len(starts) - 2, 60))]
                    if x not in e["ex"] and x not in [r for r, _ in e["over"]]:
                        move = T(days=c.between(-1, 1)) if e["allday"] else T(minutes=30 * c.between(-4, 6))
                        e["over"].append((x, x + move))
        moved = {r for r, _ in e["over"]}
        occ = [(x, False) for x in starts if x not in e["ex"] and x not in moved]
        occ += [(n, True) for _, n in e["over"]]
        e["hits"] = {}
        for x, is_over in occ:
            if not -20 < (x.date() - self.f0).days < o.focus_days + 3:
                continue
            a, b = self.local(e, x), self.local(e, x + e["len"])
            d = max(a.date(), self.f0)
            while d < self.f0 + T(days=o.focus_days) and (D.combine(d, dt.time(0)) < b or (
                    a == b and d <= a.date())):
                e["hits"].setdefault(d, []).append((a, b, is_over))
                d += DAY
        return e

    def local(self, e, t):
        """A start in the item's own zone as local time of the local zone."""
        z = e["zone"]
        if z in ("date", "floating"):
            return t
        utc = t - T(minutes=0 if z == "UTC" else offset(z, t))
        std, summer = ZONES[self.o.local_zone][:2]
        for m in (summer, std):
            if offset(self.o.local_zone, utc + T(minutes=m)) == m:
                return utc + T(minutes=m)
        return utc + T(minutes=std)

    def time(self, e, name, t, params=""):
        z = e["zone"]
        if z == "date":
            return "%s%s;VALUE=DATE:%s" % (name, params, t.strftime("%Y%m%d"))
        if z == "UTC":
            return "%s%s:%sZ" % (name, params, stamp(t))
        if z == "floating":
            return "%s%s:%s" % (name, params, stamp(t))
        return "%s%s;TZID=%s:%s" % (name, params, z, stamp(t))

    def event(self, e):
        """Records the event as taken and returns (calendar, uid, zones, component lines)."""
        c = self.c
        uid, cal = self.uid("event"), c.weighted(self.weights)
        title = "%s with %s" % (c.pick(WHAT), c.pick(WITH))
        created = e["start"] - T(minutes=c.between(60, 60 * 24 * 90))
        body = [self.time(e, "DTSTART", e["start"])]
        if e["zone"] == "date" or c.hit(0.9):
            body.append(self.time(e, "DTEND", e["start"] + e["len"]))
        else:
            body.append("DURATION:PT%dM" % (e["len"].total_seconds() // 60))
        tail = []
        if c.hit(0.35):
            tail.append("LOCATION:" + esc(c.pick(PLACES)))
        tail += self.common(created)
        tail.append("STATUS:" + c.weighted([("CONFIRMED", 90), ("TENTATIVE", 8), ("CANCELLED", 2)]))
        if e["zone"] == "date" or c.hit(0.05):
            tail.append("TRANSP:TRANSPARENT")
        tail += self.attendees() + self.alarms(title)
        recur = []
        r = e["rule"]
        if r:
            self.endless += r["endless"]
            text = r["text"]
            if r["end"] == "COUNT":
                text += ";COUNT=%d" % len(r["starts"])
            elif r["end"] == "UNTIL":
                t = r["starts"][-1]
                if e["zone"] == "date":
                    text += ";UNTIL=" + t.strftime("%Y%m%d")
                elif e["zone"] == "floating":
                    text += ";UNTIL=" + stamp(t)
                else:
                    text += ";UNTIL=%sZ" % stamp(t - T(minutes=0 if e["zone"] == "UTC" else offset(e["zone"], t)))
            recur = ["RRULE:" + text] + [self.time(e, "EXDATE", x) for x in e["ex"]]
        lines = ["BEGIN:VEVENT", "UID:" + uid] + body + recur + ["SUMMARY:" + esc(title)] + tail + ["END:VEVENT"]
        for rid, new in e["over"]:
            lines += ["BEGIN:VEVENT", "UID:" + uid, self.time(e, "RECURRENCE-ID", rid),
                      self.time(e, "DTSTART", new), self.time(e, "DTEND", new + e["len"]),
                      "SUMMARY:" + esc(title + " (moved)"), "DTSTAMP:%sZ" % stamp(created),
                      "SEQUENCE:2", "END:VEVENT"]
        for d, hits in e["hits"].items():
            self.quota[d] -= len(hits)
            for a, b, is_over in hits:
                self.expected[d].append(dict(uid=uid, calendar=cal, summary=title + (" (moved)" if is_over else ""),
                                             start=a.isoformat(), end=b.isoformat(), allday=e["zone"] == "date",
                                             recurring=bool(r)))
        return cal, uid, [e["zone"]], lines

    def fits(self, e):
        return all(len(h) <= self.quota[d] for d, h in e["hits"].items())

    def events(self):
        o = self.o
        made = 0
        while made < o.events - sum(self.quota.values()):
            e = self.draw()
            if self.fits(e):
                made += 1
                yield self.event(e)
        for d in sorted(self.quota):
            while self.quota[d] > 0 and made < o.events:
                made += 1
                e = self.draw(forced_day=d)
                if self.fits(e):
                    yield self.event(e)
                else:
                    made -= 1

    def todos(self):
        o, c = self.o, self.c
        for i in range(o.todos):
            uid, cal = self.uid("todo"), c.weighted(self.weights)
            title = "%s %s" % (c.pick(TASKS), c.pick(THING))
            if i < o.open_todos:
                state, base = "open", o.date + T(days=c.between(-20, 40))
            elif i < o.open_todos + o.done_this_week:
                state, base = "week", o.date + T(days=c.between(-3, 3))
            else:
                state, base = "old", self.first + T(days=int(c.r() * max(1, (self.week0 - self.first).days - 8)))
            created = D.combine(base, dt.time(8, 0)) - T(minutes=c.between(60, 60 * 24 * 60))
            lines = ["BEGIN:VTODO", "UID:" + uid, "SUMMARY:" + esc(title)]
            zones, due = [], c.hit(o.due)
            if due:
                if c.hit(0.6):
                    lines.append("DUE;VALUE=DATE:" + base.strftime("%Y%m%d"))
                else:
                    lines.append("DUE;TZID=%s:%s" % (o.local_zone, stamp(D.combine(base, dt.time(c.between(8, 20), 0)))))
                    zones = [o.local_zone]
            priority = c.weighted([(0, 55), (1, 12), (5, 15), (9, 12), (3, 4), (7, 2)])
            if priority or c.hit(0.3):
                lines.append("PRIORITY:%d" % priority)
            lines += self.common(created)
            if state == "open":
                lines.append("STATUS:" + c.weighted([("NEEDS-ACTION", 9), ("IN-PROCESS", 1)]))
                self.todo_info["open"].append(uid)
            else:
                if state == "week":
                    day = self.week0 + T(days=c.between(0, o.date.weekday()))
                    self.todo_info["completed_since_monday"].append(uid)
                else:
                    day = base
                    self.todo_info["completed_earlier"] += 1
                lines += ["STATUS:COMPLETED", "PERCENT-COMPLETE:100",
                          "COMPLETED:%sZ" % stamp(D.combine(day, dt.time(c.between(8, 10), c.between(0, 59))))]
            lines += (self.alarms(title, True) if due else []) + ["END:VTODO"]
            yield cal, uid, zones, lines

    def items(self):
        for item in self.events():
            yield item
        for item in self.todos():
            yield item


HEAD = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Vantle//make_calendars//EN"]


def zone_lines(zones):
    return [line for z in zones if z in ZONES for line in vtimezone(z)]


def put(path, lines):
    with open(path, "wb") as f:
        f.write(b"".join(fold(x) for x in lines))


def main():
    p = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    p.add_argument("--out", help="folder to make (vdir, big); must not exist or be empty")
    p.add_argument("--layout", choices=["vdir", "big", "import"], default="vdir")
    p.add_argument("--size", choices=sorted(SIZES), default="small", help="preset of the next five (default small)")
    p.add_argument("--calendars", type=int)
    p.add_argument("--events", type=int)
    p.add_argument("--todos", type=int)
    p.add_argument("--years-before", type=float, help="years spanned before --date")
    p.add_argument("--years-after", type=float, help="years spanned after --date")
    p.add_argument("--seed", type=int, default=1)
    p.add_argument("--date", type=dt.date.fromisoformat, default=dt.date(2026, 3, 11),
                   help="the focus date (default 2026-03-11, a Wednesday)")
    p.add_argument("--local-zone", choices=sorted(ZONES), default="Europe/Berlin")
    p.add_argument("--focus-days", type=int, default=15, help="days of the focus window (default 15)")
    p.add_argument("--events-per-focus-day", type=int, default=12)
    p.add_argument("--open-todos", type=int, default=40)
    p.add_argument("--done-this-week", type=int, default=8)
    p.add_argument("--endless-series", type=int, default=40, help="most series without end (default 40)")
    for name, value, text in (("recurring", 0.10, "share of events that recur"),
                              ("exdates", 0.35, "share of series with excluded dates"),
                              ("overrides", 0.25, "share of series with overridden occurrences"),
                              ("alarms", 0.40, "share of items with alarms"),
                              ("notes", 0.45, "share of items with notes"),
                              ("attendees", 0.20, "share of events with attendees"),
                              ("due", 0.70, "share of to-dos with a due date")):
        p.add_argument("--" + name, type=float, default=value, metavar="SHARE", help="%s (default %.2f)" % (text, value))
    p.add_argument("--split-todos", action="store_true", help="put to-dos into collections of their own")
    p.add_argument("--expect", help="write the expected day contents as JSON to this file")
    o = p.parse_args()
    for key, value in SIZES[o.size].items():
        if getattr(o, key) is None:
            setattr(o, key, value)
    if o.layout != "import" and not o.out:
        p.error("--out is needed for the layouts vdir and big")
    if o.events < o.focus_days * o.events_per_focus_day:
        p.error("fewer events than the focus window asks for")
    if o.todos < o.open_todos + o.done_this_week:
        p.error("fewer to-dos than open and done ones asked for")
    m = Maker(o)
    cals = list(m.cals) + ([c + "-todo" for c in m.cals] if o.split_todos else [])
    counts = {c: 0 for c in cals}
    if o.layout != "import":
        os.makedirs(o.out, exist_ok=True)
        if os.listdir(o.out):
            sys.exit("make_calendars.py: %s is not empty" % o.out)
    head = lambda i: HEAD + ["X-WR-CALNAME:" + name(i), "X-APPLE-CALENDAR-COLOR:" + COLORS[i % len(COLORS)]] \
        + zone_lines(sorted(ZONES))

    def name(i):
        base = CALNAMES[i % o.calendars % len(CALNAMES)]
        if i % o.calendars >= len(CALNAMES):
            base += " %d" % (i % o.calendars // len(CALNAMES) + 1)
        return base + (" to-dos" if i >= o.calendars else "")

    open_files = {}
    if o.layout == "vdir":
        for i, c in enumerate(cals):
            os.makedirs(os.path.join(o.out, c))
            with open(os.path.join(o.out, c, "displayname"), "wb") as f:
                f.write(name(i).encode("utf-8"))
            with open(os.path.join(o.out, c, "color"), "wb") as f:
                f.write(COLORS[i % len(COLORS)].encode("ascii"))
    elif o.layout == "big":
        for i, c in enumerate(cals):
            open_files[c] = open(os.path.join(o.out, c + ".ics"), "wb", 1 << 20)
            open_files[c].write(b"".join(fold(x) for x in head(i)))
    else:
        sys.stdout.buffer.write(b"".join(fold(x) for x in HEAD + zone_lines(sorted(ZONES))))
    for cal, uid, zones, lines in m.items():
        if o.split_todos and uid.startswith("todo"):
            cal += "-todo"
        counts[cal] += 1
        if o.layout == "vdir":
            put(os.path.join(o.out, cal, uid + ".ics"), HEAD + zone_lines(zones) + lines + ["END:VCALENDAR"])
        else:
            (open_files[cal] if o.layout == "big" else sys.stdout.buffer).write(b"".join(fold(x) for x in lines))
    if o.layout == "big":
        for f in open_files.values():
            f.write(b"END:VCALENDAR\r\n")
            f.close()
    elif o.layout == "import":
        sys.stdout.buffer.write(b"END:VCALENDAR\r\n")
    if o.expect:
        days = {d.isoformat(): sorted(v, key=lambda x: (x["start"], x["uid"])) for d, v in sorted(m.expected.items())}
        with open(o.expect, "w", encoding="utf-8") as f:
            json.dump(dict(date=o.date.isoformat(), zone=o.local_zone, seed=o.seed, items=counts,
                           events_by_day=days, todos=m.todo_info), f, ensure_ascii=False, indent=1)
            f.write("\n")


if __name__ == "__main__":
    main()
