// SPDX-License-Identifier: MIT
#include "SeriesTable.h"
#include "TestRegistry.h"

#include <CivilDate.h>
#include <ICalendarReader.h>
#include <SeriesEdit.h>
#include <TextPatcher.h>
#include <ZoneRegistry.h>

#include <QTest>
#include <QTimeZone>

using namespace ICalendar;
using namespace Qt::StringLiterals;

namespace
{

struct Shown {
    SeriesTableOccurrence values;
    QByteArray recurrenceId;
};

// One series by itself in a text.
class SeriesFile
{
public:
    explicit SeriesFile(QByteArray text)
        : m_text(std::move(text))
        , m_document(readDocument(m_text, m_zones))
    {
        for (int i = 0; i < m_document.items.size(); ++i) {
            if (m_document.items[i].repetition->recurrenceId)
                m_items.overrides.append(i);
            else
                m_items.master = i;
        }
    }

    const QByteArray &text() const { return m_text; }
    const SeriesItems &items() const { return m_items; }

    QList<Shown> shown(const QDateTime &from, const QDateTime &to) const
    {
        QList<Shown> result;
        if (m_items.master < 0)
            return result;
        QList<const Item *> overrides;
        for (const int index : m_items.overrides)
            overrides.append(&m_document.items[index]);
        const Item &master = m_document.items[m_items.master];
        const ZonePtr local = ZoneRegistry::localZone();
        const Expansion expansion
            = expandSeries(master, overrides, from.toSecsSinceEpoch(), to.toSecsSinceEpoch(), *local);
        for (const Occurrence &occurrence : expansion.occurrences) {
            const Item &item = occurrence.overriddenBy < 0 ? master : *overrides[occurrence.overriddenBy];
            Shown one;
            one.values.start = QDateTime::fromSecsSinceEpoch(occurrence.start.toUtc(*local));
            one.values.end = QDateTime::fromSecsSinceEpoch(occurrence.end.toUtc(*local));
            one.values.isAllDay = occurrence.start.isDate();
            one.values.title = item.summary;
            const CivilTime &place = occurrence.recurrenceId;
            one.recurrenceId
                = QDateTime::fromSecsSinceEpoch(place.isDate() ? place.civil : place.toUtc(*local), Qt::UTC)
                      .toString(place.isDate() ? u"yyyyMMdd"_s : u"yyyyMMdd'T'HHmmss'Z'"_s)
                      .toLatin1();
            result.append(one);
        }
        return result;
    }

    QStringList texts(const QDateTime &from, const QDateTime &to) const
    {
        QStringList texts;
        for (const Shown &one : shown(from, to)) {
            if (one.values.start >= from)
                texts.append(one.values.text());
        }
        texts.sort();
        return texts;
    }

    Result<QByteArray, SeriesFault> changed(const SeriesTableRow &row)
    {
        const ZonePtr local = ZoneRegistry::localZone();
        const SeriesContext context { m_items, m_zones, *local };
        const auto occurrence = find(row);
        const UtcSeconds stamp = 1'780'000'000;
        if (row.action == SeriesTableRow::Action::Remove)
            return textWithoutOccurrence(m_text, context, occurrence.recurrenceId, stamp);

        SeriesChange change;
        change.recurrenceId = occurrence.recurrenceId;
        change.read = timesOf(occurrence.values);
        change.changed = timesOf(edited(occurrence.values, row));
        const QByteArray name = QTimeZone::systemTimeZoneId();
        change.timedForm = { CivilTime::Form::Zoned, m_zones.systemZone(QString::fromLatin1(name)), ";TZID=" + name };
        change.stamp = stamp;
        change.patch = [&](const QByteArray &text, const Item &item) {
            TextPatcher patcher(text);
            if (row.values.contains("title"))
                patcher.setProperty(item.component, "SUMMARY", row.values.value("title"));
            return patcher.patchedText();
        };
        return row.action == SeriesTableRow::Action::EditThis ? textWithOccurrenceChanged(m_text, context, change)
                                                              : textWithSeriesChanged(m_text, context, change);
    }

private:
    Shown find(const SeriesTableRow &row) const
    {
        const QDateTime start = row.instant(row.occurrence);
        for (const Shown &one : shown(start, start)) {
            if (one.values.start == start)
                return one;
        }
        return {};
    }

    static SeriesTableOccurrence edited(SeriesTableOccurrence values, const SeriesTableRow &row)
    {
        if (row.values.contains("allday"))
            values.isAllDay = row.values.value("allday") == "1";
        if (row.values.contains("start"))
            values.start = row.instant(row.values.value("start"));
        if (row.values.contains("end")) {
            values.end = row.instant(row.values.value("end"));
            if (values.isAllDay)
                values.end = values.end.addDays(1);
        }
        return values;
    }

    static EventTimes timesOf(const SeriesTableOccurrence &values)
    {
        const auto value = [&](const QDateTime &time) {
            return values.isAllDay ? time.date().startOfDay(Qt::UTC).toSecsSinceEpoch() : time.toSecsSinceEpoch();
        };
        return { values.isAllDay, value(values.start.toLocalTime()), value(values.end.toLocalTime()) };
    }

    QByteArray m_text;
    mutable ZoneRegistry m_zones;
    Document m_document;
    SeriesItems m_items;
};

} // namespace

class SeriesEditTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void tableIsUnderstood();
    void seriesIsAsExpectedAfterwards_data();
    void seriesIsAsExpectedAfterwards();

private:
    const SeriesTable m_table { QStringLiteral(SERIES_TABLE) };
};

void SeriesEditTest::cleanup()
{
    setLocalZone("Europe/Berlin");
}

void SeriesEditTest::tableIsUnderstood()
{
    QCOMPARE(m_table.faults(), QByteArrayList());
    QVERIFY(m_table.rows().size() >= 60);
    for (const SeriesTableRow &row : m_table.rows())
        QVERIFY2(!row.occurrence.isEmpty() && !row.before.isEmpty(), row.name.constData());
}

void SeriesEditTest::seriesIsAsExpectedAfterwards_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < m_table.rows().size(); ++i)
        QTest::newRow(m_table.rows()[i].name.constData()) << i;
}

void SeriesEditTest::seriesIsAsExpectedAfterwards()
{
    QFETCH(int, index);
    const SeriesTableRow &row = m_table.rows()[index];
    setLocalZone(row.zone);
    SeriesFile before("BEGIN:VCALENDAR\r\n" + row.definition + row.components + "END:VCALENDAR\r\n");
    QCOMPARE(before.texts(row.from(), row.to()), row.expectedBefore());

    const auto outcome = before.changed(row);

    QCOMPARE(outcome.isOk(), !row.isRefused);
    const SeriesFile after(outcome ? outcome.value() : before.text());
    QCOMPARE(after.texts(row.from(), row.to()), row.expectedAfter());
    QCOMPARE(after.items().overrides.size(), row.overrides);
    for (const QByteArray &line : row.lines) {
        const QByteArray begin = "\r\n" + line;
        QVERIFY2(after.text().contains(begin), after.text().constData());
    }
}

VANTLE_TEST(SeriesEditTest)
#include "SeriesEditTest.moc"
