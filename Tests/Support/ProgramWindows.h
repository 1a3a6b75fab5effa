// SPDX-License-Identifier: MIT
#pragma once

#include "RecordingAlerts.h"
#include "RecordingWorkspace.h"
#include "ScriptedFileChooser.h"
#include "SwitchableKeyboardLayouts.h"

#include <ApplicationMetadata.h>
#include <VTAboutWindow.h>
#include <VTFeedbackWindow.h>
#include <VTPreferencesWindow.h>

#include <QTemporaryDir>

// The windows about the program itself, in each state that a person may see, for what looks at them. They are not
// shown yet; nothing of the person's is read or written.

// What a desktop makes of the preferences.
enum class PreferencesState {
    Usual, // all keys work
    KeyTaken, // by another program; and the task-bar entry goes at the next start
    AsksThePerson, // the desktop chose one key itself, waits for another, and the third is unset
    WithoutHotKeys, // nor icons of the menu bar, and every window has its entry
    CannotStartAtLogin, // since the file cannot be written
};

class PreferencesInState
{
public:
    explicit PreferencesInState(PreferencesState state);

    VTPreferencesWindow &window() { return m_window; }

private:
    void set(PreferencesState state);

    QTemporaryDir m_home;
    SwitchableKeyboardLayouts m_layouts;
    VTPreferencesWindow m_window;
};

class FeedbackInState
{
public:
    // An empty crash report is none.
    explicit FeedbackInState(const QString &crashReport = {}, const QString &message = {});

    VTFeedbackWindow &window() { return m_window; }

private:
    ApplicationMetadata m_metadata = ApplicationMetadata::ofThisProgram();
    RecordingWorkspace m_workspace;
    ScriptedFileChooser m_fileChooser;
    RecordingAlerts m_alerts;
    VTFeedbackWindow m_window;
};

// A readable one.
QString exampleOfCrashReport();

class AboutInState
{
public:
    AboutInState()
        : m_window(ApplicationMetadata::ofThisProgram(), m_workspace)
    {
    }

    VTAboutWindow &window() { return m_window; }

private:
    RecordingWorkspace m_workspace;
    VTAboutWindow m_window;
};
