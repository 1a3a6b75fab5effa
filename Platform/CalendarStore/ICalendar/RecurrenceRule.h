// SPDX-License-Identifier: MIT
#pragma once

#include "Values.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace ICalendar
{

// A recurrence rule (RFC 5545, section 3.3.10) taken apart. Values out of their
// range are left out, and so are parts that are not known.
struct RecurrenceRule {
    enum class Frequency { Secondly, Minutely, Hourly, Daily, Weekly, Monthly, Yearly };

    struct Weekday {
        int position = 0; // 0 every one, 1 the first, -1 the last
        int day = 0; // 0 Sunday to 6 Saturday

        bool operator==(const Weekday &) const = default;
    };

    Frequency frequency = Frequency::Daily;
    qint64 interval = 1; // 0 is as written and makes no rule that could be followed
    std::optional<qint64> count;
    std::optional<DateTimeValue> until;
    int weekStart = 1;
    // Each ascending and without repetition, but for the weekdays.
    std::vector<int> seconds;
    std::vector<int> minutes;
    std::vector<int> hours;
    std::vector<Weekday> weekdays;
    std::vector<int> monthDays;
    std::vector<int> yearDays;
    std::vector<int> weekNumbers;
    std::vector<int> months;
    std::vector<int> positions; // BYSETPOS

    // Nothing for a rule without a known frequency, in another calendar than the Gregorian, or of absurd length.
    static std::optional<RecurrenceRule> parsed(const QByteArray &text);
};

} // namespace ICalendar
