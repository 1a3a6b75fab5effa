// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// series.txt, taken apart; the file says what its lines mean. The expectations are
// worked out here from what is written in the table alone: dates are counted by
// QDate, and no code that is under test takes part.

struct SeriesTableOccurrence {
    QDateTime start; // the first second, for whole days
    QDateTime end; // of whole days the first second of the day after the last
    bool isAllDay = false;
    QString title;

    // "2026-01-05 09:00 to 2026-01-05 10:00 Title", or "2026-01-05 to 2026-01-06 Title", in local time.
    QString text() const;
};

struct SeriesTableRow {
    QByteArray name;
    QByteArray zone;
    QByteArray definition; // a VTIMEZONE, or empty
    QByteArray components; // from the first BEGIN:VEVENT to the last END:VEVENT
    enum class Action { EditAll, EditThis, Remove };
    Action action = Action::EditAll;
    QByteArray occurrence; // the one that is changed or removed, by the start that is shown
    QMap<QByteArray, QByteArray> values; // what is set: "start", "end", "allday", "title", "location"
    int overrides = 0; // how many there are afterwards
    QByteArrayList lines; // what some line of the file begins with afterwards
    bool isRefused = false;
    QByteArrayList before; // expectations as written
    QByteArrayList after;

    // An instant of the row, "2026-01-05 09:00" or "2026-01-05".
    QDateTime instant(const QByteArray &text) const;
    // Two years before the occurrence that is changed, and two years after.
    QDateTime from() const { return instant(occurrence).addYears(-2); }
    QDateTime to() const { return instant(occurrence).addYears(2); }
    QStringList expectedBefore() const { return expected(before); }
    QStringList expectedAfter() const { return expected(after); }

private:
    QStringList expected(const QByteArrayList &expectations) const;
};

class SeriesTable
{
public:
    explicit SeriesTable(const QString &path);

    const QList<SeriesTableRow> &rows() const { return m_rows; }
    // Lines that are not understood.
    const QByteArrayList &faults() const { return m_faults; }

private:
    void takeLine(const QByteArray &line);
    void takeLineOfRow(SeriesTableRow &row, const QByteArray &line);

    QList<SeriesTableRow> m_rows;
    QMap<QByteArray, QByteArray> m_definitions;
    QByteArray m_openDefinition;
    QByteArrayList m_faults;
};

// Makes it the zone of the process.
void setLocalZone(const QByteArray &name);
