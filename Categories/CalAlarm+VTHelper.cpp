// SPDX-License-Identifier: MIT
#include "CalAlarm+VTHelper.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

constexpr double secondsPerMinute = 60;
constexpr double secondsPerHour = 3600;
constexpr double secondsPerDay = 86400;

struct AlarmKey {
    QLatin1StringView name;
    bool (*value)(const CalAlarm &alarm);
};

constexpr std::array alarmKeys {
    AlarmKey { "VTActionIsMessage"_L1, &VTActionIsMessage },
    AlarmKey { "VTActionIsEmail"_L1, &VTActionIsEmail },
    AlarmKey { "VTActionIsFile"_L1, &VTActionIsFile },
};

// As the address is written, percent notation included.
QString lastPathComponent(const QUrl &url)
{
    const QStringList parts = url.toString(QUrl::FullyEncoded).split(u'/', Qt::SkipEmptyParts);
    return parts.isEmpty() ? QString() : parts.last();
}

QString actionPhrase(const CalAlarm &alarm)
{
    const QString &action = alarm.action();
    if (action == CalAlarmActionDisplay)
        return QCoreApplication::translate("Vantle", "display a message");
    if (action == CalAlarmActionSound) {
        return QCoreApplication::translate("Vantle", "display a message and play %1 alert sound")
            .arg(alarm.sound().value_or(QString()));
    }
    if (action == CalAlarmActionEmail) {
        return QCoreApplication::translate("Vantle", "send an email to %1")
            .arg(alarm.emailAddress().value_or(QString()));
    }
    if (action == CalAlarmActionProcedure)
        return QCoreApplication::translate("Vantle", "open %1").arg(lastPathComponent(alarm.url().value_or(QUrl())));
    return {};
}

// Date, time and zone offset: "2026-11-20 10:45:00 +0100".
QString plainDescription(const QDateTime &instant)
{
    const QDateTime local = instant.toLocalTime();
    const int minutes = local.offsetFromUtc() / 60;
    return local.toString(u"yyyy-MM-dd HH:mm:ss "_s)
        + QString::asprintf("%c%02d%02d", minutes < 0 ? '-' : '+', std::abs(minutes) / 60, std::abs(minutes) % 60);
}

QString relativePhrase(double seconds)
{
    QString unit = QCoreApplication::translate("Vantle", "minutes");
    double number = seconds / secondsPerMinute;
    if (std::fmod(seconds, secondsPerDay) == 0) {
        unit = QCoreApplication::translate("Vantle", "days");
        number = seconds / secondsPerDay;
    } else if (std::fmod(seconds, secondsPerHour) == 0) {
        unit = QCoreApplication::translate("Vantle", "hours");
        number = seconds / secondsPerHour;
    }
    const bool isBefore = seconds < 0;
    const auto shown = static_cast<float>(std::abs(number));
    const QString relation
        = isBefore ? QCoreApplication::translate("Vantle", "before") : QCoreApplication::translate("Vantle", "after");
    // To the nearest whole number; from the middle to the even one.
    return QString::number(std::nearbyint(static_cast<double>(shown)), 'f', 0) + u' ' + unit + u' ' + relation;
}

} // namespace

bool VTActionIsMessage(const CalAlarm &alarm)
{
    return alarm.action() == CalAlarmActionDisplay || alarm.action() == CalAlarmActionSound;
}

bool VTActionIsEmail(const CalAlarm &alarm)
{
    return alarm.action() == CalAlarmActionEmail;
}

bool VTActionIsFile(const CalAlarm &alarm)
{
    return alarm.action() == CalAlarmActionProcedure;
}

void setVTActionIsMessage(CalAlarm &alarm, bool isMessage)
{
    setVTAction(alarm, isMessage ? CalAlarmActionDisplay : VTAction(alarm));
}

void setVTActionIsEmail(CalAlarm &alarm, bool isEmail)
{
    setVTAction(alarm, isEmail ? CalAlarmActionEmail : VTAction(alarm));
}

void setVTActionIsFile(CalAlarm &alarm, bool isFile)
{
    setVTAction(alarm, isFile ? CalAlarmActionProcedure : VTAction(alarm));
}

QString VTAction(const CalAlarm &alarm)
{
    return alarm.action();
}

void setVTAction(CalAlarm &alarm, const QString &action)
{
    for (const AlarmKey &key : alarmKeys)
        alarm.willChangeValueForKey(key.name);
    alarm.setAction(action);
    for (const AlarmKey &key : alarmKeys)
        alarm.didChangeValueForKey(key.name);
}

QString VTDescriptionForDisplay(const CalAlarm &alarm)
{
    const QString action = actionPhrase(alarm);
    if (alarm.absoluteTrigger()) {
        return QCoreApplication::translate("Vantle", "On %1, %2")
            .arg(plainDescription(*alarm.absoluteTrigger()), action);
    }
    return relativePhrase(alarm.relativeTrigger()) + u", "_s + action;
}

QVariant valueForKey(const CalAlarm &alarm, const QString &key)
{
    const auto *const found = std::ranges::find(alarmKeys, key, &AlarmKey::name);
    return found == alarmKeys.end() ? alarm.valueForKey(key) : QVariant(found->value(alarm));
}
