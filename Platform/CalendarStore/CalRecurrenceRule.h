// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// How an event repeats: the values of its RRULE (RFC 5545, section 3.3.10), one a line, as stored.
struct CalRecurrenceRule {
    QByteArray text;

    bool operator==(const CalRecurrenceRule &) const = default;
};
