// SPDX-License-Identifier: MIT
#pragma once

#include <AlertSounds.h>

// The same few sounds on every machine.
class FixedAlertSounds final : public AlertSounds
{
public:
    QStringList names() const override
    {
        return { QStringLiteral("bell"), QStringLiteral("complete"), QStringLiteral("message") };
    }
};
