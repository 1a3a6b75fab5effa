// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArray>
#include <QString>

namespace ICalendar
{

// The zone that a compiled time zone file (RFC 8536) describes. Null for anything else.
ZonePtr readZoneFile(const QString &path);

// The yearly rule that a compiled time zone file goes on with after its last change, in the form of
// the variable TZ. Empty when there is none, or no such file.
QByteArray yearlyRuleOfZoneFile(const QString &path);

// The zone that a text as in the variable TZ describes ("CET-1CEST,M3.5.0,M10.5.0/3"; POSIX, chapter 8.3).
// Null for anything else.
ZonePtr zoneFromPosixText(const QByteArray &text);

// The folder of the system's compiled time zones.
QString zoneFolder();

} // namespace ICalendar
