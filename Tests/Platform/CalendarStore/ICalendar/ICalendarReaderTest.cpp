// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <CivilDate.h>
#include <ICalendarReader.h>
#include <ZoneRegistry.h>

#include <QStringEncoder>
#include <QTest>

using namespace ICalendar;
using namespace Qt::StringLiterals;

namespace
{

Document read(const QByteArray &text)
{
    ZoneRegistry zones;
    return readDocument(text, zones);
}

Item readOne(const QByteArray &properties, const QByteArray &kind = "VEVENT")
{
    const Document document
        = read("BEGIN:VCALENDAR\r\nBEGIN:" + kind + "\r\n" + properties + "END:" + kind + "\r\nEND:VCALENDAR\r\n");
    return document.items.value(0);
}

UtcSeconds utc(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toSecsSinceEpoch();
}

} // namespace

class ICalendarReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eventIsRead();
    void taskIsRead();
    void attendeesAreRead();
    void alarmsAreRead();
    void calendarIsDescribed();
    void emptyTextIsAbsent();
    void escapesAreResolved_data();
    void escapesAreResolved();
    void firstOfTwoPropertiesCounts();
    void unknownBytesAreShownAsWellAsCanBe_data();
    void unknownBytesAreShownAsWellAsCanBe();
    void utf16IsReadButCannotBeChanged();
    void eventWithoutStartIsNotedAndNotMadeUp();
    void impossibleDatesAreNoted_data();
    void impossibleDatesAreNoted();
    void journalsAndFreeBusyAreNoItems();
    void itemsWithoutACalendarAroundThemAreRead();
    void taskWithoutADueDateIsDueAfterItsDuration();
    void completionIsTakenInEveryForm_data();
    void completionIsTakenInEveryForm();
    void placeOfAnItemIsThatOfItsComponent();
    void cutTextIsReadAsFarAsItGoes();
    void garbageHoldsNothing_data();
    void garbageHoldsNothing();
    void tooLongLineIsLeftOut();
    void longTitleIsKeptWhole();
    void problemsAreBounded();
    void aZoneIsThatOfItsOwnCalendar();
    void quotedParametersMayHoldColons();
};

void ICalendarReaderTest::eventIsRead()
{
    const Item item = readOne("UID:abc\r\nSUMMARY:Stand-up\r\nDESCRIPTION:Every day\\, at nine\r\nLOCATION:Room 1\r\n"
                              "URL:https://example.org/a\r\nSTATUS:CANCELLED\r\nSEQUENCE:3\r\n"
                              "DTSTART:20240514T070000Z\r\nDTEND:20240514T080000Z\r\nRRULE:FREQ=DAILY\r\n"
                              "EXDATE:20240515T070000Z,20240516T070000Z\r\nRDATE:20240520T120000Z\r\n");

    QCOMPARE(item.kind, Item::Kind::Event);
    QCOMPARE(item.uid, u"abc"_s);
    QCOMPARE(item.summary, u"Stand-up"_s);
    QCOMPARE(*item.description, u"Every day, at nine"_s);
    QCOMPARE(item.location, u"Room 1"_s);
    QCOMPARE(*item.url, u"https://example.org/a"_s);
    QVERIFY(item.isCancelled);
    QCOMPARE(item.sequence, 3);
    QCOMPARE(item.start->form, CivilTime::Form::Utc);
    QCOMPARE(item.start->civil, utc("2024-05-14T07:00:00Z"));
    QCOMPARE(item.end->civil, utc("2024-05-14T08:00:00Z"));
    QCOMPARE(item.durationSeconds, 3600);
    QCOMPARE(item.repetition->rules, QList<QByteArray> { "FREQ=DAILY" });
    QCOMPARE(item.repetition->excluded.size(), 2);
    QCOMPARE(item.repetition->added.size(), 1);
    QVERIFY(item.repeats());
}

