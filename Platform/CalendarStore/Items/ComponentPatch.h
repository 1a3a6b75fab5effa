// SPDX-License-Identifier: MIT
#pragma once

#include <CivilTime.h>

#include <QByteArray>
#include <QByteArrayList>
#include <QDateTime>
#include <QString>

#include <optional>

class CalCalendarItem;

namespace ICalendar
{
class TextPatcher;
}

namespace Items
{

// One event or to-do of a text while it takes over what was changed in a record of
// it. Nothing is written but what differs between the record and the state in which
// it was read.
class ComponentPatch final
{
public:
    // `component` is the place of the event or to-do among the text's components.
    ComponentPatch(ICalendar::TextPatcher &patcher, int component);

    // Text is escaped (RFC 5545, section 3.3.11). Parameters that tell of the old value go with it.
    void setText(const QByteArray &name, const std::optional<QString> &text);
    // `value` is what the text shall hold; absent removes the property.
    void setValue(const QByteArray &name, const std::optional<QByteArray> &value, const QByteArray &parameters = {});
    bool has(const QByteArray &name) const;

    // An instant in the form that `present`, the value of the property `like`, has by now: of its zone, of
    // UTC, or of the clock on the wall. A day, nothing, or what is not understood becomes a time in the zone of the
    // process, or where that cannot be said in a text, of UTC.
    void setInstant(const QByteArray &name, ICalendar::UtcSeconds instant,
        const std::optional<ICalendar::CivilTime> &present, const QByteArray &like);
    void setDate(const QByteArray &name, QDate date);

    // Title, notes and link.
    void takeTexts(const CalCalendarItem &record, const CalCalendarItem &read);

    // What tells of a change: DTSTAMP, LAST-MODIFIED, and the SEQUENCE after this one.
    void stamp(const QDateTime &now, int sequence);

private:
    bool isValueOf(const QByteArray &name, const ICalendar::CivilTime &time) const;
    QByteArray zoneNamedBy(const QByteArray &name) const;
    QByteArray parametersBeside(const QByteArray &name, const QByteArrayList &without) const;

    ICalendar::TextPatcher &m_patcher;
    int m_component;
};

} // namespace Items
