// SPDX-License-Identifier: MIT
#include "ServiceTestStore.h"

#include <BusTap.h>
#include <FolderCalendarStore.h>
#include <TestRegistry.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <csignal>

using namespace Qt::StringLiterals;
using Kind = BusTap::Kind;

namespace
{

const QDate day(2026, 3, 11); // a Wednesday
constexpr int patience = 60 * 1000; // milliseconds: three times that with an attempt to open a source
constexpr int secondsPerHour = 3600;

const QByteArray series = "BEGIN:VEVENT\r\nUID:lunch\r\nDTSTAMP:20260101T000000Z\r\n"
                          "DTSTART;TZID=Europe/Berlin:20260309T120000\r\nDTEND;TZID=Europe/Berlin:20260309T130000\r\n"
                          "RRULE:FREQ=DAILY;COUNT=10\r\nSUMMARY:Lunch\r\nX-COLOUR:green\r\nEND:VEVENT\r\n";
const QByteArray exception
    = "BEGIN:VEVENT\r\nUID:lunch\r\nDTSTAMP:20260101T000000Z\r\nRECURRENCE-ID;TZID=Europe/Berlin:20260311T120000\r\n"
      "DTSTART;TZID=Europe/Berlin:20260311T150000\r\nDTEND;TZID=Europe/Berlin:20260311T160000\r\n"
      "SUMMARY:Late lunch\r\nEND:VEVENT\r\n";
const QByteArray meeting = "BEGIN:VEVENT\r\nUID:meeting\r\nDTSTAMP:20260101T000000Z\r\n"
                           "DTSTART;TZID=Europe/Berlin:20260311T090000\r\nDTEND;TZID=Europe/Berlin:20260311T100000\r\n"
                           "SUMMARY:Meeting\r\nX-COLOUR:red\r\nEND:VEVENT\r\n";

// What happens to the service.
enum class Blow { Killed, Stopped, MessageLost };

// At the nth such message that writes.
struct Moment {
    Kind kind = Kind::Call;
    QByteArray member; // empty: whichever writes
    int count = 1;
};

// What is not answered takes ten seconds each.
bool isLong()
{
    return qEnvironmentVariableIsSet("VANTLE_LONG_TESTS");
}

QByteArray lineOf(const QByteArray &component, const QByteArray &name)
{
    const qsizetype begin = component.indexOf(QByteArray('\n' + name));
    return begin < 0 ? QByteArray()
                     : component.sliced(begin + 1, component.indexOf('\n', begin + 1) - begin - 1).trimmed();
}

QByteArray calendarOf(const QByteArray &component)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:test\r\n" + component + "END:VCALENDAR\r\n";
}

// What the components say, in short: name of the occurrence, start and title of each.
QStringList shortened(const QByteArray &text)
{
    QStringList components;
    for (qsizetype begin = text.indexOf("BEGIN:VEVENT"); begin >= 0; begin = text.indexOf("BEGIN:VEVENT", begin + 1)) {
        const QByteArray component = text.sliced(begin, text.indexOf("END:VEVENT", begin) - begin);
        const QByteArray name = lineOf(component, "RECURRENCE-ID");
        components << QString::fromUtf8((name.isEmpty() ? "all" : name.last(15)) + ' '
            + lineOf(component, "DTSTART").last(15) + ' ' + lineOf(component, "SUMMARY:").sliced(8));
    }
    components.sort();
    return components;
}

} // namespace

Q_DECLARE_METATYPE(Blow)
Q_DECLARE_METATYPE(Moment)

