// SPDX-License-Identifier: MIT
#pragma once

#include <CalTypes.h>
#include <StoreError.h>

#include <Result.h>

#include <QByteArray>
#include <QDateTime>

namespace ICalendar
{
class ZoneRegistry;
}

namespace Items
{

struct StoredText;

// A text after the changes that were made to a record of one occurrence of
// a series since it was read: to that occurrence alone, or to all of the series.
Result<QByteArray, StoreError> patchedSeriesText(const StoredText &stored, const CalEvent &event, CalSpan span,
    const QDateTime &now, ICalendar::ZoneRegistry &zones);

// The text without the occurrence that the record is; empty when nothing of the series would be left.
Result<QByteArray, StoreError> seriesTextWithoutOccurrence(
    const StoredText &stored, const CalEvent &event, const QDateTime &now, ICalendar::ZoneRegistry &zones);

} // namespace Items
