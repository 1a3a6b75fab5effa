// SPDX-License-Identifier: MIT
#include "SeriesTable.h"

#include <QFile>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

// "2026-01-05 09:00-10:00 every 7 days until 2026-12-31 except 2026-02-02 in America/New_York titled Own"
struct Expectation {
    QDate first;
    QDate until;
    std::optional<QTime> start;
    QTime end;
    int days = 1; // of an event that lasts whole days
    int count = -1;
    int everyDays = 0;
    int everyMonths = 0;
    int position = 0; // the nth of a weekday in each month, -1 the last
    int weekday = 0; // 1 Monday to 7 Sunday
    QList<int> weekdays; // of every week
    QList<QDate> except;
    QTimeZone zone;
    QString title = u"Title"_s;
    bool isUnderstood = true;
};

const QStringList weekdayNames { u"MO"_s, u"TU"_s, u"WE"_s, u"TH"_s, u"FR"_s, u"SA"_s, u"SU"_s };

QDate dateOf(const QString &text)
{
    return QDate::fromString(text, Qt::ISODate);
}

// The first group of what the pattern finds in the text, which loses it.
QStringList taken(QString &text, const QString &pattern)
{
    const QRegularExpressionMatch match = QRegularExpression(pattern).match(text);
    if (!match.hasMatch())
        return {};
    text.remove(match.capturedStart(), match.capturedLength());
    return match.capturedTexts();
}

Expectation parsed(const QByteArray &line, const QByteArray &zone)
{
    QString text = QString::fromUtf8(line);
    Expectation result;
    result.zone = QTimeZone(zone);
    if (const auto found = taken(text, u" titled (.+)$"_s); !found.isEmpty())
        result.title = found.at(1);
    if (const auto found = taken(text, u" in ([A-Za-z_/]+)"_s); !found.isEmpty())
        result.zone = QTimeZone(found.at(1).toLatin1());
    if (const auto found = taken(text, u" except ([-0-9, ]+[0-9])"_s); !found.isEmpty()) {
        for (const QString &date : found.at(1).split(u","_s))
            result.except.append(dateOf(date.trimmed()));
    }
    if (const auto found = taken(text, u" until ([-0-9]+)"_s); !found.isEmpty())
        result.until = dateOf(found.at(1));
    if (const auto found = taken(text, u" (\\d+) times"_s); !found.isEmpty())
        result.count = found.at(1).toInt();
    if (const auto found = taken(text, u" every (\\d+) days"_s); !found.isEmpty())
        result.everyDays = found.at(1).toInt();
    if (const auto found = taken(text, u" every (\\d+) months(?: on the (-?\\d) ([A-Z]{2}))?"_s); !found.isEmpty()) {
        result.everyMonths = found.at(1).toInt();
        result.position = found.value(2).toInt();
        result.weekday = static_cast<int>(weekdayNames.indexOf(found.value(3))) + 1;
    }
    if (const auto found = taken(text, u" every week on ([A-Z,]+)"_s); !found.isEmpty()) {
        for (const QString &name : found.at(1).split(u','))
            result.weekdays.append(static_cast<int>(weekdayNames.indexOf(name)) + 1);
    }
    if (const auto found = taken(text, u" (\\d\\d:\\d\\d)-(\\d\\d:\\d\\d)"_s); !found.isEmpty()) {
        result.start = QTime::fromString(found.at(1), u"HH:mm"_s);
        result.end = QTime::fromString(found.at(2), u"HH:mm"_s);
    } else if (const auto lasts = taken(text, u" for (\\d+) days?"_s); !lasts.isEmpty()) {
        result.days = lasts.at(1).toInt();
    } else {
        result.isUnderstood = false;
    }
    result.first = dateOf(text.trimmed());
    result.isUnderstood = result.isUnderstood && result.first.isValid() && result.zone.isValid();
    return result;
}

QDate inMonth(const Expectation &expectation, QDate month)
{
    if (expectation.position == 0)
        return QDate(month.year(), month.month(), expectation.first.day());
    const QDate begin(month.year(), month.month(), 1);
    QDate day = begin.addDays((expectation.weekday - begin.dayOfWeek() + 7) % 7);
    if (expectation.position > 0)
        return day.addDays((expectation.position - 1) * 7);
    while (day.addDays(7).month() == begin.month())
        day = day.addDays(7);
    return day;
}

