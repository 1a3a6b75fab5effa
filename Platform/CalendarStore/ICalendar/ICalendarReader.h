// SPDX-License-Identifier: MIT
#pragma once

#include "ICalendarItem.h"

#include <QByteArray>

namespace ICalendar
{

class ZoneRegistry;

// Reads one file's text. Never fails: what is not understood is left out and
// noted. Time and memory are bounded whatever the text holds.
Document readDocument(const QByteArray &text, ZoneRegistry &zones);

} // namespace ICalendar
