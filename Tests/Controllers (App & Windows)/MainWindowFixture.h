// SPDX-License-Identifier: MIT
#pragma once

#include <FixedAlertSounds.h>
#include <ManualClock.h>
#include <MemoryStore.h>
#include <RecordingAlerts.h>
#include <RecordingBeeper.h>
#include <RecordingCalendarApplication.h>
#include <RecordingDefaults.h>
#include <RecordingWorkspace.h>
#include <ScriptedFileChooser.h>
#include <Termination.h>
#include <TestRecords.h>
#include <VTAppController.h>
#include <VTMainWindow.h>
#include <VTMainWindowController.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

// A main window's controller with everything around it under the test's hand.
// It is Friday, 20 November 2026, 10:00 in local time.
struct MainWindowFixture {
    QTemporaryDir folder;
    MemoryStore calendars;
    ManualClock clock { localInstant("2026-11-20T10:00") };
    RecordingDefaults defaults { folder.filePath(QStringLiteral("vantle.conf")) };
    RecordingBeeper beeper;
    RecordingWorkspace workspace;
    RecordingCalendarApplication calendarApplication;
    Termination termination;
    RecordingAlerts alerts;
    ScriptedFileChooser fileChooser;
    FixedAlertSounds sounds;
    std::unique_ptr<VTMainWindow> window;
    std::unique_ptr<VTMainWindowController> controller;

    MainWindowFixture() { VTAppController::initialize(defaults); }
    ~MainWindowFixture() { window.reset(); }

    MemoryBackend &backend() const { return *calendars.backend; }

    VTMainWindowServices services()
    {
        return { calendars.store(), defaults, clock, beeper, workspace, termination, alerts, fileChooser, sounds,
            &calendarApplication };
    }

    // Like a folder that is still being read. The store learns of it from a change.
    void startLoading() const
    {
        backend().startLoading();
        QSignalSpy changes(&backend(), &CalendarStoreBackend::changed);
        backend().postCalendarsChange();
        changes.wait();
    }

    // The state alone, started up.
    VTMainWindowController &wake()
    {
        controller = std::make_unique<VTMainWindowController>(services());
        controller->awakeFromNib();
        return *controller;
    }

    // The same with its window, shown.
    VTMainWindowController &wakeWithWindow()
    {
        window = std::make_unique<VTMainWindow>();
        controller = std::make_unique<VTMainWindowController>(services());
        controller->setWindow(window.get());
        controller->awakeFromNib();
        window->show();
        window->activateWindow();
        return *controller;
    }

    void addEvent(const char *uid, const char *start = "2026-11-20T09:00", const char *calendar = "Home") const
    {
        const QDateTime begin = localInstant(start);
        backend().addEvent(
            QLatin1String(calendar), makeEvent(QLatin1String(uid), QLatin1String(uid), begin, begin.addSecs(3600)));
    }
    void addTask(const char *uid, const char *calendar = "Home") const
    {
        backend().addTask(QLatin1String(calendar), makeTask(QLatin1String(uid), QLatin1String(uid)));
    }
};

template <typename Item> QStringList uidsOf(const QList<std::shared_ptr<Item>> &items)
{
    QStringList uids;
    for (const auto &item : items)
        uids.append(item->uid());
    return uids;
}
