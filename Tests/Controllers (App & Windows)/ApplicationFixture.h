// SPDX-License-Identifier: MIT
#pragma once

#include "MainWindowFixture.h"

#include <DesktopAppearance.h>
#include <KeyboardLayouts.h>
#include <LauncherRequests.h>
#include <PTHotKeyCenter.h>
#include <RecordingHotKeys.h>
#include <RecordingPresence.h>
#include <RecordingStatusBar.h>

#include <QPalette>

#include <memory>

// What the whole application works with, all of it under the test's hand.
struct ApplicationFixture : MainWindowFixture {
    DesktopAppearance appearance;
    RecordingPresence presence;
    RecordingStatusBar statusBar;
    RecordingHotKeys *hotKeys = new RecordingHotKeys; // owned by the center
    PTHotKeyCenter center { std::unique_ptr<HotKeyBackend>(hotKeys) };
    LauncherRequests launcher;

    explicit ApplicationFixture(const QPalette &palette = {})
        : appearance(palette)
    {
    }

    VTAppController::Services appServices()
    {
        VTMainWindowServices windowServices = services();
        windowServices.presence = &presence;
        return { windowServices, appearance, WindowStateFile(folder.filePath(QStringLiteral("window.json"))), statusBar,
            center, KeyboardLayouts::current(), launcher };
    }

    // The one that the desktop was asked for under this identifier; null for none.
    const RecordingHotKeys::Grab *grab(const QString &identifier) const
    {
        for (const auto &[id, grab] : hotKeys->grabs()) {
            if (grab.label.identifier == identifier)
                return &grab;
        }
        return nullptr;
    }
    void press(const QString &identifier) const
    {
        for (const auto &[id, grab] : hotKeys->grabs()) {
            if (grab.label.identifier == identifier) {
                hotKeys->press(id);
                return;
            }
        }
    }
};
