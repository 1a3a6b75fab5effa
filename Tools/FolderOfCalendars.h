// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QString>

#include <cstdio>
#include <memory>

class CalCalendarStore;
class Clock;

// A store over a folder that is read at once and not watched. The error says that the folder cannot be read.
Result<std::unique_ptr<CalCalendarStore>> openFolderOfCalendars(const QString &folder, Clock &clock);

// In the encoding of the system.
void printLine(std::FILE *stream, const QString &text);
