// SPDX-License-Identifier: MIT
#include "CalCalendarItem+VTHelper.h"

#include "CalEvent+VTHelper.h"
#include "CalTask+VTHelpers.h"

#include <CalendarApplication.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

struct TaskKey {
    QLatin1StringView name;
    bool (*value)(const CalTask &task);
};

constexpr std::array taskKeys {
    TaskKey { "VTPriorityIsNone"_L1, &VTPriorityIsNone },
    TaskKey { "VTDueDateIsSet"_L1, &VTDueDateIsSet },
    TaskKey { "VTDueDateIsNotSet"_L1, &VTDueDateIsNotSet },
    TaskKey { "VTIsUrlAvailable"_L1, &VTIsUrlAvailable },
};

// On which the item is to be found; null for a to-do without a due date.
QDate dayOf(const CalCalendarItem &item)
{
    if (const auto *event = dynamic_cast<const CalEvent *>(&item))
        return event->startDate().toLocalTime().date();
    const auto *task = dynamic_cast<const CalTask *>(&item);
    return task && task->dueDate() ? task->dueDate()->toLocalTime().date() : QDate();
}

} // namespace

void showInICal(const CalCalendarItem &item, CalendarApplication &application)
{
    if (!item.calendar())
        return;

    const CalendarApplication::Element element {
        .calendarUid = item.calendar()->uid(),
        .kind = item.kind() == CalItemKind::Event ? CalendarApplication::ElementKind::Event
                                                  : CalendarApplication::ElementKind::Todo,
        .plainUid = item.origin().plainUid,
        .recurrenceId = item.origin().recurrenceId,
        .day = dayOf(item),
    };
    if (!application.hasCalendar(element.calendarUid) || !application.hasElement(element))
        return;

    application.activate();
    application.showElement(element);
}

QVariant valueForKey(const CalCalendarItem &item, const QString &key)
{
    if (const auto *task = dynamic_cast<const CalTask *>(&item)) {
        const auto *const found = std::ranges::find(taskKeys, key, &TaskKey::name);
        if (found != taskKeys.end())
            return found->value(*task);
    }
    if (const auto *event = dynamic_cast<const CalEvent *>(&item); event && key == "VTLocationIsAvalible"_L1)
        return VTLocationIsAvalible(*event);
    return item.valueForKey(key);
}

void copyAlarmsInto(CalCalendarItem &copy, const CalAlarmList &alarms)
{
    copy.removeAlarms(alarms);
    for (const CalAlarmPtr &alarm : alarms)
        copy.addAlarm(std::make_shared<CalAlarm>(*alarm));
}