void ICalendarReaderTest::taskIsRead()
{
    const Item item = readOne("UID:t\r\nSUMMARY:Iron\r\nDUE;VALUE=DATE:20240601\r\nPRIORITY:5\r\n"
                              "STATUS:NEEDS-ACTION\r\n",
        "VTODO");

    QCOMPARE(item.kind, Item::Kind::Task);
    QCOMPARE(item.toDo->due->form, CivilTime::Form::Date);
    QCOMPARE(item.toDo->due->civil, dayNumber(2024, 6, 1) * secondsPerDay);
    QCOMPARE(item.toDo->priority, 5);
    QVERIFY(!item.toDo->isCompleted);
    QVERIFY(!item.toDo->completed);
}

void ICalendarReaderTest::attendeesAreRead()
{
    const Item item = readOne("DTSTART:20240514T070000Z\r\n"
                              "ATTENDEE;CN=\"Lovelace, Ada\";PARTSTAT=accepted:mailto:ada@example.org\r\n"
                              "ATTENDEE;CN=Say ^'hi^':mailto:b@example.org\r\nATTENDEE:mailto:c@example.org\r\n");

    QCOMPARE(item.attendees->size(), 3);
    QCOMPARE(item.attendees->at(0).commonName, u"Lovelace, Ada"_s);
    QCOMPARE(item.attendees->at(0).status, u"ACCEPTED"_s);
    QCOMPARE(item.attendees->at(0).address, u"mailto:ada@example.org"_s);
    QCOMPARE(item.attendees->at(1).commonName, u"Say \"hi\""_s);
    QVERIFY(!item.attendees->at(2).commonName);
    QVERIFY(!item.attendees->at(2).status);
}

void ICalendarReaderTest::alarmsAreRead()
{
    const Item item = readOne("DTSTART:20240514T070000Z\r\n"
                              "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-P1DT2H\r\nEND:VALARM\r\n"
                              "BEGIN:VALARM\r\nTRIGGER;VALUE=DATE-TIME:20240514T060000Z\r\nATTACH:Basso\r\n"
                              "ACTION:audio\r\nEND:VALARM\r\n"
                              "BEGIN:VALARM\r\nACTION:EMAIL\r\nTRIGGER;RELATED=END:PT5M\r\n"
                              "ATTENDEE:MAILTO:a@example.org\r\nEND:VALARM\r\n"
                              "BEGIN:VALARM\r\nACTION:PROCEDURE\r\nTRIGGER:PT0S\r\nATTACH:file:///bin/true\r\n"
                              "END:VALARM\r\nSUMMARY:after the alarms\r\n");

    QCOMPARE(item.summary, u"after the alarms"_s);
    QCOMPARE(item.alarms->size(), 4);
    QCOMPARE(item.alarms->at(0).action, u"DISPLAY"_s);
    QCOMPARE(item.alarms->at(0).relativeTrigger, -26 * 3600);
    QCOMPARE(item.alarms->at(1).action, u"AUDIO"_s);
    QCOMPARE(item.alarms->at(1).sound, u"Basso"_s);
    QVERIFY(!item.alarms->at(1).url);
    QCOMPARE(item.alarms->at(1).absoluteTrigger, utc("2024-05-14T06:00:00Z"));
    QCOMPARE(item.alarms->at(2).emailAddress, u"a@example.org"_s);
    QVERIFY(item.alarms->at(2).relatedToEnd);
    QCOMPARE(item.alarms->at(2).relativeTrigger, 300);
    QCOMPARE(item.alarms->at(3).url, u"file:///bin/true"_s);
    QVERIFY(!item.alarms->at(3).sound);
}

void ICalendarReaderTest::calendarIsDescribed()
{
    const Document document = read("BEGIN:VCALENDAR\r\nX-WR-CALNAME:Tests\\, all\r\nCOLOR:turquoise\r\n"
                                   "X-APPLE-CALENDAR-COLOR:#FF2968FF\r\nEND:VCALENDAR\r\n");

    QCOMPARE(document.heading->name, u"Tests, all"_s);
    QCOMPARE(document.heading->color, u"#FF2968FF"_s);
    QVERIFY(document.items.isEmpty());
    QVERIFY(document.problems->isEmpty());
}

