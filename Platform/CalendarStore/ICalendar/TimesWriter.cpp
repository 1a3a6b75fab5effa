// SPDX-License-Identifier: MIT
#include "TimesWriter.h"

#include "CivilDate.h"
#include "PropertyLine.h"
#include "ValueTexts.h"
#include "Values.h"

namespace ICalendar
{

TimesWriter::TimesWriter(const SeriesText &series, int item, LineEdits &edits)
    : m_series(series)
    , m_item(series.item(item))
    , m_edits(edits)
    , m_startLine(series.lineOf(item, "DTSTART"))
    , m_endLine(series.lineOf(item, "DTEND"))
    , m_durationLine(series.lineOf(item, "DURATION"))
{
}

TimeForm TimesWriter::startForm(const TimeForm &fallback) const
{
    return m_startLine >= 0 && m_item.start ? m_series.formOf(m_startLine, *m_item.start) : fallback;
}

void TimesWriter::write(const TimeForm &form, CivilSeconds start, std::optional<qint64> length)
{
    const bool isOtherKind = m_item.start && m_item.start->isDate() != form.isDate();
    m_newStart = form.time(start);
    writeStart(form, start);
    if (isOtherKind || length)
        writeEnd(form, length.value_or(lengthOf(m_item)), isOtherKind);
    else if (m_endLine >= 0)
        moveEnd();
}

void TimesWriter::writeStart(const TimeForm &form, CivilSeconds start)
{
    const QByteArray line = "DTSTART" + form.parameters + ':' + form.text(start);
    if (m_startLine < 0) {
        m_startLine = m_series.lines().components()[static_cast<std::size_t>(m_item.component)].firstLine;
        m_edits.insertLineAfter(static_cast<std::size_t>(m_startLine), line);
        return;
    }
    const PropertyLine property = m_series.property(m_startLine);
    const bool isSameForm = m_item.start && m_series.formOf(m_startLine, *m_item.start).parameters == form.parameters
        && m_item.start->form == form.form;
    m_edits.replaceLine(static_cast<std::size_t>(m_startLine),
        isSameForm ? lineWithValue(property, unfolded(m_startLine), form.text(start)) : line);
}

QByteArray TimesWriter::unfolded(int line) const
{
    return m_series.lines().unfolded(m_series.lines().lines()[static_cast<std::size_t>(line)]);
}

// The end as the line has it, which may be before the start.
std::optional<CivilTime> TimesWriter::endAsWritten() const
{
    const auto value = parsedDateTime(m_series.property(m_endLine).value());
    if (!value || !m_item.start)
        return std::nullopt;
    if (value->isDate)
        return CivilTime { value->civil, CivilTime::Form::Date, nullptr };
    if (value->isUtc)
        return CivilTime { value->civil, CivilTime::Form::Utc, nullptr };
    // An end before the start reads as the start; its zone is hardly another one.
    const CivilTime &clock = m_item.end && m_item.end->form != CivilTime::Form::Utc ? *m_item.end : *m_item.start;
    return clock.isDate() ? CivilTime { dayOf(value->civil) * secondsPerDay, CivilTime::Form::Date, nullptr }
                          : CivilTime { value->civil, clock.form, clock.zone };
}

// As far as the start.
void TimesWriter::moveEnd()
{
    const auto end = endAsWritten();
    if (!end)
        return;
    const TimeForm form = m_series.formOf(m_endLine, *end);
    const Zone &local = m_series.local();
    const bool isByClock = end->isDate() || end->form == CivilTime::Form::Floating;
    const PropertyLine property = m_series.property(m_endLine);
    if (isByClock) {
        const CivilSeconds civil = end->civil + m_newStart.civil - m_item.start->civil;
        m_edits.replaceLine(
            static_cast<std::size_t>(m_endLine), lineWithValue(property, unfolded(m_endLine), form.text(civil)));
        return;
    }
    const UtcSeconds instant = end->toUtc(local) + m_newStart.toUtc(local) - m_item.start->toUtc(local);
    const TimeForm naming = form.naming(instant);
    const QByteArray value = naming.text(naming.civilAt(instant, local));
    m_edits.replaceLine(static_cast<std::size_t>(m_endLine),
        naming.form == form.form ? lineWithValue(property, unfolded(m_endLine), value)
                                 : "DTEND" + property.parametersWithout({ "VALUE", "TZID" }) + ':' + value);
}

void TimesWriter::writeEnd(const TimeForm &form, qint64 length, bool isOtherKind)
{
    if (m_endLine < 0 && m_durationLine >= 0 && length >= 0) {
        m_edits.replaceLine(static_cast<std::size_t>(m_durationLine), "DURATION:" + lengthText(length));
        return;
    }
    TimeForm endForm = form;
    const auto written = m_endLine >= 0 ? endAsWritten() : std::nullopt;
    // An end before the start reads as the start, and gets the form of that.
    const bool isOwn = written && written == m_item.end && m_item.end != m_item.start;
    if (isOwn && !isOtherKind && written->isDate() == form.isDate())
        endForm = m_series.formOf(m_endLine, *written);
    const Zone &local = m_series.local();
    if (!form.isDate())
        endForm = endForm.naming(m_newStart.toUtc(local) + length);
    const CivilSeconds civil
        = form.isDate() ? m_newStart.civil + length : endForm.civilAt(m_newStart.toUtc(local) + length, local);
    const QByteArray line = "DTEND" + endForm.parameters + ':' + endForm.text(civil);
    if (m_endLine >= 0)
        m_edits.replaceLine(static_cast<std::size_t>(m_endLine), line);
    else
        m_edits.insertLineAfter(static_cast<std::size_t>(m_startLine), line);
    if (m_durationLine >= 0)
        m_edits.removeLine(static_cast<std::size_t>(m_durationLine));
}

QByteArray lineWithValue(const PropertyLine &property, const QByteArray &line, const QByteArray &value)
{
    return line.first(line.size() - property.value().size()) + value;
}

qint64 lengthOf(const Item &item)
{
    return item.durationDays * secondsPerDay + item.durationSeconds;
}

} // namespace ICalendar
