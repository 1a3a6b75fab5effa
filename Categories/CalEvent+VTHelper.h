// SPDX-License-Identifier: MIT
#pragma once

#include <CalEvent.h>

// A copy whose alarms are copies too.
CalEventPtr VTDeepCopy(const CalEvent &event);

// Whether a location is there to show; one blank is a location.
bool VTLocationIsAvalible(const CalEvent &event);

// Takes over what a person can edit of an event, and the source's alarm records themselves.
void VTUpdatePropertiesFromEvent(CalEvent &event, const CalEvent &source);
