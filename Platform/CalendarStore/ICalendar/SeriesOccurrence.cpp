// SPDX-License-Identifier: MIT
#include "SeriesOccurrence.h"

#include "CivilDate.h"
#include "LineEdits.h"
#include "PropertyLine.h"
#include "TextPatcher.h"
#include "ValueTexts.h"
#include "Values.h"

#include <algorithm>

namespace ICalendar
{

namespace
{

bool isAnyOf(const QByteArray &name, std::initializer_list<const char *> names)
{
    return std::ranges::any_of(names, [&](const char *each) { return name == each; });
}

// What says when and how often a series repeats; an override has none of it.
bool saysWhichOccurrences(const QByteArray &name)
{
    return isAnyOf(name, { "RRULE", "RDATE", "EXDATE", "EXRULE", "RECURRENCE-ID" });
}

QByteArray rawLine(const ContentLines &lines, std::size_t index)
{
    const ContentLine &line = lines.lines()[index];
    return lines.text().sliced(line.begin, line.end - line.begin);
}

// The master's lines as an override has them.
class OverrideWriter
{
public:
    OverrideWriter(const SeriesText &series, const SeriesText::Place &place)
        : m_series(series)
        , m_place(place)
        , m_component(series.lines().components()[static_cast<std::size_t>(series.master().component)])
    {
        const Zone &local = series.local();
        m_hasOwnEnd = std::ranges::any_of(series.master().repetition->added,
            [&](const AddedDate &added) { return added.end && added.start.toUtc(local) == place.start.toUtc(local); });
    }

    QByteArray text()
    {
        const auto first = static_cast<std::size_t>(m_component.firstLine);
        const auto last = static_cast<std::size_t>(m_component.lastLine);
        for (std::size_t i = first; i <= last; ++i) {
            const bool isOwn = m_series.lines().lines()[i].component == m_series.master().component;
            if (isOwn)
                takeOwn(i);
            else
                m_text += rawLine(m_series.lines(), i);
        }
        return m_text;
    }

private:
    void takeOwn(std::size_t index)
    {
        const PropertyLine property = m_series.property(static_cast<int>(index));
        const QByteArray &name = property.name();
        if (name == "DTSTART") {
            writeStart(property);
        } else if (name == "DTEND" || (name == "DURATION" && m_hasOwnEnd)) {
            writeEnd(property);
        } else if (!saysWhichOccurrences(name)) {
            m_text += rawLine(m_series.lines(), index);
        }
    }

    void add(const QByteArray &line)
    {
        m_text += folded(line, m_series.lines().lineEnd()) + m_series.lines().lineEnd();
    }

    void writeStart(const PropertyLine &property)
    {
        if (m_hasStart)
            return;
        m_hasStart = true;
        const TimeForm form = formOf(m_place.start);
        add("DTSTART" + form.parameters + ':' + form.text(m_place.start.civil));
        add("RECURRENCE-ID" + form.parameters + ':' + form.text(m_place.start.civil));
        const bool hasEndLine = m_series.lineOf(m_series.items().master, "DTEND") >= 0
            || m_series.lineOf(m_series.items().master, "DURATION") >= 0;
        if (m_hasOwnEnd && !hasEndLine)
            writeEnd(property);
    }

    void writeEnd(const PropertyLine &property)
    {
        if (m_hasEnd)
            return;
        m_hasEnd = true;
        const Item &master = m_series.master();
        TimeForm form = m_series.form();
        const auto written = parsedDateTime(property.value());
        // An end before the start reads as the start, and has the form of that.
        const bool isOwn = written && master.end && written->civil == master.end->civil && master.end != master.start;
        if (property.name() == "DTEND" && isOwn && written->isDate == form.isDate())
            form = TimeForm::of(property, *master.end);
        form = form.naming(m_place.end.toUtc(m_series.local()));
        add("DTEND" + form.parameters + ':' + form.text(form.civilOf(m_place.end, m_series.local())));
    }

    // The form of the series, unless it cannot name the instant.
    TimeForm formOf(const CivilTime &time) const
    {
        return time.form == m_series.form().form ? m_series.form() : TimeForm::utc();
    }

