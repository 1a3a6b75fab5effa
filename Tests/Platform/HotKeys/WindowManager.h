// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>

class VirtualDisplay;

// A window manager on a virtual display, with keys of its own. Ends with the object.
class WindowManager final
{
public:
    WindowManager() = default;
    ~WindowManager();
    WindowManager(const WindowManager &) = delete;
    WindowManager &operator=(const WindowManager &) = delete;

    // False, with a reason for the test's report, when it does not manage the display in time.
    [[nodiscard]] bool start(const VirtualDisplay &display);
    QString failure() const { return m_failure; }

private:
    QProcess m_process;
    QString m_failure;
};