// The days of an expectation, in order.
QList<QDate> daysOf(const Expectation &expectation, QDate last)
{
    QList<QDate> days;
    const QDate end = expectation.until.isValid() ? std::min(expectation.until, last) : last;
    QDate month(expectation.first.year(), expectation.first.month(), 1);
    for (QDate day = expectation.first; day.isValid() || expectation.everyMonths > 0;) {
        if ((expectation.everyMonths > 0 ? month : day) > end || days.size() == expectation.count)
            break;
        if (expectation.everyMonths > 0) {
            day = inMonth(expectation, month);
            month = month.addMonths(expectation.everyMonths);
            if (day.isValid() && day >= expectation.first && day <= end)
                days.append(day);
        } else {
            if (expectation.weekdays.isEmpty() || expectation.weekdays.contains(day.dayOfWeek()))
                days.append(day);
            if (expectation.everyDays == 0 && expectation.weekdays.isEmpty())
                break;
            day = day.addDays(expectation.everyDays > 0 ? expectation.everyDays : 1);
        }
    }
    days.removeIf([&](QDate day) { return expectation.except.contains(day); });
    return days;
}

} // namespace

QString SeriesTableOccurrence::text() const
{
    const QString format = isAllDay ? u"yyyy-MM-dd"_s : u"yyyy-MM-dd HH:mm"_s;
    return start.toLocalTime().toString(format) + u" to "_s + end.toLocalTime().toString(format) + u' ' + title;
}

QDateTime SeriesTableRow::instant(const QByteArray &text) const
{
    const QString given = QString::fromLatin1(text);
    const QTime time = given.size() > 10 ? QTime::fromString(given.mid(11), u"HH:mm"_s) : QTime(0, 0);
    return { dateOf(given.left(10)), time, QTimeZone(zone) };
}

QStringList SeriesTableRow::expected(const QByteArrayList &expectations) const
{
    QStringList texts;
    for (const QByteArray &line : expectations) {
        const Expectation expectation = parsed(line, zone);
        if (!expectation.isUnderstood) {
            texts.append(u"not understood: "_s + QString::fromUtf8(line));
            continue;
        }
        for (const QDate day : daysOf(expectation, to().date().addDays(1))) {
            SeriesTableOccurrence one;
            one.title = expectation.title;
            one.isAllDay = !expectation.start;
            one.start = QDateTime(day, expectation.start.value_or(QTime(0, 0)), expectation.zone);
            if (one.isAllDay)
                one.end = QDateTime(day.addDays(expectation.days), QTime(0, 0), expectation.zone);
            else
                one.end = QDateTime(
                    expectation.end < *expectation.start ? day.addDays(1) : day, expectation.end, expectation.zone);
            if (one.start >= from() && one.start <= to())
                texts.append(one.text());
        }
    }
    texts.sort();
    return texts;
}

SeriesTable::SeriesTable(const QString &path)
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
    for (SeriesTableRow &row : m_rows) {
        row.components = "BEGIN:VEVENT\r\n" + row.components + "END:VEVENT\r\n";
        if (!row.definition.isEmpty())
            row.definition = m_definitions.value(row.definition, "no such definition");
    }
}

void SeriesTable::takeLine(const QByteArray &line)
{
    if (line.startsWith("definition ")) {
        m_openDefinition = line.mid(11).trimmed();
    } else if (line.startsWith("row ")) {
        m_openDefinition.clear();
        SeriesTableRow row;
        row.name = line.mid(4).trimmed();
        row.zone = "Europe/Berlin";
        row.components = "UID:series\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Title\r\n";
        m_rows.append(row);
    } else if (!m_openDefinition.isEmpty()) {
        m_definitions[m_openDefinition] += line.trimmed().mid(2) + "\r\n";
    } else {
        takeLineOfRow(m_rows.last(), line.trimmed());
    }
}

void SeriesTable::takeLineOfRow(SeriesTableRow &row, const QByteArray &line)
{
    const QByteArray word = line.left(line.indexOf(' '));
    const QByteArray rest = line.mid(word.size() + 1).trimmed();
    using Action = SeriesTableRow::Action;
    static const QMap<QByteArray, Action> actions { { "edit", Action::EditAll }, { "edit-this", Action::EditThis },
        { "remove", Action::Remove } };
    if (word == "zone") {
        row.zone = rest;
    } else if (word == "with") {
        row.definition = rest;
    } else if (line == "| ---") {
        row.components += "END:VEVENT\r\nBEGIN:VEVENT\r\nUID:series\r\nDTSTAMP:20250101T000000Z\r\n";
    } else if (word == "|") {
        row.components += line.mid(2) + "\r\n";
    } else if (actions.contains(word)) {
        row.action = actions.value(word);
        row.occurrence = rest;
    } else if (word == "set") {
        const QByteArray name = rest.left(rest.indexOf(' '));
        row.values.insert(name, rest.mid(name.size() + 1));
    } else if (word == "overrides") {
        row.overrides = rest.toInt();
    } else if (word == "line") {
        row.lines.append(rest);
    } else if (line == "refused") {
        row.isRefused = true;
    } else if (word == "was") {
        row.before.append(rest);
    } else if (word == "is") {
        row.after.append(rest);
    } else if (line == "as before") {
        row.after = row.before;
    } else if (line != "nothing") {
        m_faults.append(line);
    }
}

void setLocalZone(const QByteArray &name)
{
    qputenv("TZ", name);
    tzset();
}
