// SPDX-License-Identifier: MIT
#include "CalCalendarStore.h"
