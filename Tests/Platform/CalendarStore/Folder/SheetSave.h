// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarStore.h>

#include <memory>

class CalendarFolder;

// The store as the application has it, over the folder alone.
std::unique_ptr<CalCalendarStore> storeOver(const CalendarFolder &folder);

// The two saves of the event sheet: the occurrence with a prefixed title, then all with the real one.
// False when either was refused; the error is then the last one's.
bool saveAsSheet(CalCalendarStore &store, const CalEventPtr &event, StoreError *error);
// Each of them by itself.
bool saveFirstStep(CalCalendarStore &store, const CalEventPtr &event, StoreError *error);
bool saveSecondStep(CalCalendarStore &store, const CalEventPtr &event, StoreError *error);
