// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QString>

#include <cstdio>
#include <memory>

class CalCalendarStore;
class CalendarStoreBackend;
class Clock;

struct FolderOfCalendars {
    std::unique_ptr<CalCalendarStore> store;
    const CalendarStoreBackend *backend = nullptr; // the store's only one
};

// A folder that is read at once and not watched. The error says that it cannot be read.
Result<FolderOfCalendars> openFolderOfCalendars(const QString &folder, Clock &clock);

// In the encoding of the system.
void printLine(std::FILE *stream, const QString &text);