void ICalendarReaderTest::emptyTextIsAbsent()
{
    const Item item = readOne("DTSTART:20240514T070000Z\r\nSUMMARY:\r\nDESCRIPTION;X=1:\r\nLOCATION:\r\nURL:\r\n");

    QVERIFY(item.summary.isEmpty());
    QVERIFY(item.description->isEmpty());
    QVERIFY(item.location.isEmpty());
    QVERIFY(item.url->isEmpty());
}

void ICalendarReaderTest::escapesAreResolved_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("comma, semicolon, backslash") << QByteArray("a\\,b\\;c\\\\d") << u"a,b;c\\d"_s;
    QTest::newRow("new lines") << QByteArray("a\\nb\\Nc") << u"a\nb\nc"_s;
    QTest::newRow("an escaped backslash before n") << QByteArray("a\\\\nb") << u"a\\nb"_s;
    QTest::newRow("an escape that nobody knows") << QByteArray("a\\fb\\") << u"a\\fb\\"_s;
    QTest::newRow("control characters are kept") << QByteArray("a\x01\tb") << u"a\u0001\tb"_s;
}

void ICalendarReaderTest::escapesAreResolved()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, text);

    QCOMPARE(readOne("DTSTART:20240514\r\nSUMMARY:" + value + "\r\n").summary, text);
}

void ICalendarReaderTest::firstOfTwoPropertiesCounts()
{
    const Item item = readOne("DTSTART:20240514T070000Z\r\nDTSTART:20240515T070000Z\r\nSUMMARY:a\r\nSUMMARY:b\r\n"
                              "UID:1\r\nUID:2\r\n");

    QCOMPARE(item.start->civil, utc("2024-05-14T07:00:00Z"));
    QCOMPARE(item.summary, u"a"_s);
    QCOMPARE(item.uid, u"1"_s);
}

void ICalendarReaderTest::unknownBytesAreShownAsWellAsCanBe_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("Latin-1") << QByteArray("W\xE4sche") << u"Wäsche"_s;
    QTest::newRow("a damaged character among UTF-8") << QByteArray("W\xC3\xA4sche \xE2") << u"Wäsche \uFFFD"_s;
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << u"a\uFFFDb"_s;
    QTest::newRow("a character in two folds") << QByteArray("W\xC3\r\n \xA4sche") << u"Wäsche"_s;
}

void ICalendarReaderTest::unknownBytesAreShownAsWellAsCanBe()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, text);

    QCOMPARE(readOne("DTSTART:20240514\r\nSUMMARY:" + value + "\r\n").summary, text);
}

void ICalendarReaderTest::utf16IsReadButCannotBeChanged()
{
    const QString text = u"BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:20240514\r\nSUMMARY:Wäsche\r\nEND:VEVENT\r\n"
                         "END:VCALENDAR\r\n"_s;
    QStringEncoder encoder(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);

    const Document document = read(encoder(text));

    QCOMPARE(document.items.size(), 1);
    QCOMPARE(document.items[0].summary, u"Wäsche"_s);
    QVERIFY(document.isConverted);
    QVERIFY(!read(text.toUtf8()).isConverted);
}

void ICalendarReaderTest::eventWithoutStartIsNotedAndNotMadeUp()
{
    const Document document = read("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:1\nEND:VEVENT\nEND:VCALENDAR\n");

    QCOMPARE(document.items.size(), 1);
    QVERIFY(!document.items[0].start);
    QCOMPARE(document.problems->size(), 1);
    QCOMPARE(document.problems->at(0).line, 2);
}

void ICalendarReaderTest::impossibleDatesAreNoted_data()
{
    QTest::addColumn<QByteArray>("value");

    for (const char *value : { "20240230T100000", "20241301", "00000101", "20240514T250000", "20240514T096100", "soon",
             "", "2024", "20240514X100000", "99999999T999999Z", "-20240514" })
        QTest::newRow(value) << QByteArray(value);
}

