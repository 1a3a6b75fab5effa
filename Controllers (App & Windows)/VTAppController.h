// SPDX-License-Identifier: MIT
#pragma once

#include "VTHelpServices.h"
#include "VTMainWindowController.h"

#include <KeyValueBinding.h>
#include <KeyValueObject.h>
#include <SRRecorderControl.h>
#include <StatusItem.h>
#include <WindowState.h>

#include <QObject>

#include <memory>
#include <vector>

class DesktopAppearance;
class KeyboardLayouts;
class LauncherRequests;
class PTHotKeyCenter;
class Presence;
class StatusBar;
class VTMainWindow;
class VTPreferencesWindow;
class VTStatusbarMenu;
struct ActivationToken;

// Where the application shows itself.
constexpr qint32 VTInTaskBarAndMenuBar = 0;
constexpr qint32 VTInTaskBarOnly = 1;
constexpr qint32 VTInMenuBarOnly = 2;

// The shell: registers the factory settings, makes the windows and their
// controllers, decides where the application shows itself, connects the three
// global hot keys to what they do, and sees to it that everything is written at
// the end.
//
// Closing the window ends the program only where nothing would bring the window
// back: no icon is shown and no hot key is active.
class VTAppController final : public QObject, public KeyValueObject, public SRRecorderDelegate
{
    Q_OBJECT
    Q_PROPERTY(VTMainWindowController *mainWindowController READ mainWindowController CONSTANT)
    Q_PROPERTY(QMenu *statusbarMenu READ statusbarMenu CONSTANT)
    Q_PROPERTY(QWidget *preferencesWindow READ preferencesWindowAsWidget)
    Q_PROPERTY(SRRecorderControl *showAppShortcutRecorder READ showAppShortcutRecorder)
    Q_PROPERTY(SRRecorderControl *addEventShortcutRecorder READ addEventShortcutRecorder)
    Q_PROPERTY(SRRecorderControl *addTaskShortcutRecorder READ addTaskShortcutRecorder)
    Q_PROPERTY(bool dockIconIsVisibleNow READ dockIconIsVisibleNow)
    Q_PROPERTY(StatusItem *menuBarIcon READ menuBarIcon)
    Q_PROPERTY(bool hidesWhenInactive READ hidesWhenInactive WRITE setHidesWhenInactive)
    Q_PROPERTY(bool restartRequired READ restartRequired)
    Q_PROPERTY(qint32 iconStatus READ iconStatus WRITE setIconStatus)
    Q_PROPERTY(bool mainWindowIsKeyWindow READ mainWindowIsKeyWindow)

public:
    struct Services {
        VTMainWindowServices window; // with its presence
        DesktopAppearance &appearance;
        WindowStateFile windowState;
        StatusBar &statusBar;
        PTHotKeyCenter &hotKeyCenter;
        KeyboardLayouts &keyboardLayouts;
        LauncherRequests &launcher;
        VTHelpServices help {};
    };

    explicit VTAppController(const Services &services, QObject *parent = nullptr);
    ~VTAppController() override;

    // Puts the factory values of all settings under the person's own. A missing or damaged resource registers nothing.
    static void initialize(UserDefaults &defaults, const QString &resource = QStringLiteral(":/defaults.plist"));

    // Start-up, once: fills the window and shows it.
    void awakeFromNib();
    // The window becomes the main window, and a crash of the run before is reported. Called by awakeFromNib().
    void applicationDidFinishLaunching();
    // Gives back all hot keys and writes the shell's eight settings; the window's own five come after them.
    void applicationWillTerminate();
    // Shows the window whatever is visible; nothing else is left to be done.
    bool applicationShouldHandleReopen_hasVisibleWindows(QObject *application, bool hasVisibleWindows);
    // There are no files to open.
    bool application_openFile(QObject *application, const QString &filename) const;

    VTMainWindowController *mainWindowController() { return &m_mainWindowController; }
    VTMainWindow *mainWindow() const { return m_window.get(); }
    QMenu *statusbarMenu() const;

    // --- Where the application shows itself ---

