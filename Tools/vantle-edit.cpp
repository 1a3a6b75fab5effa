// SPDX-License-Identifier: MIT
#include "EditOptions.h"
#include "FolderOfCalendars.h"
#include "ItemEdit.h"

#include <CalCalendarStore.h>
#include <Clock.h>

#include <QCoreApplication>

// Makes one change to one item of a folder of calendars, as the window would, in
// the zone of TZ. Exit status: 0 done, 1 refused (the message that a person would
// read is on standard error), 2 on wrong use.

namespace
{

constexpr int exitRefused = 1;
constexpr int exitWrongUse = 2;

constexpr const char *usage
    = "usage: vantle-edit FOLDER UID [--occurrence YYYY-MM-DDThh:mm] [--span this|all]\n"
      "                   set FIELD VALUE | tick | untick | delete\n"
      "FIELD: title location notes url start end allday due priority calendar; an empty VALUE clears.\n"
      "A new start moves the event; the end of an all-day event is its last day.\n";

} // namespace

// What nobody catches ends the program. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto options = editOptions(QCoreApplication::arguments().mid(1));
    if (!options) {
        printLine(stderr, u"vantle-edit: " + options.error().message);
        printLine(stderr, QString::fromLatin1(usage).trimmed());
        return exitWrongUse;
    }
    SystemClock clock;
    const auto folder = openFolderOfCalendars(options.value().folder, clock);
    if (!folder) {
        printLine(stderr, u"vantle-edit: " + folder.error().message);
        return exitRefused;
    }
    if (const auto edited = edit(folder.value(), options.value(), clock.now()); !edited) {
        printLine(stderr, edited.error().message);
        return exitRefused;
    }
    return 0;
}
