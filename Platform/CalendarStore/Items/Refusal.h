// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarItem.h>
#include <StoreError.h>

namespace Items
{

// Why something was not done to an item, in the person's words. The item is named as it is stored: the title
// that the record has by now may be one that was not saved.
StoreError refusal(const CalCalendarItem &record, StoreError::Code code, const QString &reason);

// Reasons that every back end has.
StoreError changedElsewhere(const CalCalendarItem &record);
StoreError overwrittenElsewhere(const CalCalendarItem &record);
StoreError goneElsewhere(const CalCalendarItem &record);
StoreError calendarGone(const CalCalendarItem &record);
StoreError calendarUnchangeable(const CalCalendarItem &record);
StoreError withoutTimes(const CalCalendarItem &record);
StoreError identifierTaken(const CalCalendarItem &record);
StoreError damaged(const CalCalendarItem &record);
StoreError thereAgain(const CalCalendarItem &record);

} // namespace Items