// The service ends, hangs or is not heard exactly between two of the calls that something consists of.
class ServiceInterruptionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_machine = std::make_unique<ServiceTestStore>();
        for (const QString &source : { u"system-calendar"_s, u"system-task-list"_s, u"birthdays"_s })
            m_machine->neighbour().setEnabled(source, false);
        for (const QString &source : { u"here"_s, u"there"_s })
            m_machine->neighbour().addCalendar(source, CalItemKind::Event, source);
    }
    void cleanupTestCase()
    {
        m_neighbour.reset();
        m_machine.reset();
    }

    void init()
    {
        m_neighbour = std::make_unique<CalendarServiceNeighbour>(m_machine->session());
        m_hits = 0;
        m_isKilled = false;
        m_error = {};
        m_shelf = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_shelf->path()).mkdir(u"Shelf"_s));
    }
    void cleanup()
    {
        m_tap.reset();
        m_silences.reset();
        [[maybe_unused]] const bool isRunning = m_machine->session().resume(CalendarServiceSession::Part::Factory);
        m_machine->close();
        m_neighbour = std::make_unique<CalendarServiceNeighbour>(m_machine->session());
        for (const QString &source : { u"here"_s, u"there"_s }) {
            for (const QString &uid : { u"lunch"_s, u"meeting"_s }) {
                if (!m_neighbour->text(source, uid).isEmpty())
                    m_neighbour->remove(source, uid);
            }
        }
        QDir(journal()).removeRecursively();
    }

    void aSeriesIsWhole_data();
    void aSeriesIsWhole();
    void aHalfWrittenSeriesIsPutRightByTheNextStart();
    void aMovedItemIsInOneCalendar_data();
    void aMovedItemIsInOneCalendar();
    void whatAnotherProgramChangedDuringAMoveStays();
    void anItemStaysWhenItsNewFolderVanishes();
    void anItemThatIsDeletedDuringAMoveIsNotBroughtBack();
    void aSilenceAmongTheFirstItemsIsToldAndEnds();

private:
    QString journal() const { return m_machine->session().path(u"state/vantle/saves"_s); }
    QStringList leftOvers() const { return QDir(journal()).entryList({ u"*.save"_s }); }
    QString file(const QString &name = u"meeting.ics"_s) const { return m_shelf->filePath(u"Shelf/"_s + name); }

    bool putOnShelf(const QByteArray &component)
    {
        QFile item(file());
        const QByteArray calendar = calendarOf(component);
        return item.open(QIODevice::WriteOnly) && item.write(calendar) == calendar.size();
    }
    [[nodiscard]] bool open()
    {
        FolderCalendarStore::Options options;
        options.root = m_shelf->path();
        return m_machine->open(std::make_unique<FolderCalendarStore>(options, m_clock));
    }
    // From now on, at that moment.
    void strike(Blow blow, const Moment &moment)
    {
        const auto victim
            = static_cast<pid_t>(m_machine->session().processId(CalendarServiceSession::Part::Factory).value_or(-1));
        QVERIFY(victim > 0);
        m_isKilled = blow == Blow::Killed;
        m_silences = std::make_unique<QSignalSpy>(&m_machine->store(), &CalCalendarStore::silenceDidChange);
        m_tap = std::make_unique<BusTap>([=, this, seen = 0](const BusTap::Message &message) mutable {
            const bool isMeant = message.kind == moment.kind && isWriting(message)
                && (moment.member.isEmpty() || message.member == moment.member);
            if (!isMeant || ++seen != moment.count)
                return BusTap::Fate::Pass;
            ++m_hits;
            if (blow == Blow::MessageLost)
                return BusTap::Fate::Drop;
            ::kill(victim, blow == Blow::Killed ? SIGKILL : SIGSTOP);
            return BusTap::Fate::Pass;
        });
    }
    // The blow is over, the store knows of it, and another program looks.
    void recover()
    {
        m_tap.reset();
        if (m_isKilled)
            QTRY_VERIFY_WITH_TIMEOUT(m_silences->count() > 0, patience);
        [[maybe_unused]] const bool isRunning = m_machine->session().resume(CalendarServiceSession::Part::Factory);
        m_neighbour = std::make_unique<CalendarServiceNeighbour>(m_machine->session());
    }
    QByteArray text(const QString &source, const QString &uid)
    {
        const auto answer = m_neighbour->request({ u"get"_s, source, uid });
        return answer.isOk ? answer.text : QByteArray("no answer");
    }
    QStringList holders()
    {
        QStringList holders;
        for (const QString &source : { u"here"_s, u"there"_s }) {
            if (!text(source, u"meeting"_s).isEmpty())
                holders << source;
        }
        if (!QDir(file(u"."_s)).isEmpty(QDir::Files | QDir::Hidden))
            holders << u"Shelf"_s;
        return holders;
    }
    bool save(const CalEventPtr &event, CalSpan span)
    {
        m_error = {};
        return m_machine->store().saveEvent_span_error(event, span, &m_error);
    }

    std::unique_ptr<ServiceTestStore> m_machine;
    std::unique_ptr<CalendarServiceNeighbour> m_neighbour;
    std::unique_ptr<BusTap> m_tap;
    std::unique_ptr<QSignalSpy> m_silences;
    bool m_isKilled = false;
    std::unique_ptr<QTemporaryDir> m_shelf;
    SystemClock m_clock;
    StoreError m_error;
    std::atomic<int> m_hits = 0;
};

