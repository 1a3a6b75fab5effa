// SPDX-License-Identifier: MIT
#pragma once

#include <DesktopAlerts.h>

#include <QStringList>

// Remembers the alerts and shows none.
class RecordingAlerts final : public DesktopAlerts
{
public:
    void runModal(const QString &message) override { messages.append(message); }

    QStringList messages;
};
