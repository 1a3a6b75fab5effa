// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Tells the person what went wrong, and waits until it was read.
class DesktopAlerts
{
public:
    DesktopAlerts() = default;
    virtual ~DesktopAlerts() = default;
    DesktopAlerts(const DesktopAlerts &) = delete;
    DesktopAlerts &operator=(const DesktopAlerts &) = delete;

    // Blocks input to the whole application and returns when the person closed it. The message is
    // plain text: its first line says what did not happen, the others why.
    virtual void runModal(const QString &message) = 0;
};

// In a message box over the active window.
class SystemAlerts final : public DesktopAlerts
{
public:
    void runModal(const QString &message) override;
};
