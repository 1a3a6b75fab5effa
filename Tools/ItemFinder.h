// SPDX-License-Identifier: MIT
#pragma once

#include "EditOptions.h"

#include <CalTypes.h>

class CalCalendarStore;

// The record that a command means: of a to-do with that UID, or of an event. Null when the store has none.
CalTaskPtr taskNamed(const CalCalendarStore &store, const QString &uid);
// The occurrence by its original instant, wherever it was moved; without one the first of all.
CalEventPtr eventNamed(const CalCalendarStore &store, const QString &uid,
    const std::optional<EditOptions::Moment> &occurrence, const QDateTime &now);
