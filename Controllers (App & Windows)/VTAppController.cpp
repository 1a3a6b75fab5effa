// SPDX-License-Identifier: MIT
#include "VTAppController.h"

#include "VTMainWindow.h"
#include "VTPreferencesWindow.h"
#include "VTSettings.h"
#include "VTStatusbarMenu.h"

#include <AutostartEntry.h>
#include <DesktopAppearance.h>
#include <KLVStyle.h>
#include <KLVTheme.h>
#include <PTHotKeyCenter.h>
#include <PTKeyCombo.h>
#include <Presence.h>
#include <PropertyList.h>
#include <Termination.h>
#include <UserDefaults.h>

#include <QApplication>
#include <QTimer>

using namespace Qt::StringLiterals;

void VTAppController::initialize(UserDefaults &defaults, const QString &resource)
{
    const Result<QVariantMap> factoryValues = readPropertyListDictionary(resource);
    if (factoryValues)
        defaults.registerDefaults(factoryValues.value());
}

UserDefaults &VTAppController::initialized(UserDefaults &defaults)
{
    initialize(defaults);
    return defaults;
}

VTAppController::VTAppController(const Services &services, QObject *parent)
    : QObject(parent)
    , m_defaults(initialized(services.window.defaults))
    , m_services(services)
    , m_mainWindowController(services.window)
{
}

VTAppController::~VTAppController() = default;

void VTAppController::awakeFromNib()
{
    dressApplication();
    m_window = std::make_unique<VTMainWindow>();
    m_window->restoreWindowState(m_services.windowState.read());
    m_preferencesWindow = std::make_unique<VTPreferencesWindow>(
        m_services.keyboardLayouts, &PTKeyCombo::nameForKeyCode, AutostartEntry::ofThisProgram());
    m_statusbarMenu = std::make_unique<VTStatusbarMenu>(m_window.get());
    connectPreferencesWindow();
    connectStatusbarMenu();
    connectProgramCommands();
    followPresence();
    // Before the main window's own, whose settings are written after those of the shell; then all goes to the disk.
    connect(
        &m_services.window.termination, &Termination::willTerminate, this, &VTAppController::applicationWillTerminate);
    m_mainWindowController.setWindow(m_window.get());
    m_mainWindowController.awakeFromNib();
    connect(&m_services.window.termination, &Termination::willTerminate, this, &VTAppController::flush);
    connect(&m_services.window.termination, &Termination::sessionMayEnd, this, [this] {
        saveSettings();
        m_mainWindowController.saveDefaults();
        flush();
    });

    m_dockIconIsVisibleNow = false;
    setIconStatus(static_cast<qint32>(m_defaults.integerForKey(VTIconStatusKey)));
    setHidesWhenInactive(m_defaults.boolForKey(VTHidesWhenInactiveKey));
    wireHotKeys();
    followLauncher();
    applicationDidFinishLaunching();
    // The window does not wait for the bus.
    QTimer::singleShot(0, &m_services.appearance, &DesktopAppearance::followPortal);
}

void VTAppController::applicationDidFinishLaunching()
{
    m_window->show();
    m_window->activateWindow();
    reportIfCrash();
}

QWidget *VTAppController::preferencesWindowAsWidget() const
{
    return m_preferencesWindow.get();
}

QVariant VTAppController::valueForKey(const QString &key) const
{
    return property(key.toLatin1().constData());
}

void VTAppController::dressApplication()
{
    // A style that the desktop brings has its own colours.
    if (!KLVStyle::dressApplication())
        return;

    const auto dress = [this] {
        const DesktopAppearance &appearance = m_services.appearance;
        const QColor accent = appearance.accent().value_or(QColor());
        const bool isDark = appearance.colorScheme() == ColorScheme::Dark;
        QApplication::setPalette(appearance.prefersHighContrast() ? KLVTheme::highContrastPalette(isDark, accent)
                : isDark                                          ? KLVTheme::darkPalette(accent)
                                                                  : KLVTheme::lightPalette(accent));
    };
    connect(&m_services.appearance, &DesktopAppearance::changed, this, dress);
    dress();
}

void VTAppController::applicationWillTerminate()
{
    PTHotKeyCenter &center = m_services.hotKeyCenter;
    for (const PTHotKeyPtr &hotKey : center.allHotKeys())
        center.unregisterHotKey(hotKey);
    saveSettings();
}

void VTAppController::flush()
{
    // Neither failure may keep the program from ending. The settings note theirs in the log themselves.
    [[maybe_unused]] const auto settings = m_defaults.synchronize();
    [[maybe_unused]] const auto state = m_services.windowState.write(m_window->windowState());
}
