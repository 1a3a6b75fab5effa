// SPDX-License-Identifier: MIT
#include "DayJson.h"
#include "DayOptions.h"
#include "FolderOfCalendars.h"

#include <CalCalendarStore.h>
#include <Clock.h>

#include <QCoreApplication>

#include <cstdio>

// Prints what the window would show of one day of a folder of calendars, as
// JSON, in the zone of TZ. Exit status: 0 done, 1 when the folder cannot be
// read, 2 on wrong use.

namespace
{

constexpr int exitUnreadable = 1;
constexpr int exitWrongUse = 2;

constexpr const char *usage
    = "usage: vantle-day FOLDER --date YYYY-MM-DD [--hidden UID,UID] [--all-completed] [--hide-due-later]\n"
      "                  [--sort 0|1|2]\n";

} // namespace

// What nobody catches ends the program. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto options = dayOptions(QCoreApplication::arguments().mid(1));
    if (!options) {
        printLine(stderr, u"vantle-day: " + options.error().message);
        printLine(stderr, QString::fromLatin1(usage).trimmed());
        return exitWrongUse;
    }

    SystemClock clock;
    const auto folder = openFolderOfCalendars(options.value().folder, clock);
    if (!folder) {
        printLine(stderr, u"vantle-day: " + folder.error().message);
        return exitUnreadable;
    }
    const VTDayQuestion &question = options.value().question;
    const QByteArray json = dayJson(VTEventsOfDay(*folder.value().store, question),
        VTSortedTasks(VTTasksOfDay(*folder.value().store, question), options.value().sortMethod));
    std::fwrite(json.constData(), 1, static_cast<size_t>(json.size()), stdout);
    return 0;
}
