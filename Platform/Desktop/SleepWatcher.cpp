// SPDX-License-Identifier: MIT
#include "SleepWatcher.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

void SleepWatcher::watch(QDBusConnection bus)
{
    if (!bus.isConnected())
        return;
    bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s,
        u"PrepareForSleep"_s, this, SLOT(prepareForSleep(bool)));
}

void SleepWatcher::prepareForSleep(bool isAboutToSleep)
{
    if (!isAboutToSleep)
        Q_EMIT resumed();
}