    qint32 iconStatus() const { return m_iconStatus; }
    // Works at once, but for the task-bar entry: once shown it stays for the run.
    Q_INVOKABLE void setIconStatus(qint32 iconStatus);
    bool dockIconIsVisibleNow() const { return m_dockIconIsVisibleNow; }
    bool restartRequired() const { return m_restartRequired; }
    // Null while the icon status does not ask for one.
    StatusItem *menuBarIcon() const { return m_menuBarIcon.get(); }
    bool hidesWhenInactive() const { return m_hidesWhenInactive; }
    Q_INVOKABLE void setHidesWhenInactive(bool hidesWhenInactive);
    bool mainWindowIsKeyWindow() const;

    Q_INVOKABLE void showStatusBarMenu(QObject *sender = nullptr);
    Q_INVOKABLE void showWindowAndMakeActiveApp(QObject *sender = nullptr);
    Q_INVOKABLE void toggleAppHiddenStatus(QObject *sender = nullptr);
    void keyWindowDidChange();

    // --- Windows (VTAppController+Windows.cpp) ---

    VTPreferencesWindow *preferencesWindow() const { return m_preferencesWindow.get(); }
    Q_INVOKABLE void showPreferences(QObject *sender = nullptr);

    // --- Hot keys ---

    SRRecorderControl *showAppShortcutRecorder() const;
    SRRecorderControl *addEventShortcutRecorder() const;
    SRRecorderControl *addTaskShortcutRecorder() const;
    void shortcutRecorder_keyComboDidChange(SRRecorderControl *recorder, const SRKeyCombo &keyCombo) override;

    QVariant valueForKey(const QString &key) const override;

    // --- About the program (VTAppController+Help.cpp) ---

    Q_INVOKABLE void showAbout(QObject *sender = nullptr);
    Q_INVOKABLE void showFeedbackWindow(QObject *sender = nullptr);
    // In the desktop's software centre; nothing where there is none.
    Q_INVOKABLE void checkForUpdates(QObject *sender = nullptr) const;
    // Brings the desktop's calendar program to the front; nothing where there is none.
    Q_INVOKABLE void launchICal(QObject *sender = nullptr) const;

private:
    struct HotKey;

    // Done before any member is made that could read a setting.
    static UserDefaults &initialized(UserDefaults &defaults);
    void dressApplication();
    void followLauncher();
    void performLauncherAction(const QString &name);

    // Sets a value between its two announcements.
    template <typename Value> void assign(const QString &key, Value &field, const Value &value);
    Presence &presence() const { return *m_services.window.presence; }
    QWidget *preferencesWindowAsWidget() const;
    void followPresence();
    void makeSureOfMenuBarIcon();
    void removeMenuBarIcon();
    void updateMenuBarImages();
    void updateDesktopLimits();
    void updateHiding();
    // Whether the person has something at hand that shows the window again.
    bool hasWayBack() const;
    void lastWindowDidClose();

    const std::vector<HotKey> &hotKeys() const;
    SRRecorderControl *recorderOf(const HotKey &hotKey) const;
    void wireHotKeys();
    void updateHotKeyStatus(const QString &identifier);
    void connectPreferencesWindow();
    void connectStatusbarMenu();
    void connectProgramCommands();
    // Offers the report of a crash of the run before, once.
    void reportIfCrash();
    void showReportWindow(const QString &crashReport);

    void saveSettings();
    void flush();

    UserDefaults &m_defaults;
    Services m_services;
    VTMainWindowController m_mainWindowController;
    std::unique_ptr<VTMainWindow> m_window;
    std::unique_ptr<VTPreferencesWindow> m_preferencesWindow;
    std::unique_ptr<VTStatusbarMenu> m_statusbarMenu;
    std::unique_ptr<StatusItem> m_menuBarIcon;
    std::vector<std::unique_ptr<KeyValueBinding>> m_bindings;

    qint32 m_iconStatus = VTInTaskBarAndMenuBar;
    bool m_dockIconIsVisibleNow = false;
    bool m_restartRequired = false;
    bool m_hidesWhenInactive = false;
};
