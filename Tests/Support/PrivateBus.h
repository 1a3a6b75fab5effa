// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

// A session bus of a test's own. It starts no services by itself but those that
// it was told of, so that only what the test put there answers. Ends with the object.
class PrivateBus final
{
public:
    PrivateBus() = default;
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    // Before start(): the folder of the service files, and the environment of what it starts by them.
    void setServices(const QString &folder, const QProcessEnvironment &environment);

    // False, with a reason for the test's report, when it did not start.
    [[nodiscard]] bool start();
    QString failure() const { return m_failure; }

    QString address() const { return m_address; }
    // Another participant each time.
    QDBusConnection connect();
    static void disconnect(QDBusConnection &participant);

private:
    QTemporaryDir m_folder;
    QString m_services;
    QProcess m_daemon;
    QString m_address;
    QString m_failure;
};
