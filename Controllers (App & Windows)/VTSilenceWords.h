// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

// What the line under the date bar says of calendars whose service does not
// answer; empty when there are none. Their titles are other people's: long ones
// are cut, and of many the first two stand for all.
QString VTSilenceWords(const QStringList &titles, const QLocale &locale = QLocale());

// The same while it is not even known which calendars there are.
QString VTUnreachedWords();
