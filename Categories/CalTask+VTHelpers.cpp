// SPDX-License-Identifier: MIT
#include "CalTask+VTHelpers.h"

void VTToogleCompletedStatus(CalTask &task)
{
    task.setIsCompleted(!task.isCompleted());
}
