// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarStore.h>
#include <ServiceLoader.h>
#include <SleepWatcher.h>
#include <VTStoreRefresher.h>

#include <QObject>

#include <memory>

class Clock;
class FolderCalendarStore;
class QWidget;

// The one place that chooses back ends: the person's folder of calendars from the
// start, and the desktop's calendar service as soon as the window has been seen.
//
// "Home" and "Work" are made in the folder only where it holds nothing and there
// is no service.
class CalendarSources final : public QObject
{
    Q_OBJECT

public:
    explicit CalendarSources(Clock &clock, QObject *parent = nullptr);
    ~CalendarSources() override;

    CalCalendarStore &store() { return *m_store; }

    // Looks for the service after the window's first frame, or at once when it is not shown. From then on the
    // servers are asked for changes whenever the window is shown, and when the machine wakes up. The window
    // may go before this.
    void serve(QWidget &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void lookForService();
    void takeServiceIn();
    void doWithoutService();

    FolderCalendarStore *m_folder; // the store owns it
    std::unique_ptr<CalCalendarStore> m_store;
    ServiceLoader m_loader;
    SleepWatcher m_sleep;
    std::unique_ptr<VTStoreRefresher> m_refresher;
};
