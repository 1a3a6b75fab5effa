// SPDX-License-Identifier: MIT
#include "FolderOfCalendars.h"

#include <CalCalendarStore.h>
#include <CalendarStoreBackend.h>
#include <FolderCalendarStore.h>

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

Result<FolderOfCalendars> openFolderOfCalendars(const QString &folder, Clock &clock)
{
    const QFileInfo place(folder);
    if (!place.isDir() || !place.isReadable() || !place.isExecutable())
        return Error { u"the folder cannot be read: "_s + folder };

    FolderCalendarStore::Options options;
    options.root = QDir(folder).absolutePath();
    options.watchesForChanges = false;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(options, clock));
    const CalendarStoreBackend *const backend = backends.front().get();
    return FolderOfCalendars { std::make_unique<CalCalendarStore>(std::move(backends)), backend };
}

void printLine(std::FILE *stream, const QString &text)
{
    const QByteArray line = text.toLocal8Bit() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stream);
}
