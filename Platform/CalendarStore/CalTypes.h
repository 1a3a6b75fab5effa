// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMetaType>

#include <memory>

class CalAlarm;
class CalCalendar;
class CalCalendarItem;
class CalEvent;
class CalTask;

// Records are shared: their identity is the pointer.
using CalAlarmPtr = std::shared_ptr<CalAlarm>;
using CalCalendarPtr = std::shared_ptr<CalCalendar>;
using CalCalendarItemPtr = std::shared_ptr<CalCalendarItem>;
using CalEventPtr = std::shared_ptr<CalEvent>;
using CalTaskPtr = std::shared_ptr<CalTask>;

using CalAlarmList = QList<CalAlarmPtr>;
using CalCalendarList = QList<CalCalendarPtr>;
using CalCalendarItemList = QList<CalCalendarItemPtr>;
using CalEventList = QList<CalEventPtr>;
using CalTaskList = QList<CalTaskPtr>;

// What a calendar can hold (RFC 5545, VEVENT and VTODO).
enum class CalItemKind { Event, Task };

// What a change of a repeating event means: the shown occurrence, or all of them.
// The numbers are the store's own.
enum CalSpan { CalSpanThisEvent = 0, CalSpanAllEvents = 2 };
