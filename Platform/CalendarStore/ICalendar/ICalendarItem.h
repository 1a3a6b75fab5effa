// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"
#include "Seldom.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace ICalendar
{

// What Vantle knows of one VALARM. Everything else stays in the file.
struct Alarm {
    QString action; // upper case; empty when missing
    std::optional<QString> sound; // ATTACH of an audio alarm
    std::optional<QString> emailAddress; // first ATTENDEE, without its scheme
    std::optional<QString> url; // ATTACH of a procedure alarm
    qint64 relativeTrigger = 0; // seconds
    bool relatedToEnd = false;
    std::optional<UtcSeconds> absoluteTrigger;
};

struct Attendee {
    std::optional<QString> commonName;
    QString address; // URI as written
    std::optional<QString> status; // PARTSTAT, upper case
};

// An RDATE: an occurrence that the rule does not make. Without an end it lasts as long as the others.
struct AddedDate {
    CivilTime start;
    std::optional<CivilTime> end; // for VALUE=PERIOD
};

// What Vantle knows of one VEVENT or VTODO: compact values, nothing of the
// parsed text. Damaged values are mended as well as can be, or absent.
//
// Thousands are kept in memory, so what most of them lack takes next to no room
// in them, and members stand in an order that wastes none.
struct Item {
    enum class Kind : quint8 { Event, Task };

    // When an event takes place again, and which of several times it stands for.
    struct Repetition {
        std::optional<CivilTime> recurrenceId;
        QList<QByteArray> rules; // RRULE values as written
        QList<CivilTime> excluded; // EXDATE
        QList<AddedDate> added; // RDATE
    };

    struct ToDo {
        std::optional<CivilTime> due; // DUE, or DTSTART with DURATION
        std::optional<UtcSeconds> completed;
        bool isCompleted = false; // COMPLETED is there, or STATUS:COMPLETED
        int priority = 0;
    };

    Kind kind = Kind::Event;
    bool isCancelled = false;
    // Whether the length was given as such (DURATION), and not by an end.
    bool hasDuration = false;
    int component = 0; // its place among all components of the file, for the patcher
    int sequence = 0;
    QString uid; // empty when missing
    // An empty text counts as none.
    QString summary;
    QString location;
    Seldom<QString> description;
    Seldom<QString> url;

    // Events. The start is missing when it is missing or not understood in the file.
    std::optional<CivilTime> start;
    // Half-open, never before the start. An all-day event lasts one day at least. A DTEND
    // counts by instant, a DURATION in days by the calendar (RFC 5545, section 3.3.6).
    std::optional<CivilTime> end;
    // Nominal length in days (of a date, or the day part of DURATION) and exact length in
    // seconds: what an occurrence of a series adds to its start.
    qint64 durationDays = 0;
    qint64 durationSeconds = 0;
    Seldom<Repetition> repetition;
    Seldom<QList<Attendee>> attendees;

    Seldom<ToDo> toDo;

    Seldom<QList<Alarm>> alarms;

    bool repeats() const { return !repetition->rules.isEmpty() || !repetition->added.isEmpty(); }
};

// Something in a file that could not be taken as it stands.
struct Problem {
    int line = 0; // 1-based, 0 when it concerns the whole file
    QString text; // for the log
};

// What a file says of the calendar as a whole.
struct Heading {
    QString name; // X-WR-CALNAME, empty when missing
    QString color; // X-APPLE-CALENDAR-COLOR or COLOR (RFC 7986), empty when missing
};

// Everything of interest in one file.
struct Document {
    QList<Item> items;
    Seldom<Heading> heading;
    Seldom<QList<Problem>> problems; // bounded in number
    // The text ends before its components do: perhaps somebody is still writing it.
    bool isCut = false;
    // The text was in another encoding than UTF-8 (UTF-16) and had to be converted as a whole: the places
    // of components mean nothing in the text as it stands, so nothing can be changed in it.
    bool isConverted = false;
    // A component lacks its end: where it ends, and what belongs to it, is a guess.
    bool isUnclosed = false;

    // Whether a change of one thing in the text is sure to be a change of that thing alone.
    bool canBeChanged() const { return !isCut && !isConverted && !isUnclosed; }
};

} // namespace ICalendar
