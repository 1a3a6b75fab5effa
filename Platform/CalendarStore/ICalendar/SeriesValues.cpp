// SPDX-License-Identifier: MIT
#include "SeriesValues.h"

#include "LineEdits.h"
#include "PropertyLine.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace ICalendar
{

namespace
{

// What belongs to one item alone, and its times, which move by rules of their own.
bool isCarriedOver(const QByteArray &name)
{
    static constexpr std::array others { "BEGIN", "END", "UID", "DTSTART", "DTEND", "DURATION", "RRULE", "RDATE",
        "EXDATE", "EXRULE", "RECURRENCE-ID", "DTSTAMP", "LAST-MODIFIED", "SEQUENCE", "CREATED" };
    return std::ranges::none_of(others, [&](const char *other) { return name == other; });
}

const Component &componentOf(const SeriesText &series, int index)
{
    return series.lines().components()[static_cast<std::size_t>(series.item(index).component)];
}

QSet<QByteArray> namesIn(const SeriesText &series, int index)
{
    QSet<QByteArray> names;
    const Component &component = componentOf(series, index);
    for (int i = component.firstLine; i <= component.lastLine; ++i) {
        const ContentLine &line = series.lines().lines()[static_cast<std::size_t>(i)];
        const QByteArray name = propertyName(series.lines().unfolded(line));
        if (line.component == series.item(index).component && !name.isEmpty() && isCarriedOver(name))
            names.insert(name);
    }
    return names;
}

QByteArrayList linesOf(const SeriesText &series, int index, const QByteArray &name)
{
    QByteArrayList result;
    for (const std::size_t line : linesNamed(series.lines(), series.item(index).component, name))
        result.append(series.lines().unfolded(series.lines().lines()[line]));
    return result;
}

QList<int> alarmsOf(const SeriesText &series, int index)
{
    QList<int> alarms;
    const auto &components = series.lines().components();
    for (int i = 0; i < static_cast<int>(components.size()); ++i) {
        const Component &component = components[static_cast<std::size_t>(i)];
        if (component.name == "VALARM" && component.parent == series.item(index).component)
            alarms.append(i);
    }
    return alarms;
}

QByteArray rawText(const ContentLines &lines, const Component &component)
{
    const qsizetype begin = lines.lines()[static_cast<std::size_t>(component.firstLine)].begin;
    const qsizetype end = lines.lines()[static_cast<std::size_t>(component.lastLine)].end;
    return lines.text().sliced(begin, end - begin);
}

QByteArray alarmTextOf(const SeriesText &series, int index)
{
    QByteArray text;
    for (const int alarm : alarmsOf(series, index))
        text += rawText(series.lines(), series.lines().components()[static_cast<std::size_t>(alarm)]);
    return text;
}

// The line after which a new property stands: the last of the item's own before what is within it.
std::size_t lineBeforeNewOnes(const SeriesText &series, int index)
{
    const Component &component = componentOf(series, index);
    auto last = static_cast<std::size_t>(component.firstLine);
    while (last + 1 < static_cast<std::size_t>(component.lastLine)
        && series.lines().lines()[last + 1].component == series.item(index).component)
        ++last;
    return last;
}

void setLines(
    const SeriesText &series, int index, const QByteArray &name, const QByteArrayList &wanted, LineEdits &edits)
{
    const std::vector<std::size_t> present = linesNamed(series.lines(), series.item(index).component, name);
    qsizetype next = 0;
    for (const std::size_t line : present) {
        if (next < wanted.size())
            edits.replaceLine(line, wanted[next++]);
        else
            edits.removeLine(line);
    }
    const std::size_t last = present.empty() ? lineBeforeNewOnes(series, index) : present.back();
    while (next < wanted.size())
        edits.insertLineAfter(last, wanted[next++]);
}

void setAlarms(const SeriesText &series, int index, const QByteArray &wanted, LineEdits &edits)
{
    for (const int alarm : alarmsOf(series, index))
        edits.removeComponent(alarm);
    edits.insertTextAfter(static_cast<std::size_t>(componentOf(series, index).lastLine) - 1, wanted);
}

} // namespace

QByteArray seriesWithValuesCarriedOver(const SeriesText &before, const SeriesText &after, int changed)
{
    const int master = before.items().master;
    QList<int> others = before.items().overrides;
    others.prepend(master);
    others.removeAll(changed);

    QByteArrayList names;
    for (const QByteArray &name : namesIn(before, changed) + namesIn(after, changed)) {
        if (linesOf(before, changed, name) != linesOf(after, changed, name))
            names.append(name);
    }
    std::ranges::sort(names);
    const QByteArray alarms = alarmTextOf(after, changed);
    const bool hasOtherAlarms = alarms != alarmTextOf(before, changed);

    LineEdits edits(after.lines());
    for (const int other : others) {
        for (const QByteArray &name : std::as_const(names)) {
            if (other == master || linesOf(before, other, name) == linesOf(before, master, name))
                setLines(after, other, name, linesOf(after, changed, name), edits);
        }
        if (hasOtherAlarms && (other == master || alarmTextOf(before, other) == alarmTextOf(before, master)))
            setAlarms(after, other, alarms, edits);
    }
    return edits.text();
}

QByteArray rawTextOf(const SeriesText &series, int index)
{
    return rawText(series.lines(), componentOf(series, index));
}

} // namespace ICalendar
