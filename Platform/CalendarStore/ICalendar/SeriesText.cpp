// SPDX-License-Identifier: MIT
#include "SeriesText.h"

#include "CivilDate.h"
#include "ICalendarReader.h"
#include "LineEdits.h"
#include "PropertyLine.h"
#include "Values.h"

#include <limits>

namespace ICalendar
{

SeriesText::SeriesText(const QByteArray &text, const SeriesItems &items, ZoneRegistry &zones, const Zone &local)
    : m_lines(text)
    , m_document(readDocument(text, zones))
    , m_items(items)
    , m_local(local)
{
    const int start = lineOf(m_items.master, "DTSTART");
    if (start >= 0 && master().start)
        m_form = formOf(start, *master().start);
}

std::optional<SeriesText::Place> SeriesText::place(const QByteArray &recurrenceId) const
{
    const auto value = parsedDateTime(recurrenceId);
    if (!value)
        return std::nullopt;
    const auto form = value->isDate ? CivilTime::Form::Date
        : value->isUtc              ? CivilTime::Form::Utc
                                    : CivilTime::Form::Floating;
    return place(CivilTime { value->civil, form, nullptr });
}

SeriesText::Place SeriesText::place(const CivilTime &recurrenceId) const
{
    CivilTime start = m_form.time(m_form.civilOf(recurrenceId, m_local));
    if (recurrenceId.isDate() && !m_form.isDate())
        start = m_form.time(recurrenceId.civil + timeOfDay(master().start.value_or(CivilTime()).civil));
    const UtcSeconds instant
        = recurrenceId.isDate() || m_form.isDate() ? start.toUtc(m_local) : recurrenceId.toUtc(m_local);
    // The second pass of a time that occurs twice has no name but its instant.
    if (start.toUtc(m_local) != instant)
        start = { instant, CivilTime::Form::Utc, nullptr };

    for (const Occurrence &occurrence : expandSeries(master(), {}, instant, instant, m_local).occurrences) {
        if (occurrence.start.toUtc(m_local) != instant)
            continue;
        // A time that a clock change skips is named as the rule makes it.
        const bool isInForm = occurrence.start.form == m_form.form && occurrence.start.zone == m_form.zone;
        return { isInForm ? occurrence.start : start, occurrence.end, true };
    }
    return { start, start, false };
}

bool SeriesText::isNamedBy(const Place &place, const CivilTime &recurrenceId) const
{
    const DayNumber day = dayOf(m_form.civilOf(place.start, m_local));
    if (m_form.isDate())
        return dayOf(m_form.civilOf(recurrenceId, m_local)) == day;
    if (recurrenceId.isDate())
        return dayOf(recurrenceId.civil) == day;
    return recurrenceId.toUtc(m_local) == place.start.toUtc(m_local);
}

QList<int> SeriesText::overridesAt(const Place &place) const
{
    QList<int> found;
    for (const int index : m_items.overrides) {
        const auto &recurrenceId = item(index).repetition->recurrenceId;
        if (recurrenceId && isNamedBy(place, *recurrenceId))
            found.append(index);
    }
    return found;
}

int SeriesText::overrideAt(const Place &place) const
{
    int chosen = -1;
    for (const int index : overridesAt(place)) {
        if (chosen < 0 || item(index).sequence > item(chosen).sequence)
            chosen = index;
    }
    return chosen;
}

bool SeriesText::hasOccurrences() const
{
    QList<const Item *> overrides;
    for (const int index : m_items.overrides)
        overrides.append(&item(index));
    const auto end = lastEnd(master(), overrides, m_local);
    if (!end)
        return true;
    const Expansion all = expandSeries(
        master(), overrides, std::numeric_limits<UtcSeconds>::min(), std::numeric_limits<UtcSeconds>::max(), m_local);
    return all.repeatsTooOften || !all.occurrences.isEmpty();
}

int SeriesText::lineOf(int index, const QByteArray &name) const
{
    const std::vector<std::size_t> lines = linesNamed(m_lines, item(index).component, name);
    if (lines.empty())
        return -1;
    // The reader takes the first time that it understands.
    const bool isTime = name == "DTSTART" || name == "DTEND" || name == "RECURRENCE-ID";
    for (const std::size_t line : lines) {
        if (!isTime || parsedDateTime(property(static_cast<int>(line)).value()))
            return static_cast<int>(line);
    }
    return static_cast<int>(lines.front());
}

PropertyLine SeriesText::property(int line) const
{
    return PropertyLine(m_lines.unfolded(m_lines.lines()[static_cast<std::size_t>(line)]));
}

TimeForm SeriesText::formOf(int line, const CivilTime &time) const
{
    return TimeForm::of(property(line), time);
}

} // namespace ICalendar
