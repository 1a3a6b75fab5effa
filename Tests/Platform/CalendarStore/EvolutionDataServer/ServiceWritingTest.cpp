// SPDX-License-Identifier: MIT
#include "ServiceTestStore.h"

#include <FolderCalendarStore.h>
#include <SaveJournal.h>
#include <TestRegistry.h>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11); // a Wednesday
constexpr int secondsPerHour = 3600;
const QByteArray lunch = "BEGIN:VEVENT\r\nUID:lunch\r\nDTSTAMP:20260101T000000Z\r\n"
                         "DTSTART;TZID=Europe/Berlin:20260309T120000\r\nDTEND;TZID=Europe/Berlin:20260309T130000\r\n"
                         "RRULE:FREQ=DAILY;COUNT=10\r\nSUMMARY:Lunch\r\nX-COLOUR:green\r\nEND:VEVENT\r\n";

} // namespace

// What stands in the service afterwards, for other programs to read.
class ServiceWritingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_machine = std::make_unique<ServiceTestStore>();
        m_machine->addCalendar(u"writing"_s);
    }
    void cleanupTestCase() { m_machine.reset(); }

    void init()
    {
        m_machine->neighbour().put(u"writing"_s, lunch);
        QVERIFY(m_machine->open());
        QTRY_VERIFY(m_machine->eventOn(day, u"Lunch"_s));
    }
    void cleanup()
    {
        m_machine->close();
        if (!text().isEmpty())
            m_machine->neighbour().remove(u"writing"_s, u"lunch"_s);
    }

    void aRemovedOccurrenceIsExcludedInItsZone()
    {
        QVERIFY(remove(m_machine->eventOn(day, u"Lunch"_s), CalSpanThisEvent));

        QVERIFY2(text().contains("EXDATE;TZID=Europe/Berlin:20260311T120000"), text().constData());
    }

    void aChangedOccurrenceIsNamedInItsZone()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        event->setTitle(u"Late lunch"_s);
        event->setStartDate(QDateTime(day, QTime(14, 0)));
        event->setEndDate(QDateTime(day, QTime(15, 0)));
        QVERIFY(save(event, CalSpanThisEvent));

        const QByteArray stored = text();
        QVERIFY2(stored.contains("RECURRENCE-ID;TZID=Europe/Berlin:20260311T120000"), stored.constData());
        QVERIFY2(stored.contains("DTSTART;TZID=Europe/Berlin:20260311T140000"), stored.constData());
        QCOMPARE(stored.count("X-COLOUR:green"), 2);
    }

    void whatTheChangeDoesNotConcernStays()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        event->setTitle(u"Meal"_s);
        QVERIFY(save(event, CalSpanAllEvents));

        const QByteArray stored = text();
        QVERIFY2(stored.contains("SUMMARY:Meal"), stored.constData());
        QVERIFY2(stored.contains("DTSTART;TZID=Europe/Berlin:20260309T120000"), stored.constData());
        QVERIFY2(stored.contains(":FREQ=DAILY;COUNT=10"), stored.constData());
        QVERIFY2(stored.contains("X-COLOUR:green"), stored.constData());
        QCOMPARE(stored.count("BEGIN:VEVENT"), 1);
    }

    void theTwoStepsOfTheSheetLeaveNoTrace()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        event->setTitle(u"DUMBY Meal"_s);
        QVERIFY(save(event, CalSpanThisEvent));
        event->setTitle(u"Meal"_s);
        QVERIFY(save(event, CalSpanAllEvents));

        QVERIFY2(!text().contains("DUMBY"), text().constData());
        QCOMPARE(text().count("BEGIN:VEVENT"), 1);
    }

    void aFirstStepThatWasLeftIsTakenBack()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        event->setTitle(u"DUMBY Meal"_s);
        QVERIFY(save(event, CalSpanThisEvent));
        QVERIFY(text().contains("DUMBY"));
        keepJournal();
        m_machine->close();
        restoreJournal();

        QVERIFY(m_machine->open());

        QTRY_VERIFY2(!text().contains("DUMBY"), text().constData());
        QCOMPARE(text().count("BEGIN:VEVENT"), 1);
        QVERIFY(m_machine->eventOn(day, u"Lunch"_s));
    }

    // The service ended after one of the calls that a change of the whole series takes.
    void aHalfWrittenSeriesIsPutRight()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        event->setTitle(u"Late lunch"_s);
        QVERIFY(save(event, CalSpanThisEvent));
        const QByteArray before = calendarText();
        const CalEventPtr other = m_machine->eventOn(day.addDays(1), u"Lunch"_s);
        other->setStartDate(other->startDate().addSecs(secondsPerHour));
        other->setEndDate(other->endDate().addSecs(secondsPerHour));
        QVERIFY(save(other, CalSpanAllEvents));
        const QByteArray after = calendarText();
        QVERIFY(after != before);
        m_machine->close();
        m_machine->neighbour().put(u"writing"_s, masterOf(after) + exceptionOf(before));
        FolderStore::FileCalls calls;
        FolderStore::SaveJournal journal(calls);
        QVERIFY(journal.begin({ u"/service/writing/lunch"_s, before, after, {} }));
        journal.abandon();

        QVERIFY(m_machine->open());

        QTRY_COMPARE(text().count("DTSTART;TZID=Europe/Berlin:20260309T120000"), 1);
        QVERIFY2(text().contains("RECURRENCE-ID;TZID=Europe/Berlin:20260311T120000"), text().constData());
        QTRY_VERIFY(m_machine->eventOn(day, u"Late lunch"_s));
        QCOMPARE(m_machine->eventsOn(day).size(), 1);
        QVERIFY(QDir(this->journal()).entryList({ u"*.save"_s }).isEmpty());
    }

    void anotherProgramsChangeIsNotOverwritten()
    {
        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        m_machine->neighbour().put(u"writing"_s, QByteArray(lunch).replace("SUMMARY:Lunch", "SUMMARY:Theirs"));

        event->setTitle(u"Ours"_s);
        QVERIFY(!save(event, CalSpanAllEvents));

        QCOMPARE(m_error.code, StoreError::Code::Conflict);
        QVERIFY(text().contains("SUMMARY:Theirs"));
        QTRY_VERIFY(m_machine->eventOn(day, u"Theirs"_s));
    }

    void anItemGoesIntoAFolderAndBack()
    {
        const QTemporaryDir folder;
        SystemClock clock;
        QVERIFY(QDir(folder.path()).mkdir(u"Shelf"_s));
        m_machine->close();
        FolderCalendarStore::Options options;
        options.root = folder.path();
        QVERIFY(m_machine->open(std::make_unique<FolderCalendarStore>(options, clock)));
        QTRY_VERIFY(m_machine->eventOn(day, u"Lunch"_s));

        const CalEventPtr event = m_machine->eventOn(day, u"Lunch"_s);
        event->setTitle(u"Meal"_s);
        event->setCalendar(m_machine->store().calendarWithUID(u"Shelf"_s));
        QVERIFY2(save(event, CalSpanAllEvents), qPrintable(m_error.message()));
        QVERIFY(text().isEmpty());
        QCOMPARE(m_machine->eventsOn(day).size(), 1);
        QCOMPARE(m_machine->eventsOn(day).first()->calendar()->uid(), u"Shelf"_s);
        QCOMPARE(m_machine->eventsOn(day).first()->uid(), event->uid());

        event->setCalendar(m_machine->store().calendarWithUID(u"writing"_s));
        QVERIFY2(save(event, CalSpanAllEvents), qPrintable(m_error.message()));
        QVERIFY2(text().contains("X-COLOUR:green") && text().contains("SUMMARY:Meal"), text().constData());
        QVERIFY(QDir(folder.filePath(u"Shelf"_s)).isEmpty());
        QCOMPARE(m_machine->eventsOn(day).size(), 1);
        m_machine->close();
    }

