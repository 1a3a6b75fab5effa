// SPDX-License-Identifier: MIT
#pragma once

#include <CivilTime.h>

#include <QDateTime>
#include <QHash>

namespace Items
{

// Remembers instants as local times. Whoever asks for a day every few seconds gets the same instants each time,
// and what Qt asks the system for each of them costs more than all else of a record.
class LocalTimeCache final
{
public:
    // `local` stands for the zone of the process: another one than before drops what is remembered.
    QDateTime at(ICalendar::UtcSeconds instant, const ICalendar::ZonePtr &local);

private:
    ICalendar::ZonePtr m_local;
    QHash<ICalendar::UtcSeconds, QDateTime> m_times;
};

} // namespace Items
