// SPDX-License-Identifier: MIT
#pragma once

#include <CalTypes.h>

#include <QByteArray>

// A day's lists as JSON, in their order. Instants are seconds since 1970; an
// all-day event ends with the first second of the day after its last.
QByteArray dayJson(const CalEventList &events, const CalTaskList &tasks);
