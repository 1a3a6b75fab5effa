// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

// The desktop portal itself, as a program on a private bus, with
// MockPortalBackEnd as its desktop. Ends with the object.
class PortalFrontEnd final
{
public:
    PortalFrontEnd() = default;
    ~PortalFrontEnd();
    PortalFrontEnd(const PortalFrontEnd &) = delete;
    PortalFrontEnd &operator=(const PortalFrontEnd &) = delete;

    enum class Desktop {
        WithHotKeys,
        WithoutHotKeys, // as most desktops are
    };

    // False, with a reason for the test's report, when it did not start. Asks the bus when it is ready.
    [[nodiscard]] bool start(
        const QString &busAddress, const QDBusConnection &bus, Desktop desktop = Desktop::WithHotKeys);
    void kill(); // as in a crash
    QString failure() const { return m_failure; }

private:
    bool isRegistered() const;

    QTemporaryDir m_folder;
    QProcess m_process;
    QDBusConnection m_bus { QString() };
    QString m_failure;
};
