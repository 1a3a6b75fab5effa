// SPDX-License-Identifier: MIT
#include "WholeApplication.h"

#include "MemoryBackend.h"

#include <FolderCalendarStore.h>
#include <KeyboardLayouts.h>
#include <VTMainWindow.h>

using namespace Qt::StringLiterals;

namespace
{

std::unique_ptr<CalCalendarStore> storeOf(const QString &calendars, Clock &clock, const QStringList &silentCalendars)
{
    FolderCalendarStore::Options options;
    options.root = calendars;
    options.createsDefaultCalendars = true;
    options.watchesForChanges = false;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(std::move(options), clock));
    if (!silentCalendars.isEmpty()) {
        auto service = std::make_unique<MemoryBackend>();
        for (const QString &name : silentCalendars)
            service->addCalendar(std::make_shared<CalCalendar>(
                CalCalendar::Values { .uid = name, .title = name, .color = Qt::darkCyan }));
        service->setSilentCalendars(silentCalendars);
        backends.push_back(std::move(service));
    }
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

} // namespace

WholeApplication::WholeApplication(const QString &calendars, const QString &home, Clock &clock, const QPalette &palette,
    const QStringList &silentCalendars)
    : m_hotKeyCenter(std::make_unique<RecordingHotKeys>())
    , m_defaults(home + u"/vantle.conf"_s)
    , m_appearance(palette)
    , m_store(storeOf(calendars, clock, silentCalendars))
    , m_controller({ { *m_store, m_defaults, clock, m_beeper, m_workspace, m_termination, m_alerts, m_fileChooser,
                         m_sounds, nullptr, &m_presence },
          m_appearance, WindowStateFile(home + u"/window.json"_s), m_statusBar, m_hotKeyCenter,
          KeyboardLayouts::current(), m_launcher })
{
    m_controller.awakeFromNib();
}

CalCalendarItemPtr WholeApplication::itemTitled(const QString &title)
{
    for (const CalEventPtr &event : controller().events()) {
        if (event->title() == title)
            return event;
    }
    for (const CalTaskPtr &task : controller().tasks()) {
        if (task->title() == title)
            return task;
    }
    return nullptr;
}
