// SPDX-License-Identifier: MIT
#include "ScopedTimeZone.h"

#include <QtGlobal>

#include <ctime>

ScopedTimeZone::ScopedTimeZone(const QByteArray &zone)
    : m_hadZone(qEnvironmentVariableIsSet("TZ"))
    , m_previous(qgetenv("TZ"))
{
    qputenv("TZ", zone);
    ::tzset();
}

ScopedTimeZone::~ScopedTimeZone()
{
    if (m_hadZone)
        qputenv("TZ", m_previous);
    else
        qunsetenv("TZ");
    ::tzset();
}