    const SeriesText &m_series;
    const SeriesText::Place &m_place;
    const Component &m_component;
    bool m_hasOwnEnd = false;
    bool m_hasStart = false;
    bool m_hasEnd = false;
    QByteArray m_text;
};

// What an override says beside its times and the notes of changes, in an order of its own.
QByteArrayList contentOf(const SeriesText &series, int index)
{
    const ContentLines &lines = series.lines();
    const int component = series.item(index).component;
    const Component &place = lines.components()[static_cast<std::size_t>(component)];
    QByteArrayList own;
    QByteArrayList within;
    for (auto i = static_cast<std::size_t>(place.firstLine); i <= static_cast<std::size_t>(place.lastLine); ++i) {
        const QByteArray line = lines.unfolded(lines.lines()[i]);
        const QByteArray name = propertyName(line);
        if (lines.lines()[i].component != component)
            within.append(line);
        else if (!saysWhichOccurrences(name) && !line.trimmed().isEmpty()
            && !isAnyOf(name,
                { "DTSTART", "DTEND", "DURATION", "DTSTAMP", "LAST-MODIFIED", "CREATED", "SEQUENCE", "BEGIN", "END" }))
            own.append(line);
    }
    std::ranges::sort(own);
    return own + within;
}

} // namespace

DetachedOccurrence withOverride(const SeriesText &series, const SeriesText::Place &place)
{
    const int present = series.overrideAt(place);
    if (present >= 0)
        return { series.text(), present };

    int before = series.items().master;
    for (const int index : series.items().overrides)
        before = std::max(before, index);
    const Component &component = series.lines().components()[static_cast<std::size_t>(series.item(before).component)];
    LineEdits edits(series.lines());
    edits.insertTextAfter(static_cast<std::size_t>(component.lastLine), OverrideWriter(series, place).text());
    return { edits.text(), before + 1 };
}

QByteArray withoutOccurrence(const SeriesText &series, const SeriesText::Place &place, UtcSeconds stamp)
{
    QByteArray text = series.text();
    if (place.isMade) {
        const bool isInForm = place.start.form == series.form().form;
        const TimeForm form = isInForm ? series.form() : TimeForm::utc();
        std::size_t after = 0;
        for (const char *const name : { "DTSTART", "RRULE", "RDATE", "EXDATE" }) {
            const std::vector<std::size_t> lines = linesNamed(series.lines(), series.master().component, name);
            if (!lines.empty())
                after = std::max(after, lines.back());
        }
        LineEdits edits(series.lines());
        edits.insertLineAfter(after, "EXDATE" + form.parameters + ':' + form.text(place.start.civil));
        text = stamped(edits.text(), series.master(), stamp);
    }
    // Components keep their places: only lines of one of them have changed.
    const ContentLines lines(text);
    LineEdits edits(lines);
    for (const int index : series.overridesAt(place))
        edits.removeComponent(series.item(index).component);
    return edits.text();
}

bool differsFromSeries(const SeriesText &series, int override)
{
    const Item &item = series.item(override);
    if (!item.repetition->recurrenceId)
        return true;
    const SeriesText::Place place = series.place(*item.repetition->recurrenceId);
    if (!place.isMade || contentOf(series, override) != contentOf(series, series.items().master))
        return true;
    const Zone &local = series.local();
    if (!item.start || item.start->isDate() != place.start.isDate()
        || item.start->toUtc(local) != place.start.toUtc(local))
        return true;
    return item.end.value_or(*item.start).toUtc(local) != place.end.toUtc(local);
}

QByteArray stamped(const QByteArray &text, const Item &item, UtcSeconds stamp)
{
    TextPatcher patcher(text);
    patcher.setProperty(item.component, "DTSTAMP", utcText(stamp));
    patcher.setProperty(item.component, "LAST-MODIFIED", utcText(stamp));
    patcher.setProperty(item.component, "SEQUENCE", nextSequenceText(item.sequence));
    return patcher.patchedText();
}

} // namespace ICalendar
