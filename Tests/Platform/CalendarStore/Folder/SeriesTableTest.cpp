// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "SheetSave.h"
#include "TestRegistry.h"

#include <CalEvent.h>

#include <SeriesTable.h>

#include <QDirIterator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QStringList occurrences(const CalCalendarStore &store, const SeriesTableRow &row)
{
    QStringList texts;
    for (const CalEventPtr &event :
        store.eventsWithPredicate(
            CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(row.from(), row.to(), store.calendars()))) {
        if (event->startDate() < row.from())
            continue;
        SeriesTableOccurrence one;
        one.start = event->startDate();
        one.end = event->isAllDay() ? event->endDate().addSecs(1) : event->endDate();
        one.isAllDay = event->isAllDay();
        one.title = event->title().value_or(QString());
        texts.append(one.text());
    }
    texts.sort();
    return texts;
}

CalEventPtr eventAt(const CalCalendarStore &store, const QDateTime &start)
{
    for (const CalEventPtr &event : store.eventsWithPredicate(
             CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(start, start, store.calendars()))) {
        if (event->startDate() == start)
            return event;
    }
    return nullptr;
}

void edit(CalEvent &event, const SeriesTableRow &row)
{
    if (row.values.contains("allday"))
        event.setIsAllDay(row.values.value("allday") == "1");
    if (row.values.contains("start"))
        event.setStartDate(row.instant(row.values.value("start")).toLocalTime());
    if (row.values.contains("end")) {
        const QDateTime end = row.instant(row.values.value("end")).toLocalTime();
        event.setEndDate(event.isAllDay() ? QDateTime(end.date(), QTime(23, 59, 59)) : end);
    }
    if (row.values.contains("title"))
        event.setTitle(QString::fromUtf8(row.values.value("title")));
}

QByteArray allFilesBelow(const QString &folder)
{
    QByteArray content;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            content += file.fileName().toUtf8() + '\n' + file.readAll();
    }
    return content;
}

} // namespace

// The cases of series.txt through the calls that the event sheet and the main window make.
class SeriesTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void seriesIsAsExpectedAfterwards_data();
    void seriesIsAsExpectedAfterwards();

private:
    const SeriesTable m_table { QStringLiteral(SERIES_TABLE) };
};

void SeriesTableTest::cleanup()
{
    setLocalZone("Europe/Berlin");
}

void SeriesTableTest::seriesIsAsExpectedAfterwards_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < m_table.rows().size(); ++i)
        QTest::newRow(m_table.rows()[i].name.constData()) << i;
}

void SeriesTableTest::seriesIsAsExpectedAfterwards()
{
    QFETCH(int, index);
    const SeriesTableRow &row = m_table.rows()[index];
    setLocalZone(row.zone);
    const CalendarFolder folder;
    const QByteArray written = calendarText(row.definition + row.components);
    folder.write(u"home/series.ics"_s, written);
    const auto store = storeOver(folder);
    QCOMPARE(occurrences(*store, row), row.expectedBefore());
    const CalEventPtr event = eventAt(*store, row.instant(row.occurrence));
    QVERIFY(event);

    StoreError error;
    bool isDone = false;
    if (row.action == SeriesTableRow::Action::Remove) {
        isDone = store->removeEvent_span_error(event, CalSpanThisEvent, &error);
    } else {
        edit(*event, row);
        isDone = row.action == SeriesTableRow::Action::EditAll
            ? saveAsSheet(*store, event, &error)
            : store->saveEvent_span_error(event, CalSpanThisEvent, &error);
    }

    QVERIFY2(isDone != row.isRefused, qPrintable(error.message()));
    QCOMPARE(occurrences(*store, row), row.expectedAfter());
    QCOMPARE(occurrences(*storeOver(folder), row), row.expectedAfter());
    const QByteArray after = folder.read(u"home/series.ics"_s);
    QCOMPARE(after.count("\r\nRECURRENCE-ID"), row.overrides);
    QCOMPARE(after.isEmpty(), row.expectedAfter().isEmpty());
    if (row.isRefused)
        QCOMPARE(after, written);
    for (const QByteArray &line : row.lines) {
        const QByteArray begin = "\r\n" + line;
        QVERIFY2(after.contains(begin), after.constData());
    }
    QVERIFY(!allFilesBelow(folder.root()).contains("DUMBY"));
    QVERIFY(!allFilesBelow(qEnvironmentVariable("XDG_STATE_HOME")).contains(".save"));
}

VANTLE_TEST(SeriesTableTest)
#include "SeriesTableTest.moc"
