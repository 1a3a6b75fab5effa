// SPDX-License-Identifier: MIT
#pragma once

#include "CalTypes.h"
#include "MergedCalendars.h"
#include "StoreError.h"

#include <Result.h>

// Saves an item into a calendar of another back end than the one that holds it: it is
// whole in the new one before it leaves the old one. What fails on the way is taken back;
// should that fail, too, both hold it, and the error says so. At any moment there is at
// least one whole.
//
// `source` and `target` are the calendars that hold it and that it is to go into. After a
// success the record counts as read from the target; after the first step of a save in
// two it stays with the source, and after a failure what was read is what it was.
namespace ItemTransfer
{

// Where the item is afterwards.
enum class Place { Source, Target };

Result<Place, StoreError> save(
    CalEvent &event, CalSpan span, const MergedCalendars::Entry &source, const MergedCalendars::Entry &target);
Result<Place, StoreError> save(
    CalTask &task, const MergedCalendars::Entry &source, const MergedCalendars::Entry &target);

// The refusal of a move that could not be taken back either: the item is whole in its old calendar, too.
StoreError isInBoth(const StoreError &refusal, const QString &oldCalendar);

} // namespace ItemTransfer
