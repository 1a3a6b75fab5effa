// SPDX-License-Identifier: MIT
#pragma once

#include "EditOptions.h"

#include <Result.h>

class CalCalendarStore;

// Makes the one change that is asked for, or says, as the window would, why not.
Result<void> edit(CalCalendarStore &store, const EditOptions &options, const QDateTime &now);
