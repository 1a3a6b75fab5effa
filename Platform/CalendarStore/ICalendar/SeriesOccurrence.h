// SPDX-License-Identifier: MIT
#pragma once

#include "SeriesText.h"

#include <QByteArray>

namespace ICalendar
{

// Single occurrences of a series in the text of its file. Every byte that does not
// concern the occurrence stays as it is.

struct DetachedOccurrence {
    QByteArray text;
    int item = -1; // the occurrence's own, by its place in Document::items of that text
};

// Gives an occurrence a component of its own (an override, RFC 5545, section 3.8.4.4), with the values that the
// series gives it, so that they can be changed; the text as it is when it has one.
DetachedOccurrence withOverride(const SeriesText &series, const SeriesText::Place &place);

// Takes an occurrence out of the series: its overrides go, and it is excluded (EXDATE) if the series makes it.
// `stamp` is the moment of the change.
QByteArray withoutOccurrence(const SeriesText &series, const SeriesText::Place &place, UtcSeconds stamp);

// Whether an override says anything else than the series does of its occurrence; when it was changed does not count.
bool differsFromSeries(const SeriesText &series, int override);

// Notes a change in a component: DTSTAMP, LAST-MODIFIED, SEQUENCE.
QByteArray stamped(const QByteArray &text, const Item &item, UtcSeconds stamp);

} // namespace ICalendar
