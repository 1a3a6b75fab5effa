// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// Makes another zone the local one while it lives. `zone` is a name of the system's database.
class ScopedTimeZone final
{
public:
    explicit ScopedTimeZone(const QByteArray &zone);
    ~ScopedTimeZone();
    ScopedTimeZone(const ScopedTimeZone &) = delete;
    ScopedTimeZone &operator=(const ScopedTimeZone &) = delete;

private:
    bool m_hadZone;
    QByteArray m_previous;
};