void ICalendarReaderTest::impossibleDatesAreNoted()
{
    QFETCH(QByteArray, value);

    const Document document
        = read("BEGIN:VEVENT\nSUMMARY:a\nDTSTART:" + value + "\nDTEND:20240514T100000Z\nEND:VEVENT\n");

    QVERIFY(!document.items.value(0).start);
    QCOMPARE(document.problems->value(0).line, 3);
}

void ICalendarReaderTest::journalsAndFreeBusyAreNoItems()
{
    const Document document = read("BEGIN:VCALENDAR\nBEGIN:VJOURNAL\nDTSTART:20240514\nSUMMARY:a\nEND:VJOURNAL\n"
                                   "BEGIN:VFREEBUSY\nDTSTART:20240514\nEND:VFREEBUSY\nEND:VCALENDAR\n");

    QVERIFY(document.items.isEmpty());
    QVERIFY(document.problems->isEmpty());
}

void ICalendarReaderTest::itemsWithoutACalendarAroundThemAreRead()
{
    const Document document = read("BEGIN:VEVENT\nDTSTART:20240514\nEND:VEVENT\nBEGIN:VTODO\nSUMMARY:b\nEND:VTODO\n");

    QCOMPARE(document.items.size(), 2);
}

void ICalendarReaderTest::taskWithoutADueDateIsDueAfterItsDuration()
{
    const Item item = readOne("DTSTART:20240514T070000Z\r\nDURATION:P1DT1H\r\n", "VTODO");

    QCOMPARE(item.toDo->due->civil, utc("2024-05-15T08:00:00Z"));
}

void ICalendarReaderTest::completionIsTakenInEveryForm_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<bool>("isCompleted");
    QTest::addColumn<QString>("completed");

    QTest::newRow("as the standard has it")
        << QByteArray("COMPLETED:20240514T070000Z\r\n") << true << u"2024-05-14T07:00:00Z"_s;
    QTest::newRow("a day in Berlin") << QByteArray("COMPLETED;VALUE=DATE:20240514\r\n") << true
                                     << u"2024-05-13T22:00:00Z"_s;
    QTest::newRow("floating in Berlin") << QByteArray("COMPLETED:20240514T090000\r\n") << true
                                        << u"2024-05-14T07:00:00Z"_s;
    QTest::newRow("with a zone") << QByteArray("COMPLETED;TZID=America/New_York:20240514T030000\r\n") << true
                                 << u"2024-05-14T07:00:00Z"_s;
    QTest::newRow("with dashes") << QByteArray("COMPLETED:2024-05-14T07:00:00Z\r\n") << true
                                 << u"2024-05-14T07:00:00Z"_s;
    QTest::newRow("status alone") << QByteArray("STATUS:completed\r\n") << true << QString();
    QTest::newRow("not understood") << QByteArray("COMPLETED:yes\r\n") << true << QString();
    QTest::newRow("empty") << QByteArray("COMPLETED:\r\n") << false << QString();
    QTest::newRow("percentage alone") << QByteArray("PERCENT-COMPLETE:100\r\n") << false << QString();
}

void ICalendarReaderTest::completionIsTakenInEveryForm()
{
    QFETCH(QByteArray, properties);
    QFETCH(bool, isCompleted);
    QFETCH(QString, completed);

    const Item item = readOne(properties, "VTODO");

    QCOMPARE(item.toDo->isCompleted, isCompleted);
    QCOMPARE(item.toDo->completed ? QDateTime::fromSecsSinceEpoch(*item.toDo->completed, Qt::UTC).toString(Qt::ISODate)
                                  : QString(),
        completed);
}

void ICalendarReaderTest::placeOfAnItemIsThatOfItsComponent()
{
    const Document document = read("BEGIN:VCALENDAR\nBEGIN:VTIMEZONE\nBEGIN:STANDARD\nEND:STANDARD\nEND:VTIMEZONE\n"
                                   "BEGIN:VEVENT\nDTSTART:20240514\nEND:VEVENT\nEND:VCALENDAR\n");

    QCOMPARE(document.items.value(0).component, 3);
}

