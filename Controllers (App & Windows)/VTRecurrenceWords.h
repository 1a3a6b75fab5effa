// SPDX-License-Identifier: MIT
#pragma once

#include <CalRecurrenceRule.h>

#include <QDateTime>
#include <QLocale>
#include <QString>

// How an event repeats, in the words of a person.
namespace VTRecurrenceWords
{

// "every week", "every 2 months"; "by a rule of its own" for what words are too long for.
QString every(const CalRecurrenceRule &rule);
// The same with its days and its end: "every week on Friday, until 4 Dec 2026". `start` is the start of
// an occurrence, which decides what the rule leaves open.
QString description(const CalRecurrenceRule &rule, const QDateTime &start, const QLocale &locale);

} // namespace VTRecurrenceWords
