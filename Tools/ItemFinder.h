// SPDX-License-Identifier: MIT
#pragma once

#include "EditOptions.h"

#include <CalTypes.h>

struct FolderOfCalendars;

// The record that a command means: of a to-do with that UID, or of an event. Null when there is none.
CalTaskPtr taskNamed(const FolderOfCalendars &folder, const QString &uid);
// The occurrence by its original instant, wherever it was moved; without one the first of all.
CalEventPtr eventNamed(const FolderOfCalendars &folder, const QString &uid,
    const std::optional<EditOptions::Moment> &occurrence, const QDateTime &now);