void ServiceInterruptionTest::aSeriesIsWhole_data()
{
    QTest::addColumn<bool>("isBySheet");
    QTest::addColumn<Blow>("blow");
    QTest::addColumn<int>("count");

    QTest::newRow("killed after the first of three calls") << false << Blow::Killed << 1;
    QTest::newRow("killed after the second of three calls") << false << Blow::Killed << 2;
    QTest::newRow("stopped after the first of three calls") << false << Blow::Stopped << 1;
    QTest::newRow("killed after the sheet's first step") << true << Blow::Killed << 1;
    QTest::newRow("killed within the sheet's second step") << true << Blow::Killed << 2;
    if (!isLong())
        return;
    QTest::newRow("killed after the last call") << false << Blow::Killed << 3;
    QTest::newRow("the second answer is lost") << false << Blow::MessageLost << 2;
    QTest::newRow("stopped within the sheet's second step") << true << Blow::Stopped << 2;
}

void ServiceInterruptionTest::aSeriesIsWhole()
{
    QFETCH(const bool, isBySheet);
    QFETCH(const Blow, blow);
    QFETCH(const int, count);
    const QStringList before { u"20260311T120000 20260311T150000 Late lunch"_s, u"all 20260309T120000 Lunch"_s };
    const QStringList after = isBySheet
        ? QStringList { u"20260311T120000 20260311T150000 Late lunch"_s, u"all 20260309T120000 Meal"_s }
        : QStringList { u"20260311T130000 20260311T150000 Late lunch"_s, u"all 20260309T130000 Lunch"_s };
    m_neighbour->put(u"here"_s, series + exception);
    QCOMPARE(shortened(text(u"here"_s, u"lunch"_s)), before);
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Late lunch"_s), patience);
    const CalEventPtr event = m_machine->eventOn(day.addDays(1), u"Lunch"_s);
    QVERIFY(event);

    strike(blow, { Kind::Answer, {}, count });
    bool isSaved = true;
    if (isBySheet) {
        event->setTitle(u"DUMBY Meal"_s);
        isSaved = save(event, CalSpanThisEvent);
        event->setTitle(u"Meal"_s);
    } else {
        event->setStartDate(event->startDate().addSecs(secondsPerHour));
        event->setEndDate(event->endDate().addSecs(secondsPerHour));
    }
    isSaved = save(event, CalSpanAllEvents) && isSaved;
    QVERIFY(isSaved || !m_error.reason.isEmpty());
    QCOMPARE(m_hits.load(), 1);
    recover();

    const auto isWhole = [&] {
        const QStringList held = shortened(text(u"here"_s, u"lunch"_s));
        return held == before || held == after;
    };
    QTRY_VERIFY2_WITH_TIMEOUT(isWhole(), text(u"here"_s, u"lunch"_s).constData(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->store().silentCalendars().isEmpty(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(leftOvers(), QStringList(), patience);
    QVERIFY2(isWhole(), text(u"here"_s, u"lunch"_s).constData());
    const bool isNew = shortened(text(u"here"_s, u"lunch"_s)) == after;
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventsOn(day.addDays(1)).size(), 1, patience);
    const QString title = isBySheet && isNew ? u"Meal"_s : u"Lunch"_s;
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day.addDays(1), title), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventsOn(day).size(), 1, patience);
}

