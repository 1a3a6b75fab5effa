// SPDX-License-Identifier: MIT
#include "FolderCalendarStore.h"
