// SPDX-License-Identifier: MIT
#pragma once

#include "VTMainWindowController.h"

#include <WindowState.h>

#include <QObject>

#include <memory>

class DesktopAppearance;
class VTMainWindow;

// The shell: registers the factory settings, makes the window and its
// controller, dresses the application as the desktop wishes, and sees to it that
// everything is written at the end.
class VTAppController final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(VTMainWindowController *mainWindowController READ mainWindowController CONSTANT)

public:
    struct Services {
        VTMainWindowServices window;
        DesktopAppearance &appearance;
        WindowStateFile windowState;
    };

    explicit VTAppController(const Services &services, QObject *parent = nullptr);
    ~VTAppController() override;

    // Puts the factory values of all settings under the person's own. A missing or damaged resource registers nothing.
    static void initialize(UserDefaults &defaults, const QString &resource = QStringLiteral(":/defaults.plist"));

    VTMainWindowController *mainWindowController() { return &m_mainWindowController; }
    VTMainWindow *mainWindow() const { return m_window.get(); }

    // Start-up, once: fills the window and shows it.
    void awakeFromNib();

private:
    // Done before any member is made that could read a setting.
    static UserDefaults &initialized(UserDefaults &defaults);
    void dressApplication();
    void applicationWillTerminate();

    UserDefaults &m_defaults;
    Services m_services;
    VTMainWindowController m_mainWindowController;
    std::unique_ptr<VTMainWindow> m_window;
};
