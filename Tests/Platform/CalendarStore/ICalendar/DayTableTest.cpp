// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <CivilDate.h>
#include <ICalendarReader.h>
#include <RecurrenceExpander.h>
#include <ZoneRegistry.h>

#include <QFile>
#include <QTest>

#include <ctime>

using namespace ICalendar;
using namespace Qt::StringLiterals;

namespace
{

struct Row {
    QByteArray name;
    QByteArray zone;
    QByteArray day;
    QByteArray definition;
    QByteArray properties;
    QStringList expected;
    bool repeatsTooOften = false;
};

// The table says what its lines mean.
class Table
{
public:
    explicit Table(const QString &path);

    const QList<Row> &rows() const { return m_rows; }
    const QByteArrayList &faults() const { return m_faults; }

private:
    void takeLine(const QByteArray &line);
    void takeLineOfRow(Row &row, const QByteArray &line);
    static QString inUtc(const QByteArray &instant);

    QList<Row> m_rows;
    QHash<QByteArray, QByteArray> m_definitions;
    QByteArray m_openDefinition;
    QByteArrayList m_faults;
};

Table::Table(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        m_faults.append("the table cannot be read");
    QByteArrayList lines = file.readAll().split('\n');
    while (!lines.isEmpty() && !lines.constFirst().startsWith("definition "))
        lines.removeFirst();
    for (const QByteArray &line : std::as_const(lines)) {
        if (!line.trimmed().isEmpty() && !line.startsWith("--"))
            takeLine(line);
    }
    for (Row &row : m_rows) {
        if (!row.definition.isEmpty())
            row.definition = m_definitions.value(row.definition, "no such definition");
    }
}

void Table::takeLine(const QByteArray &line)
{
    if (line.startsWith("definition ")) {
        m_openDefinition = line.mid(11).trimmed();
    } else if (line.startsWith("row ")) {
        m_openDefinition.clear();
        Row row;
        row.name = line.mid(4).trimmed();
        m_rows.append(row);
    } else if (!m_openDefinition.isEmpty()) {
        m_definitions[m_openDefinition] += line.trimmed().mid(2) + "\r\n";
    } else {
        takeLineOfRow(m_rows.last(), line.trimmed());
    }
}

void Table::takeLineOfRow(Row &row, const QByteArray &line)
{
    if (line.startsWith("zone ")) {
        row.zone = line.mid(5);
    } else if (line.startsWith("day ")) {
        row.day = line.mid(4);
    } else if (line.startsWith("with ")) {
        row.definition = line.mid(5);
    } else if (line == "| ---") {
        row.properties += "END:VEVENT\r\nBEGIN:VEVENT\r\nUID:series\r\n";
    } else if (line.startsWith("| ")) {
        row.properties += line.mid(2) + "\r\n";
    } else if (line.startsWith("= ")) {
        const qsizetype to = line.indexOf(" to ");
        row.expected.append(inUtc(line.mid(2, to - 2)) + u" to "_s + inUtc(line.mid(to + 4)));
    } else if (line == "too often") {
        row.repeatsTooOften = true;
    } else if (line != "nothing") {
        m_faults.append(line);
    }
}

QString Table::inUtc(const QByteArray &instant)
{
    return QDateTime::fromString(QString::fromLatin1(instant), Qt::ISODate).toUTC().toString(Qt::ISODate);
}

QString inUtc(const CivilTime &time, const Zone &local)
{
    return QDateTime::fromSecsSinceEpoch(time.toUtc(local), Qt::UTC).toString(Qt::ISODate);
}

void setLocalZone(const QByteArray &name)
{
    qputenv("TZ", name);
    tzset();
}

} // namespace

class DayTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void tableIsUnderstood();
    void dayHoldsWhatTheStandardSays_data();
    void dayHoldsWhatTheStandardSays();

private:
    const Table m_table { QStringLiteral(DAY_TABLE) };
};

void DayTableTest::cleanup()
{
    setLocalZone("Europe/Berlin");
}

void DayTableTest::tableIsUnderstood()
{
    QCOMPARE(m_table.faults(), QByteArrayList());
    QVERIFY(m_table.rows().size() >= 80);
    for (const Row &row : m_table.rows())
        QVERIFY2(!row.zone.isEmpty() && !row.day.isEmpty() && !row.properties.isEmpty(), row.name.constData());
}

void DayTableTest::dayHoldsWhatTheStandardSays_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < m_table.rows().size(); ++i)
        QTest::newRow(m_table.rows()[i].name.constData()) << i;
}

void DayTableTest::dayHoldsWhatTheStandardSays()
{
    QFETCH(int, index);
    const Row &row = m_table.rows()[index];
    setLocalZone(row.zone);
    const ZonePtr local = ZoneRegistry::localZone();
    const QDate day = QDate::fromString(QString::fromLatin1(row.day), Qt::ISODate);
    const CivilSeconds midnight = dayNumber(day.year(), day.month(), day.day()) * secondsPerDay;
    const UtcSeconds firstSecond = local->toUtc(midnight);
    const UtcSeconds lastSecond = local->toUtc(midnight + secondsPerDay) - 1;

    ZoneRegistry zones;
    const Document document = readDocument("BEGIN:VCALENDAR\r\n" + row.definition + "BEGIN:VEVENT\r\nUID:series\r\n"
            + row.properties + "END:VEVENT\r\nEND:VCALENDAR\r\n",
        zones);
    Item master;
    QList<const Item *> overrides;
    for (const Item &item : document.items) {
        if (item.repetition->recurrenceId)
            overrides.append(&item);
        else
            master = item;
    }
    const Expansion expansion = expandSeries(master, overrides, firstSecond, lastSecond, *local);

    QStringList found;
    for (const Occurrence &occurrence : expansion.occurrences)
        found.append(inUtc(occurrence.start, *local) + u" to "_s + inUtc(occurrence.end, *local));
    QCOMPARE(found, row.expected);
    QCOMPARE(expansion.repeatsTooOften, row.repeatsTooOften);
    // A series whose end is known must not be passed over on a day on which it takes place.
    const auto end = lastEnd(master, overrides, *local);
    QVERIFY(found.isEmpty() || !end || *end >= expansion.occurrences.constLast().end.toUtc(*local));
}

VANTLE_TEST(DayTableTest)
#include "DayTableTest.moc"