private:
    // The series comes before its exception.
    static QByteArray masterOf(const QByteArray &calendar)
    {
        const qsizetype begin = calendar.indexOf("BEGIN:VEVENT");
        return calendar.sliced(begin, calendar.indexOf("BEGIN:VEVENT", begin + 1) - begin);
    }
    static QByteArray exceptionOf(const QByteArray &calendar)
    {
        const qsizetype begin = calendar.lastIndexOf("BEGIN:VEVENT");
        return calendar.sliced(begin, calendar.lastIndexOf("END:VCALENDAR") - begin);
    }
    QByteArray calendarText() { return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + text() + "END:VCALENDAR\r\n"; }
    QByteArray text() { return m_machine->neighbour().text(u"writing"_s, u"lunch"_s); }
    bool save(const CalEventPtr &event, CalSpan span)
    {
        m_error = {};
        return m_machine->store().saveEvent_span_error(event, span, &m_error);
    }
    bool remove(const CalEventPtr &event, CalSpan span)
    {
        m_error = {};
        return m_machine->store().removeEvent_span_error(event, span, &m_error);
    }

    // A store that is let go has no time to leave anything; one whose process is killed leaves its journal.
    QString journal() { return m_machine->session().path(u"state/vantle/saves"_s); }
    void keepJournal()
    {
        m_kept.clear();
        for (const QFileInfo &entry : QDir(journal()).entryInfoList({ u"*.save"_s })) {
            QFile file(entry.filePath());
            QVERIFY(file.open(QIODevice::ReadOnly));
            m_kept.insert(entry.filePath(), file.readAll());
        }
        QCOMPARE(m_kept.size(), 1);
    }
    void restoreJournal()
    {
        for (auto kept = m_kept.cbegin(); kept != m_kept.cend(); ++kept) {
            QFile file(kept.key());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(kept.value());
        }
    }

    std::unique_ptr<ServiceTestStore> m_machine;
    StoreError m_error;
    QMap<QString, QByteArray> m_kept;
};

VANTLE_TEST(ServiceWritingTest)

#include "ServiceWritingTest.moc"
