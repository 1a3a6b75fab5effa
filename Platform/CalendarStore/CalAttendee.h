// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

// Answers of an attendee (RFC 5545, PARTSTAT). Any other text is kept as it is.
extern const QString CalAttendeeStatusNeedsAction;
extern const QString CalAttendeeStatusAccepted;
extern const QString CalAttendeeStatusDeclined;
extern const QString CalAttendeeStatusTentative;

// One person, room or resource that is asked to an event (RFC 5545, ATTENDEE).
struct CalAttendee {
    std::optional<QString> commonName;
    QUrl address; // normally a mailto URL
    std::optional<QString> status;

    bool operator==(const CalAttendee &) const = default;
};
