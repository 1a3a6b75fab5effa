// SPDX-License-Identifier: MIT
#pragma once

#include "FixedAlertSounds.h"
#include "RecordingAlerts.h"
#include "RecordingBeeper.h"
#include "RecordingHotKeys.h"
#include "RecordingPresence.h"
#include "RecordingStatusBar.h"
#include "RecordingWorkspace.h"
#include "ScriptedFileChooser.h"

#include <CalCalendarStore.h>
#include <DesktopAppearance.h>
#include <LauncherRequests.h>
#include <PTHotKeyCenter.h>
#include <Termination.h>
#include <UserDefaults.h>
#include <VTAppController.h>

#include <QPalette>

// The application as main() puts it together, over a folder of calendars and
// with a clock of one's own. Nothing of the person's is read or written, and the
// desktop hears nothing.
class WholeApplication
{
public:
    // The calendars are read whole. `home` takes the settings and the window's state. Beside them are calendars of
    // these names whose service does not answer.
    WholeApplication(const QString &calendars, const QString &home, Clock &clock, const QPalette &palette,
        const QStringList &silentCalendars = {});

    VTMainWindow &window() const { return *m_controller.mainWindow(); }
    VTMainWindowController &controller() { return *m_controller.mainWindowController(); }
    CalCalendarStore &store() { return *m_store; }

    // The event or to-do of the shown day with that title, or null.
    CalCalendarItemPtr itemTitled(const QString &title);

private:
    RecordingBeeper m_beeper;
    RecordingWorkspace m_workspace;
    Termination m_termination;
    RecordingAlerts m_alerts;
    ScriptedFileChooser m_fileChooser;
    FixedAlertSounds m_sounds;
    RecordingPresence m_presence;
    RecordingStatusBar m_statusBar;
    PTHotKeyCenter m_hotKeyCenter;
    LauncherRequests m_launcher;
    UserDefaults m_defaults;
    DesktopAppearance m_appearance;
    std::unique_ptr<CalCalendarStore> m_store;
    VTAppController m_controller;
};
