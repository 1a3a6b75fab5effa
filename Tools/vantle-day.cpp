// SPDX-License-Identifier: MIT
#include "DayJson.h"
#include "DayOptions.h"

#include <CalCalendarStore.h>
#include <CalendarStoreBackend.h>
#include <Clock.h>
#include <FolderCalendarStore.h>

#include <QCoreApplication>
#include <QDir>

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

std::unique_ptr<CalCalendarStore> openStore(const QString &folder, Clock &clock)
{
    FolderCalendarStore::Options options;
    options.root = folder;
    options.watchesForChanges = false;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(options, clock));
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

void print(std::FILE *stream, const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stream);
}

} // namespace

// What nobody catches ends the program. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto options = dayOptions(QCoreApplication::arguments().mid(1));
    if (!options) {
        print(stderr, "vantle-day: " + options.error().message.toLocal8Bit() + '\n' + usage);
        return exitWrongUse;
    }
    const QFileInfo folder(options.value().folder);
    if (!folder.isDir() || !folder.isReadable() || !folder.isExecutable()) {
        print(stderr, "vantle-day: the folder cannot be read: " + folder.filePath().toLocal8Bit() + '\n');
        return exitUnreadable;
    }

    SystemClock clock;
    const auto store = openStore(QDir(folder.filePath()).absolutePath(), clock);
    const VTDayQuestion &question = options.value().question;
    print(stdout,
        dayJson(VTEventsOfDay(*store, question),
            VTSortedTasks(VTTasksOfDay(*store, question), options.value().sortMethod)));
    return 0;
}
