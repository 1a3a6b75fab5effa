// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The thirteen settings. The spelling of the keys, odd as some of it is, is a
// promise to the settings files that people have.

inline const QString VTSelectedTaskSortMethodKey = QStringLiteral("VTSelectedTaskSortMethod");
inline const QString VTRestrictTasksToCurrentWeekKey = QStringLiteral("VTRestrictTasksToCurrentWeek");
inline const QString VTIncludeAllCompletedTasksKey = QStringLiteral("VTIncludeAllCompletedTasks");
inline const QString VTUnselectedCalendarsUIDKey = QStringLiteral("VTUnselectedCalendarsUID");
inline const QString VTShowCalendarDrawerKey = QStringLiteral("VTShowCalendarDrawer");

inline const QString VTHidesWhenInactiveKey = QStringLiteral("VTHidesWhenInactive");
inline const QString VTIconStatusKey = QStringLiteral("VTIconStatus");

// Also the identifiers of the three global hot keys.
inline const QString VTHotkeyKeyCodeKey = QStringLiteral("VTHotkeyKeyCode");
inline const QString VTAddEventKeyCodeKey = QStringLiteral("VTAddEventKeyCode");
inline const QString VTAddTaskKeyCodeKey = QStringLiteral("VTAddTaskKeyCode");

inline const QString VTHotkeyCarbonModiferFlagsKey = QStringLiteral("VTHotkeyCarbonModiferFlags");
inline const QString VTAddEventCarbonModiferFlagsKey = QStringLiteral("VTAddEventCarbonModiferFlags");
inline const QString VTAddTaskCarbonModiferFlagsKey = QStringLiteral("VTAddTaskCarbonModiferFlags");
