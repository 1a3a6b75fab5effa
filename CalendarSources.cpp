// SPDX-License-Identifier: MIT
#include "CalendarSources.h"

#include <CalendarStoreBackend.h>
#include <FolderCalendarStore.h>

#include <QDBusConnection>
#include <QEvent>
#include <QStandardPaths>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

// What is not read by then comes after the first picture.
constexpr std::chrono::milliseconds readingBudget { 40 };

std::unique_ptr<FolderCalendarStore> folderOfCalendars(Clock &clock)
{
    FolderCalendarStore::Options options;
    options.root = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/calendars"_s;
    options.readingBudget = readingBudget;
    return std::make_unique<FolderCalendarStore>(std::move(options), clock);
}

} // namespace

CalendarSources::CalendarSources(Clock &clock, QObject *parent)
    : QObject(parent)
    , m_loader(clock)
{
    auto folder = folderOfCalendars(clock);
    m_folder = folder.get();
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::move(folder));
    m_store = std::make_unique<CalCalendarStore>(std::move(backends));
    connect(&m_loader, &ServiceLoader::found, this, &CalendarSources::takeServiceIn);
    connect(&m_loader, &ServiceLoader::missing, this, &CalendarSources::doWithoutService);
}

CalendarSources::~CalendarSources() = default;

void CalendarSources::serve(QWidget &window)
{
    m_refresher = std::make_unique<VTStoreRefresher>(*m_store, window, m_sleep);
    if (window.isVisible())
        window.installEventFilter(this);
    else
        lookForService();
}

bool CalendarSources::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        // The frame is painted and handed to the screen before the event loop turns again.
        QTimer::singleShot(0, this, &CalendarSources::lookForService);
    }
    return QObject::eventFilter(watched, event);
}

void CalendarSources::lookForService()
{
    m_loader.start();
    m_sleep.watch(QDBusConnection::systemBus());
}

void CalendarSources::takeServiceIn()
{
    if (auto service = m_loader.load())
        m_store->addBackend(std::move(service));
    else
        doWithoutService();
}

void CalendarSources::doWithoutService()
{
    m_folder->createDefaultCalendars();
}
