// SPDX-License-Identifier: MIT
#pragma once

#include "SeriesMove.h"
#include "SeriesText.h"

#include <Result.h>

#include <QByteArray>

#include <functional>

namespace ICalendar
{

// Changes one occurrence of a series, or all of it, in the text of its file. What is
// not concerned stays as it is, to the byte; each component that is changed is noted as such once.

enum class SeriesFault {
    NoSuchOccurrence, // the series does not make the occurrence any more
    CannotMoveRule, // no rule would put all occurrences where the changed one was put
};

// What was changed of an occurrence against what was read.
struct SeriesChange {
    QByteArray recurrenceId; // which one, as SeriesText::place takes it
    EventTimes read;
    EventTimes changed;
    TimeForm timedForm; // for what was a day and gets a time
    UtcSeconds stamp = 0; // the moment of the change
    // Changes properties other than times, and alarms, of one item of a text; adds and removes no item.
    std::function<QByteArray(const QByteArray &text, const Item &item)> patch;
};

// Where a series stands, and what times are meant by.
struct SeriesContext {
    SeriesItems items;
    ZoneRegistry &zones;
    const Zone &local;
};

// The occurrence has an override with the new values; nothing else is changed.
Result<QByteArray, SeriesFault> textWithOccurrenceChanged(
    const QByteArray &text, const SeriesContext &context, const SeriesChange &change);

// The whole series has what was changed: its times move as far as the occurrence's, an override keeps the values by
// which it differed, and one that differs no longer goes.
Result<QByteArray, SeriesFault> textWithSeriesChanged(
    const QByteArray &text, const SeriesContext &context, const SeriesChange &change);

// The series without one occurrence. An empty text when it was the last one: the whole series is to go.
Result<QByteArray, SeriesFault> textWithoutOccurrence(
    const QByteArray &text, const SeriesContext &context, const QByteArray &recurrenceId, UtcSeconds stamp);

} // namespace ICalendar
