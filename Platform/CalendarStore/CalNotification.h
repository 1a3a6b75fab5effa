// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QSet>
#include <QString>

// The six ways in which the store's content can change: by a save or removal
// of this process, or externally, by another program or a service.
enum CalNotificationName {
    CalCalendarsChangedNotification,
    CalEventsChangedNotification,
    CalTasksChangedNotification,
    CalCalendarsChangedExternallyNotification,
    CalEventsChangedExternallyNotification,
    CalTasksChangedExternallyNotification,
};

struct CalNotification {
    CalNotificationName name = CalCalendarsChangedNotification;
    QSet<QString> calendarUids; // the calendars concerned
};
Q_DECLARE_METATYPE(CalNotification)
