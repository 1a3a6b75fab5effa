// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArray>

namespace ICalendar
{

// The zone that a VTIMEZONE describes (RFC 5545, section 3.6.5), by its text from
// BEGIN to END. Null when no part of it can be used.
ZonePtr readEmbeddedZone(const QByteArray &vtimezone);

} // namespace ICalendar
