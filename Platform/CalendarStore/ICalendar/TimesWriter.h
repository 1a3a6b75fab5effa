// SPDX-License-Identifier: MIT
#pragma once

#include "LineEdits.h"
#include "SeriesText.h"

#include <optional>

namespace ICalendar
{

// Writes start and end of one item, in the lines that it has for them.
class TimesWriter final
{
public:
    // All three must outlive the writer. `item` is one of the series.
    TimesWriter(const SeriesText &series, int item, LineEdits &edits);

    // The form in which the start is written; `fallback` where there is none.
    TimeForm startForm(const TimeForm &fallback) const;

    // `length` is nothing for a length that stays.
    void write(const TimeForm &form, CivilSeconds start, std::optional<qint64> length);

private:
    void writeStart(const TimeForm &form, CivilSeconds start);
    QByteArray unfolded(int line) const;
    std::optional<CivilTime> endAsWritten() const;
    void moveEnd();
    void writeEnd(const TimeForm &form, qint64 length, bool isOtherKind);

    const SeriesText &m_series;
    const Item &m_item;
    LineEdits &m_edits;
    int m_startLine;
    int m_endLine;
    int m_durationLine;
    CivilTime m_newStart;
};

// A line with another value.
QByteArray lineWithValue(const PropertyLine &property, const QByteArray &line, const QByteArray &value);
// Of an event as it was read, in seconds.
qint64 lengthOf(const Item &item);

} // namespace ICalendar
