// SPDX-License-Identifier: MIT
#pragma once

#include "EditOptions.h"

#include <Result.h>

struct FolderOfCalendars;

// Makes the one change that is asked for, or says, as the window would, why not.
Result<void> edit(const FolderOfCalendars &folder, const EditOptions &options, const QDateTime &now);
