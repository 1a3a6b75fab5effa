// SPDX-License-Identifier: MIT
#include "CalAlarm.h"

#include <QMetaProperty>

using namespace Qt::StringLiterals;

const QString CalAlarmActionDisplay = u"DISPLAY"_s;
const QString CalAlarmActionSound = u"AUDIO"_s;
const QString CalAlarmActionEmail = u"EMAIL"_s;
const QString CalAlarmActionProcedure = u"PROCEDURE"_s;

void CalAlarm::setAction(const QString &action)
{
    willChangeValueForKey(u"action"_s);
    m_action = action;
    didChangeValueForKey(u"action"_s);
}

void CalAlarm::setSound(const std::optional<QString> &sound)
{
    willChangeValueForKey(u"sound"_s);
    m_sound = sound;
    didChangeValueForKey(u"sound"_s);
    if (m_action == CalAlarmActionDisplay && sound && !sound->isEmpty())
        setAction(CalAlarmActionSound);
}

void CalAlarm::setEmailAddress(const std::optional<QString> &address)
{
    willChangeValueForKey(u"emailAddress"_s);
    m_emailAddress = address;
    didChangeValueForKey(u"emailAddress"_s);
}

void CalAlarm::setUrl(const std::optional<QUrl> &url)
{
    willChangeValueForKey(u"url"_s);
    m_url = url;
    didChangeValueForKey(u"url"_s);
}

void CalAlarm::setRelativeTrigger(double seconds)
{
    willChangeValueForKey(u"relativeTrigger"_s);
    m_relativeTrigger = seconds;
    didChangeValueForKey(u"relativeTrigger"_s);
    if (m_absoluteTrigger)
        setAbsoluteTrigger(std::nullopt);
}

void CalAlarm::setAbsoluteTrigger(const std::optional<QDateTime> &instant)
{
    willChangeValueForKey(u"absoluteTrigger"_s);
    m_absoluteTrigger = instant;
    didChangeValueForKey(u"absoluteTrigger"_s);
}

QVariant CalAlarm::valueForKey(const QString &key) const
{
    const int index = staticMetaObject.indexOfProperty(key.toLatin1().constData());
    return index < 0 ? QVariant() : staticMetaObject.property(index).readOnGadget(this);
}
