// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

// An X server without a screen, for tests that need a real one. Ends with the
// object, and with the test's process however that ends.
class VirtualDisplay final
{
public:
    VirtualDisplay() = default;
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;

    // False, with a reason for the test's report, when it did not start.
    [[nodiscard]] bool start();
    void stop(); // as when the server crashes: its clients lose their connections
    QString failure() const { return m_failure; }

    // ":17"
    QByteArray name() const { return m_name; }
    // What a program needs in its surroundings to use this display.
    QProcessEnvironment environment() const;
    // Runs a program on this display and waits for its end; false, with a reason, unless it ended well.
    [[nodiscard]] bool run(const QString &program, const QStringList &arguments);

private:
    QProcess m_server;
    QByteArray m_name;
    QString m_failure;
};
