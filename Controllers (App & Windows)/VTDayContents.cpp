// SPDX-License-Identifier: MIT
#include "VTDayContents.h"
