// SPDX-License-Identifier: MIT
#include "ComponentPatch.h"

#include "LocalTimes.h"

#include <CalCalendarItem.h>

#include <CivilDate.h>
#include <TextPatcher.h>
#include <ValueTexts.h>
#include <Values.h>
#include <ZoneRegistry.h>

namespace Items
{

using ICalendar::CivilTime;

namespace
{

ICalendar::CivilSeconds civilOf(QDate date)
{
    return ICalendar::dayNumber(date.year(), date.month(), date.day()) * ICalendar::secondsPerDay;
}

} // namespace

ComponentPatch::ComponentPatch(ICalendar::TextPatcher &patcher, int component)
    : m_patcher(patcher)
    , m_component(component)
{
}

void ComponentPatch::setText(const QByteArray &name, const std::optional<QString> &text)
{
    // Another form of the same text (RFC 5545, section 3.2.1), and how old writers encoded it.
    const QByteArray parameters = parametersBeside(name, { "ALTREP", "ENCODING", "CHARSET" });
    setValue(name, text ? std::optional(ICalendar::escapedText(*text)) : std::nullopt, parameters);
}

void ComponentPatch::setValue(
    const QByteArray &name, const std::optional<QByteArray> &value, const QByteArray &parameters)
{
    if (value)
        m_patcher.setProperty(m_component, name, *value, parameters);
    else
        m_patcher.removeProperty(m_component, name);
}

bool ComponentPatch::has(const QByteArray &name) const
{
    return m_patcher.propertyLine(m_component, name).has_value();
}

void ComponentPatch::setInstant(const QByteArray &name, ICalendar::UtcSeconds instant,
    const std::optional<CivilTime> &present, const QByteArray &like)
{
    const QByteArray others = parametersBeside(name, { "VALUE", "TZID" });
    const bool isLikePresent = present && !present->isDate() && isValueOf(like, *present);
    // A zone that nobody here knows counts as local time, and keeps its name for those who know it.
    const ICalendar::ZonePtr zone
        = isLikePresent && present->zone ? present->zone : ICalendar::ZoneRegistry::localZone();
    const bool isFloating = isLikePresent && present->form == CivilTime::Form::Floating;
    // Of a time that comes twice, a zone's clock names the first alone.
    const bool isNamedByZone = isFloating || zone->toUtc(zone->toCivil(instant)) == instant;
    if (!isNamedByZone || (isLikePresent && present->form == CivilTime::Form::Utc)) {
        setValue(name, ICalendar::utcText(instant), others);
    } else if (isLikePresent) {
        setValue(name, ICalendar::dateTimeText(zone->toCivil(instant)), zoneNamedBy(like) + others);
    } else {
        const TimeValue time = localTimeValue(m_patcher, m_component, instant);
        setValue(name, time.value, time.parameters + others);
    }
}

void ComponentPatch::setDate(const QByteArray &name, QDate date)
{
    setValue(name, ICalendar::dateText(civilOf(date)), ";VALUE=DATE" + parametersBeside(name, { "VALUE", "TZID" }));
}

void ComponentPatch::takeTexts(const CalCalendarItem &record, const CalCalendarItem &read)
{
    if (record.title() != read.title())
        setText("SUMMARY", record.title());
    if (record.notes() != read.notes())
        setText("DESCRIPTION", record.notes());
    if (record.url() != read.url())
        setValue("URL", record.url() ? std::optional(record.url()->toEncoded()) : std::nullopt);
}

void ComponentPatch::stamp(const QDateTime &now, int sequence)
{
    const QByteArray text = ICalendar::utcText(now.toSecsSinceEpoch());
    setValue("DTSTAMP", text);
    setValue("LAST-MODIFIED", text);
    setValue("SEQUENCE", ICalendar::nextSequenceText(sequence));
}

QByteArray ComponentPatch::parametersBeside(const QByteArray &name, const QByteArrayList &without) const
{
    const auto line = m_patcher.propertyLine(m_component, name);
    return line ? line->parametersWithout(without) : QByteArray();
}

// What was read may come from another property where the one of this name is not understood.
bool ComponentPatch::isValueOf(const QByteArray &name, const CivilTime &time) const
{
    const auto line = m_patcher.propertyLine(m_component, name);
    const auto value = line ? ICalendar::parsedDateTime(line->value()) : std::nullopt;
    return value && !value->isDate && value->civil == time.civil && value->isUtc == (time.form == CivilTime::Form::Utc);
}

QByteArray ComponentPatch::zoneNamedBy(const QByteArray &name) const
{
    const auto line = m_patcher.propertyLine(m_component, name);
    return line ? line->parameterText("TZID") : QByteArray();
}

} // namespace Items
