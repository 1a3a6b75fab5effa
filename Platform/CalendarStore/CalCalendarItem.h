// SPDX-License-Identifier: MIT
#pragma once

#include "CalAlarm.h"
#include "CalCalendar.h"
#include "CalItemOrigin.h"
#include "CalTypes.h"

#include <KeyValueObject.h>

#include <QObject>
#include <QUrl>

#include <optional>

// What events and to-dos have in common.
//
// A record is a snapshot of one item (of one occurrence, for a repeating event)
// that can be edited without touching the store: the store's copy changes only
// through a save. Every query hands out fresh records. The record remembers the
// values with which it was read, so that a save knows what was changed.
//
// Identity is the pointer; records with the same uid are equal. Absent text
// (nothing stored) and empty text are different values.
class CalCalendarItem : public KeyValueObject
{
    Q_GADGET
    Q_PROPERTY(QString uid READ uid)
    Q_PROPERTY(CalCalendarPtr calendar READ calendar WRITE setCalendar)
    Q_PROPERTY(std::optional<QString> title READ title WRITE setTitle)
    Q_PROPERTY(std::optional<QString> notes READ notes WRITE setNotes)
    Q_PROPERTY(std::optional<QUrl> url READ url WRITE setUrl)
    Q_PROPERTY(CalAlarmList alarms READ alarms WRITE setAlarms)

public:
    virtual CalItemKind kind() const = 0;

    // Unique in the store and stable across queries and restarts; an occurrence of a series
    // has its own. Empty for an item that the store does not hold.
    const QString &uid() const { return m_uid; }
    void setUid(const QString &uid) { m_uid = uid; } // for the store

    // Null for a new item whose calendar has not been chosen.
    const CalCalendarPtr &calendar() const { return m_calendar; }
    void setCalendar(const CalCalendarPtr &calendar);

    const std::optional<QString> &title() const { return m_title; }
    void setTitle(const std::optional<QString> &title);

    const std::optional<QString> &notes() const { return m_notes; }
    void setNotes(const std::optional<QString> &notes);

    const std::optional<QUrl> &url() const { return m_url; }
    void setUrl(const std::optional<QUrl> &url);

    // Never a null element. The records in the list are shared with whoever holds them.
    const CalAlarmList &alarms() const { return m_alarms; }
    void setAlarms(const CalAlarmList &alarms);
    void addAlarm(const CalAlarmPtr &alarm);
    void addAlarms(const CalAlarmList &alarms);
    void removeAlarm(const CalAlarmPtr &alarm);
    void removeAlarms(const CalAlarmList &alarms);

    // For the store and its back ends.
    const CalItemOrigin &origin() const { return m_origin; }
    void setOrigin(const CalItemOrigin &origin) { m_origin = origin; }

    QVariant valueForKey(const QString &key) const override;
    bool isEqual(const KeyValueObject &other) const override;

protected:
    CalCalendarItem() = default;
    CalCalendarItem(const CalCalendarItem &) = default;
    CalCalendarItem &operator=(const CalCalendarItem &) = default;

    // Puts equal but independent alarms in the place of shared ones, silently.
    void takeOwnAlarms();

    // Sets a value between its two announcements.
    template <typename Value> void assign(const QString &key, Value &field, const Value &value)
    {
        willChangeValueForKey(key);
        field = value;
        didChangeValueForKey(key);
    }

private:
    QString m_uid;
    CalCalendarPtr m_calendar;
    std::optional<QString> m_title;
    std::optional<QString> m_notes;
    std::optional<QUrl> m_url;
    CalAlarmList m_alarms;
    CalItemOrigin m_origin;
};
