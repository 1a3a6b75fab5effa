// SPDX-License-Identifier: MIT
#pragma once

#include <UserDefaults.h>

// Settings that remember in which order they are set.
class RecordingDefaults final : public UserDefaults
{
public:
    using UserDefaults::UserDefaults;

    QStringList writtenKeys;

protected:
    void set(const QString &key, const QVariant &value) override
    {
        writtenKeys.append(key);
        UserDefaults::set(key, value);
    }
};