// The program ends with the service, and with the journal.
void ServiceInterruptionTest::aHalfWrittenSeriesIsPutRightByTheNextStart()
{
    m_neighbour->put(u"here"_s, series + exception);
    const QStringList before = shortened(text(u"here"_s, u"lunch"_s));
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Late lunch"_s), patience);
    const CalEventPtr event = m_machine->eventOn(day.addDays(1), u"Lunch"_s);
    event->setStartDate(event->startDate().addSecs(secondsPerHour));
    event->setEndDate(event->endDate().addSecs(secondsPerHour));

    strike(Blow::MessageLost, { Kind::Call, {}, 2 });
    QVERIFY(!save(event, CalSpanAllEvents));
    QCOMPARE(m_hits.load(), 1);
    m_machine->close();
    recover();
    QVERIFY(shortened(text(u"here"_s, u"lunch"_s)) != before);
    QCOMPARE(leftOvers().size(), 1);

    QVERIFY(open());
    QTRY_COMPARE_WITH_TIMEOUT(shortened(text(u"here"_s, u"lunch"_s)), before, patience);
    QTRY_COMPARE_WITH_TIMEOUT(leftOvers(), QStringList(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Late lunch"_s), patience);
    QCOMPARE(m_machine->eventsOn(day).size(), 1);
    QCOMPARE(m_machine->eventsOn(day.addDays(1)).size(), 1);
}

void ServiceInterruptionTest::aMovedItemIsInOneCalendar_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<Blow>("blow");
    QTest::addColumn<Moment>("moment");

    const Moment beforeCopying { Kind::Call, "CreateObjects", 1 };
    const Moment afterCopying { Kind::Answer, "CreateObjects", 1 };
    const Moment beforeLeaving { Kind::Call, "RemoveObjects", 1 };
    const Moment afterLeaving { Kind::Answer, "RemoveObjects", 1 };
    const QString here = u"here"_s;
    const QString there = u"there"_s;
    const QString shelf = u"Shelf"_s;

    QTest::newRow("killed after the copy") << here << there << Blow::Killed << afterCopying;
    QTest::newRow("killed before it leaves") << here << there << Blow::Killed << beforeLeaving;
    QTest::newRow("stopped before it leaves") << here << there << Blow::Stopped << beforeLeaving;
    QTest::newRow("copying is not answered") << here << there << Blow::MessageLost << afterCopying;
    QTest::newRow("into a folder, killed before it leaves") << here << shelf << Blow::Killed << beforeLeaving;
    QTest::newRow("into a folder, leaving is not answered") << here << shelf << Blow::MessageLost << afterLeaving;
    QTest::newRow("out of a folder, killed before the copy") << shelf << here << Blow::Killed << beforeCopying;
    QTest::newRow("out of a folder, killed after the copy") << shelf << here << Blow::Killed << afterCopying;
    QTest::newRow("out of a folder, copying is not answered") << shelf << here << Blow::MessageLost << afterCopying;
    if (!isLong())
        return;
    QTest::newRow("stopped after the copy") << here << there << Blow::Stopped << afterCopying;
    QTest::newRow("leaving is not answered") << here << there << Blow::MessageLost << afterLeaving;
    QTest::newRow("leaving is not heard") << here << there << Blow::MessageLost << beforeLeaving;
    QTest::newRow("into a folder, stopped before it leaves") << here << shelf << Blow::Stopped << beforeLeaving;
    QTest::newRow("into a folder, leaving is not heard") << here << shelf << Blow::MessageLost << beforeLeaving;
    QTest::newRow("out of a folder, stopped before the copy") << shelf << here << Blow::Stopped << beforeCopying;
}

void ServiceInterruptionTest::aMovedItemIsInOneCalendar()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    QFETCH(const Blow, blow);
    QFETCH(const Moment, moment);
    if (from == u"Shelf"_s)
        QVERIFY(putOnShelf(meeting));
    else
        m_neighbour->put(from, meeting);
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Meeting"_s), patience);
    const CalEventPtr event = m_machine->eventOn(day, u"Meeting"_s);
    QCOMPARE(event->calendar()->uid(), from);
    QCOMPARE(holders(), QStringList { from });

    strike(blow, moment);
    event->setCalendar(m_machine->store().calendarWithUID(to));
    const bool isSaved = save(event, CalSpanAllEvents);
    QVERIFY(isSaved || !m_error.reason.isEmpty());
    QCOMPARE(m_hits.load(), 1);
    recover();

    QTRY_VERIFY_WITH_TIMEOUT(m_machine->store().silentCalendars().isEmpty(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(leftOvers(), QStringList(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(holders().size(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventsOn(day).size(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(QStringList { m_machine->eventsOn(day).first()->calendar()->uid() }, holders(), patience);
    QVERIFY2(!isSaved || holders() == QStringList { to }, qPrintable(holders().join(u' ')));
    // And it can be moved again, from wherever it is.
    const CalEventPtr again = m_machine->eventOn(day, u"Meeting"_s);
    const QString target = again->calendar()->uid() == to ? from : to;
    again->setCalendar(m_machine->store().calendarWithUID(target));
    QVERIFY2(save(again, CalSpanAllEvents), qPrintable(m_error.message()));
    QCOMPARE(holders(), QStringList { target });
    m_machine->close();
    QVERIFY(open());
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventsOn(day).size(), 1, patience);
    QCOMPARE(holders(), QStringList { target });
}

void ServiceInterruptionTest::whatAnotherProgramChangedDuringAMoveStays()
{
    const QByteArray theirs = QByteArray(meeting).replace("SUMMARY:Meeting", "SUMMARY:Theirs");
    QVERIFY(putOnShelf(meeting));
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Meeting"_s), patience);
    const CalEventPtr event = m_machine->eventOn(day, u"Meeting"_s);

    m_tap = std::make_unique<BusTap>([&](const BusTap::Message &message) {
        if (message.kind == Kind::Answer && message.member == "CreateObjects" && m_hits++ == 0)
            putOnShelf(theirs);
        return BusTap::Fate::Pass;
    });
    event->setCalendar(m_machine->store().calendarWithUID(u"here"_s));
    QVERIFY(!save(event, CalSpanAllEvents));

    QCOMPARE(m_error.code, StoreError::Code::Conflict);
    QCOMPARE(m_hits.load(), 1);
    QCOMPARE(holders(), QStringList { u"Shelf"_s });
    QFile item(file());
    QVERIFY(item.open(QIODevice::ReadOnly));
    QCOMPARE(item.readAll(), calendarOf(theirs));
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Theirs"_s), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventsOn(day).size(), 1, patience);
}

void ServiceInterruptionTest::anItemStaysWhenItsNewFolderVanishes()
{
    m_neighbour->put(u"here"_s, meeting);
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Meeting"_s), patience);
    const CalEventPtr event = m_machine->eventOn(day, u"Meeting"_s);

    // What is to be moved has been read, and nothing written.
    m_tap = std::make_unique<BusTap>([&](const BusTap::Message &message) {
        if (message.kind == Kind::Answer && message.member == "GetObject" && m_hits++ == 0)
            QDir(m_shelf->filePath(u"Shelf"_s)).removeRecursively();
        return BusTap::Fate::Pass;
    });
    event->setCalendar(m_machine->store().calendarWithUID(u"Shelf"_s));
    QVERIFY(!save(event, CalSpanAllEvents));

    QVERIFY(!m_error.reason.isEmpty());
    QVERIFY(m_hits > 0);
    QCOMPARE(holders(), QStringList { u"here"_s });
    QCOMPARE(leftOvers(), QStringList());
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventsOn(day).size(), 1, patience);
}

// The other program meant it.
void ServiceInterruptionTest::anItemThatIsDeletedDuringAMoveIsNotBroughtBack()
{
    QVERIFY(putOnShelf(meeting));
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Meeting"_s), patience);
    const CalEventPtr event = m_machine->eventOn(day, u"Meeting"_s);

    m_tap = std::make_unique<BusTap>([&](const BusTap::Message &message) {
        if (message.kind == Kind::Answer && message.member == "CreateObjects" && m_hits++ == 0)
            QFile::remove(file());
        return BusTap::Fate::Pass;
    });
    event->setCalendar(m_machine->store().calendarWithUID(u"here"_s));
    QVERIFY(!save(event, CalSpanAllEvents));

    QVERIFY(!m_error.reason.isEmpty());
    QCOMPARE(m_hits.load(), 1);
    QCOMPARE(holders(), QStringList());
    QCOMPARE(leftOvers(), QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventsOn(day).isEmpty(), patience);
}

// The service stops when it has brought what there is, but before what it brought twice is asked for anew.
void ServiceInterruptionTest::aSilenceAmongTheFirstItemsIsToldAndEnds()
{
    m_neighbour->put(u"here"_s, meeting);
    QVERIFY(open());
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Meeting"_s), patience);
    // What was written here is asked for anew whenever the source is opened.
    const CalEventPtr event = m_machine->eventOn(day, u"Meeting"_s);
    event->setTitle(u"Long meeting"_s);
    QVERIFY(save(event, CalSpanAllEvents));
    QVERIFY(m_machine->session().kill(CalendarServiceSession::Part::Factory));
    QVERIFY(m_machine->session().activate(CalendarServiceSession::Part::Factory));
    const auto victim
        = static_cast<pid_t>(m_machine->session().processId(CalendarServiceSession::Part::Factory).value_or(-1));
    QVERIFY(victim > 0);

    std::atomic<int> questions = 0;
    std::atomic<int> attempts = 0;
    m_tap = std::make_unique<BusTap>([&, victim, contents = QByteArray()](const BusTap::Message &message) mutable {
        // Of the two views of a source, one brings what there is.
        if (message.kind == Kind::Signal && message.member == "ObjectsAdded")
            contents = message.path;
        const bool isEnd = message.kind == Kind::Signal && message.member == "Complete" && message.path == contents;
        if (isEnd && m_hits++ == 0)
            ::kill(victim, SIGSTOP);
        if (message.kind == Kind::Call && m_hits > 0) {
            questions += message.member == "GetObject" ? 1 : 0;
            attempts += message.path.endsWith("/CalendarFactory") ? 1 : 0;
        }
        return BusTap::Fate::Pass;
    });

    QTRY_COMPARE_WITH_TIMEOUT(m_hits.load(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(questions.load(), 1, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!m_machine->store().silentCalendars().isEmpty(), patience);
    QVERIFY(m_machine->eventOn(day, u"Long meeting"_s));
    // Longer than one attempt is given: it has begun another one.
    QTRY_VERIFY_WITH_TIMEOUT(attempts > 0, patience);
    QVERIFY(!m_machine->store().silentCalendars().isEmpty());
    recover();

    QTRY_VERIFY_WITH_TIMEOUT(m_machine->store().silentCalendars().isEmpty(), patience);
    m_neighbour->put(u"here"_s, QByteArray(meeting).replace("SUMMARY:Meeting", "SUMMARY:Theirs"));
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->eventOn(day, u"Theirs"_s), patience);
}

VANTLE_TEST(ServiceInterruptionTest)

#include "ServiceInterruptionTest.moc"
