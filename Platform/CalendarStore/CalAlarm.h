// SPDX-License-Identifier: MIT
#pragma once

#include "CalTypes.h"

#include <KeyValueObject.h>

#include <QDateTime>
#include <QObject>
#include <QUrl>

#include <optional>

// What an alarm does when it goes off. Any other text is an action that other
// programs know; it is kept.
extern const QString CalAlarmActionDisplay; // shows a message
extern const QString CalAlarmActionSound; // shows a message and plays a sound
extern const QString CalAlarmActionEmail; // sends an e-mail
extern const QString CalAlarmActionProcedure; // opens a file; never run by Vantle

// One alarm of an item (RFC 5545, VALARM).
//
// Mutable and shared: two items that list the same record share the alarm. A
// copy is an independent alarm with the same content.
class CalAlarm final : public KeyValueObject
{
    Q_GADGET
    Q_PROPERTY(QString action READ action WRITE setAction)
    Q_PROPERTY(std::optional<QString> sound READ sound WRITE setSound)
    Q_PROPERTY(std::optional<QString> emailAddress READ emailAddress WRITE setEmailAddress)
    Q_PROPERTY(std::optional<QUrl> url READ url WRITE setUrl)
    Q_PROPERTY(double relativeTrigger READ relativeTrigger WRITE setRelativeTrigger)
    Q_PROPERTY(std::optional<QDateTime> absoluteTrigger READ absoluteTrigger WRITE setAbsoluteTrigger)

public:
    CalAlarm() = default;

    const QString &action() const { return m_action; }
    void setAction(const QString &action);

    // The sound's name; giving one to a message alarm makes it a sound alarm.
    const std::optional<QString> &sound() const { return m_sound; }
    void setSound(const std::optional<QString> &sound);

    const std::optional<QString> &emailAddress() const { return m_emailAddress; }
    void setEmailAddress(const std::optional<QString> &address);

    const std::optional<QUrl> &url() const { return m_url; }
    void setUrl(const std::optional<QUrl> &url);

    // Seconds from the item's time, negative before it; counts while there is no absolute trigger.
    // The trigger that is set last is the one that counts: this one takes an absolute one away.
    double relativeTrigger() const { return m_relativeTrigger; }
    // Takes the absolute trigger away: the one that was set last counts.
    void setRelativeTrigger(double seconds);

    const std::optional<QDateTime> &absoluteTrigger() const { return m_absoluteTrigger; }
    void setAbsoluteTrigger(const std::optional<QDateTime> &instant);

    // Whether the relative trigger counts from the end of an event (RFC 5545, RELATED=END).
    bool isRelatedToEnd() const { return m_relatedToEnd; }
    void setRelatedToEnd(bool relatedToEnd) { m_relatedToEnd = relatedToEnd; }

    // Which VALARM of the stored item this record was read from, so that what a record does
    // not expose survives a save: its place among the component's alarms, -1 for a new alarm.
    int storedIndex() const { return m_storedIndex; }
    void setStoredIndex(int index) { m_storedIndex = index; }

    QVariant valueForKey(const QString &key) const override;

private:
    QString m_action = CalAlarmActionDisplay;
    std::optional<QString> m_sound;
    std::optional<QString> m_emailAddress;
    std::optional<QUrl> m_url;
    double m_relativeTrigger = 0;
    std::optional<QDateTime> m_absoluteTrigger;
    bool m_relatedToEnd = false;
    int m_storedIndex = -1;
};
