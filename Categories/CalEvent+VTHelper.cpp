// SPDX-License-Identifier: MIT
#include "CalEvent+VTHelper.h"

#include "CalCalendarItem+VTHelper.h"

CalEventPtr VTDeepCopy(const CalEvent &event)
{
    auto copy = std::make_shared<CalEvent>(event);
    copyAlarmsInto(*copy, event.alarms());
    return copy;
}

bool VTLocationIsAvalible(const CalEvent &event)
{
    return event.location() && !event.location()->isEmpty();
}

void VTUpdatePropertiesFromEvent(CalEvent &event, const CalEvent &source)
{
    // A copy, for the source may be the event itself. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const CalAlarmList alarms = source.alarms();

    event.setCalendar(source.calendar());
    event.setNotes(source.notes());
    event.setTitle(source.title());
    event.setUrl(source.url());
    event.removeAlarms(event.alarms());
    event.setAlarms(alarms);
    event.setStartDate(source.startDate());
    event.setEndDate(source.endDate());
    event.setIsAllDay(source.isAllDay());
    event.setLocation(source.location());
    event.setRecurrenceRule(source.recurrenceRule());
}
