// SPDX-License-Identifier: MIT
#include "HotKeyStatus.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

HotKeyStatus HotKeyStatus::active(const QString &trigger)
{
    return { .kind = Kind::Active, .trigger = trigger, .reason = {}, .command = {} };
}

HotKeyStatus HotKeyStatus::refused(const QString &reason)
{
    return { .kind = Kind::Refused, .trigger = {}, .reason = reason, .command = {} };
}

HotKeyStatus HotKeyStatus::waitingForDesktop()
{
    return { .kind = Kind::WaitingForDesktop, .trigger = {}, .reason = {}, .command = {} };
}

HotKeyStatus HotKeyStatus::notOffered(const QString &desktopAction)
{
    const QString command
        = desktopAction.isEmpty() ? QString() : QString(u"gapplication action org.vantle.Vantle "_s + desktopAction);
    return { .kind = Kind::NotOffered, .trigger = {}, .reason = {}, .command = command };
}

QString HotKeyStatus::text() const
{
    switch (kind) {
    case Kind::Unset:
        return QCoreApplication::translate("Vantle", "Not set.");
    case Kind::Active:
        if (trigger.isEmpty())
            return QCoreApplication::translate("Vantle", "Active.");
        return QCoreApplication::translate("Vantle", "Active. The desktop’s name for it: %1").arg(trigger);
    case Kind::Refused:
        return reason;
    case Kind::WaitingForDesktop:
        return QCoreApplication::translate("Vantle", "Waiting for the desktop to allow it.");
    case Kind::NotOffered:
        if (command.isEmpty())
            return QCoreApplication::translate("Vantle", "This desktop offers no global hot keys to programs.");
        return QCoreApplication::translate("Vantle",
            "This desktop offers no global hot keys to programs. "
            "Bind this command in its keyboard settings: %1")
            .arg(command);
    }
    return {};
}
