// SPDX-License-Identifier: MIT
#include "VTAppController.h"
