// SPDX-License-Identifier: MIT
#pragma once

#include "SeriesText.h"

#include <QByteArray>

namespace ICalendar
{

// Carries what was changed in one item of a series, beside its times, to the others: properties and alarms.
//
// `after` is the text of `before` with nothing changed but item `changed`. The master takes over what was changed;
// an override does where it said the same as the master before, and keeps what it says otherwise.
QByteArray seriesWithValuesCarriedOver(const SeriesText &before, const SeriesText &after, int changed);

// The lines of one item from BEGIN to END, as the text has them.
QByteArray rawTextOf(const SeriesText &series, int index);

} // namespace ICalendar
