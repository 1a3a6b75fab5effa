// SPDX-License-Identifier: MIT
#pragma once

#include <CalTask.h>

// Flips the completion of a to-do. Saving is the caller's.
void VTToogleCompletedStatus(CalTask &task);
