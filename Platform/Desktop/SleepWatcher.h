// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QDBusConnection;

// Says when the machine has woken up from sleep, as the system's login service
// tells it. Where there is none, nothing is ever said.
class SleepWatcher final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Listens on that bus, the system's normally.
    void watch(QDBusConnection bus);

Q_SIGNALS:
    void resumed();

private Q_SLOTS:
    void prepareForSleep(bool isAboutToSleep);
};