void ICalendarReaderTest::cutTextIsReadAsFarAsItGoes()
{
    const Document document = read("BEGIN:VCALENDAR\nBEGIN:VEVENT\nDTSTART:20240514\nSUMMARY:a\nEND:VEVENT\nBEGIN:VEV");

    QCOMPARE(document.items.size(), 1);
    QVERIFY(document.isCut);
    QVERIFY(!document.problems->isEmpty());
}

void ICalendarReaderTest::garbageHoldsNothing_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("HTML") << QByteArray("<!DOCTYPE html><html><body>BEGIN:VEVENT</body></html>\n");
    QTest::newRow("binary") << QByteArray("\x7F"
                                          "ELF\0\0\r\n \0",
        10);
    QTest::newRow("blanks") << QByteArray(" \t\r\n  \n");
}

void ICalendarReaderTest::garbageHoldsNothing()
{
    QFETCH(QByteArray, text);

    const Document document = read(text);

    QVERIFY(document.items.isEmpty());
    QCOMPARE(document.problems->size(), 1);
}

void ICalendarReaderTest::tooLongLineIsLeftOut()
{
    const Document document = read(
        "BEGIN:VEVENT\nDTSTART:20240514\nDESCRIPTION:" + QByteArray(20'000'000, 'x') + "\nSUMMARY:a\nEND:VEVENT\n");

    QCOMPARE(document.items.value(0).summary, u"a"_s);
    QVERIFY(document.items.value(0).description->isEmpty());
    QCOMPARE(document.problems->value(0).line, 3);
}

void ICalendarReaderTest::longTitleIsKeptWhole()
{
    QCOMPARE(readOne("DTSTART:20240514\r\nSUMMARY:" + QByteArray(1'000'000, 'x') + "\r\n").summary.size(), 1'000'000);
}

void ICalendarReaderTest::problemsAreBounded()
{
    const Document document = read("BEGIN:VEVENT\n" + QByteArray("EXDATE:never\n").repeated(10'000) + "END:VEVENT\n");

    QVERIFY(document.problems->size() <= 20);
}

// Two calendars one behind the other, as programs join them, may mean different things by one name.
void ICalendarReaderTest::aZoneIsThatOfItsOwnCalendar()
{
    const auto zone = [](const QByteArray &offset) -> QByteArray {
        return "BEGIN:VTIMEZONE\r\nTZID:Office\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETFROM:" + offset
            + "\r\nTZOFFSETTO:" + offset + "\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    };
    const QByteArray event = "BEGIN:VEVENT\r\nDTSTART;TZID=Office:20260311T090000\r\nEND:VEVENT\r\n";
    const auto calendar
        = [](const QByteArray &content) -> QByteArray { return "BEGIN:VCALENDAR\r\n" + content + "END:VCALENDAR\r\n"; };
    const Document document = read(calendar(event + zone("+0100")) + calendar(event) + calendar(zone("-0800") + event));

    const ZonePtr local = ZoneRegistry::localZone();
    QCOMPARE(document.items.size(), 3);
    QCOMPARE(document.items[0].start->toUtc(*local), utc("2026-03-11T08:00:00Z"));
    // One that says nothing of it is helped out by the first that does.
    QCOMPARE(document.items[1].start->toUtc(*local), utc("2026-03-11T08:00:00Z"));
    QCOMPARE(document.items[2].start->toUtc(*local), utc("2026-03-11T17:00:00Z"));
}

void ICalendarReaderTest::quotedParametersMayHoldColons()
{
    const Item item = readOne("DTSTART;X-A=\"a:b;c\";VALUE=DATE:20240514\r\nSUMMARY;X-B=\"open:title: rest\r\n");

    QCOMPARE(item.start->form, CivilTime::Form::Date);
    QCOMPARE(item.summary, u"title: rest"_s);
}

VANTLE_TEST(ICalendarReaderTest)
#include "ICalendarReaderTest.moc"
