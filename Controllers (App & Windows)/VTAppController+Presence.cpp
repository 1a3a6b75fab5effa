// SPDX-License-Identifier: MIT
#include "VTAppController.h"
#include "VTMainWindow.h"
#include "VTPreferencesWindow.h"
#include "VTStatusbarMenu.h"

#include <DesktopAppearance.h>
#include <KLVImages.h>
#include <LauncherRequests.h>
#include <PTHotKeyCenter.h>
#include <Presence.h>
#include <StatusBar.h>

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QWindow>

#include <algorithm>

using namespace Qt::StringLiterals;

// Where the application shows itself, and how it hides and comes back.

namespace
{

// Hosts take what is nearest to the height of their bar.
constexpr int imageSizes[] { 16, 22, 24, 32, 44, 48, 64 };

QIcon menuBarImage(const QString &name)
{
    QIcon icon;
    for (const int size : imageSizes)
        icon.addPixmap(QPixmap::fromImage(KLVImages::image(name, QSizeF(size, size), 1)));
    return icon;
}

} // namespace

template <typename Value> void VTAppController::assign(const QString &key, Value &field, const Value &value)
{
    willChangeValueForKey(key);
    field = value;
    didChangeValueForKey(key);
}

void VTAppController::followPresence()
{
    presence().manage(*m_window);
    presence().manage(*m_preferencesWindow);
    connect(&m_services.appearance, &DesktopAppearance::changed, this, &VTAppController::updateMenuBarImages);
    connect(&m_services.statusBar, &StatusBar::availabilityDidChange, this, [this] {
        updateDesktopLimits();
        updateHiding();
    });
    connect(qApp, &QGuiApplication::lastWindowClosed, this, &VTAppController::lastWindowDidClose);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *keyWindow) {
        if (keyWindow)
            keyWindowDidChange();
    });
    updateDesktopLimits();
}

void VTAppController::setIconStatus(qint32 iconStatus)
{
    assign(u"iconStatus"_s, m_iconStatus, iconStatus);
    if (iconStatus == VTInMenuBarOnly) {
        if (m_dockIconIsVisibleNow)
            assign(u"restartRequired"_s, m_restartRequired, true);
        else
            presence().setTaskBarEntry(TaskBarEntry::Hidden);
        makeSureOfMenuBarIcon();
        return;
    }
    if (!m_dockIconIsVisibleNow) {
        presence().setTaskBarEntry(TaskBarEntry::Visible);
        presence().activate();
        assign(u"dockIconIsVisibleNow"_s, m_dockIconIsVisibleNow, true);
    }
    assign(u"restartRequired"_s, m_restartRequired, false);
    if (iconStatus == VTInTaskBarOnly)
        removeMenuBarIcon();
    else
        makeSureOfMenuBarIcon();
}

void VTAppController::makeSureOfMenuBarIcon()
{
    if (m_menuBarIcon)
        return;
    willChangeValueForKey(u"menuBarIcon"_s);
    m_menuBarIcon = m_services.statusBar.makeStatusItem();
    m_menuBarIcon->setToolTip(u"Vantle"_s);
    m_menuBarIcon->setTarget(this);
    m_menuBarIcon->setAction("showStatusBarMenu");
    m_menuBarIcon->setDoubleAction("showWindowAndMakeActiveApp");
    m_menuBarIcon->setMenu(statusbarMenu());
    updateMenuBarImages();
    didChangeValueForKey(u"menuBarIcon"_s);
}

void VTAppController::removeMenuBarIcon()
{
    willChangeValueForKey(u"menuBarIcon"_s);
    m_menuBarIcon.reset();
    didChangeValueForKey(u"menuBarIcon"_s);
}

// Nobody tells the colour of a panel; mostly it is that of the desktop. Each
// picture has a thin rim of the other tone, for panels that differ.
void VTAppController::updateMenuBarImages()
{
    if (!m_menuBarIcon)
        return;
    const QIcon negative = menuBarImage(u"Menubar icon negative"_s);
    const bool isDark = m_services.appearance.colorScheme() == ColorScheme::Dark;
    m_menuBarIcon->setImage(isDark ? negative : menuBarImage(u"Menubar icon"_s));
    m_menuBarIcon->setAlternateImage(negative);
}

void VTAppController::setHidesWhenInactive(bool hidesWhenInactive)
{
    assign(u"hidesWhenInactive"_s, m_hidesWhenInactive, hidesWhenInactive);
    updateHiding();
}

// What hides by itself must be able to come back.
void VTAppController::updateHiding()
{
    const bool hides = m_hidesWhenInactive && (hasWayBack() || m_services.launcher.isReachable());
    presence().setHidesOnDeactivate(*m_window, hides);
    presence().setHidesOnDeactivate(*m_preferencesWindow, hides);
}

bool VTAppController::hasWayBack() const
{
    if (m_menuBarIcon && m_services.statusBar.isAvailable())
        return true;
    const PTHotKeyCenter &center = m_services.hotKeyCenter;
    return std::ranges::any_of(center.allHotKeys(), [&](const PTHotKeyPtr &hotKey) {
        return center.status(hotKey->identifier(), *hotKey->keyCombo()).kind == HotKeyStatus::Kind::Active;
    });
}

void VTAppController::lastWindowDidClose()
{
    if (!hasWayBack())
        QCoreApplication::quit();
}

void VTAppController::updateDesktopLimits()
{
    m_preferencesWindow->setDesktopLimits({ .keepsTaskBarEntries = !presence().canHideTaskBarEntry(),
        .hasNoIconHost = !m_services.statusBar.isAvailable() });
}

void VTAppController::connectPreferencesWindow()
{
    VTPreferencesWindow *const window = m_preferencesWindow.get();
    connect(window, &VTPreferencesWindow::iconStatusChosen, this, &VTAppController::setIconStatus);
    connect(window, &VTPreferencesWindow::hidesWhenInactiveChosen, this, &VTAppController::setHidesWhenInactive);
    const auto bind = [this](const QString &key, const KeyValueBinding::Setter &setter) {
        m_bindings.push_back(std::make_unique<KeyValueBinding>(*this, key, setter));
    };
    bind(u"iconStatus"_s, [window](const QVariant &value) { window->setIconStatus(value.toInt()); });
    bind(u"hidesWhenInactive"_s, [window](const QVariant &value) { window->setHidesWhenInactive(value.toBool()); });
    bind(u"restartRequired"_s, [window](const QVariant &value) { window->setRestartRequired(value.toBool()); });
}

QMenu *VTAppController::statusbarMenu() const
{
    return m_statusbarMenu.get();
}

void VTAppController::connectStatusbarMenu()
{
    const auto perform = [this](const char *command, auto action) {
        connect(m_statusbarMenu->command(command), &QAction::triggered, this, action);
    };
    perform("showVantle", [this] { showWindowAndMakeActiveApp(); });
    perform("newEvent", [this] { m_mainWindowController.showEventEditSheetWithNewEvent(); });
    perform("newTask", [this] { m_mainWindowController.showTaskEditSheetWithNewTask(); });
    perform("goToToday", [this] { performLauncherAction(u"today"_s); });
    perform("showPreferences", [this] { showPreferences(); });
    connect(m_statusbarMenu->command("quit"), &QAction::triggered, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void VTAppController::showStatusBarMenu(QObject * /*sender*/)
{
    if (m_menuBarIcon)
        m_menuBarIcon->popUpMenu(statusbarMenu());
}

void VTAppController::showWindowAndMakeActiveApp(QObject *sender)
{
    m_mainWindowController.showWindowAndMakeActiveApp(sender);
}

void VTAppController::toggleAppHiddenStatus(QObject *sender)
{
    if (presence().isActive())
        presence().hide();
    else
        m_mainWindowController.showWindowAndMakeActiveApp(sender);
}

bool VTAppController::mainWindowIsKeyWindow() const
{
    return m_window && QApplication::activeWindow() == m_window.get();
}

void VTAppController::keyWindowDidChange()
{
    willChangeValueForKey(u"mainWindowIsKeyWindow"_s);
    didChangeValueForKey(u"mainWindowIsKeyWindow"_s);
}

bool VTAppController::applicationShouldHandleReopen_hasVisibleWindows(
    QObject * /*application*/, bool /*hasVisibleWindows*/)
{
    m_mainWindowController.showWindowAndMakeActiveApp();
    return false;
}

bool VTAppController::application_openFile(QObject * /*application*/, const QString & /*filename*/) const
{
    return false;
}

void VTAppController::followLauncher()
{
    LauncherRequests &launcher = m_services.launcher;
    connect(&launcher, &LauncherRequests::activationRequested, this, [this](const ActivationToken &token) {
        presence().setActivationToken(token);
        applicationShouldHandleReopen_hasVisibleWindows(qApp, m_window->isVisible());
    });
    connect(&launcher, &LauncherRequests::openRequested, this,
        [this](const QStringList &uris, const ActivationToken &token) {
            for (const QString &uri : uris)
                application_openFile(qApp, uri);
            presence().setActivationToken(token);
            showWindowAndMakeActiveApp();
        });
    connect(
        &launcher, &LauncherRequests::actionRequested, this, [this](const QString &name, const ActivationToken &token) {
            presence().setActivationToken(token);
            performLauncherAction(name);
        });
}

void VTAppController::performLauncherAction(const QString &name)
{
    if (name == u"new-event"_s) {
        m_mainWindowController.showEventEditSheetWithNewEvent();
    } else if (name == u"new-todo"_s) {
        m_mainWindowController.showTaskEditSheetWithNewTask();
    } else if (name == u"today"_s) {
        showWindowAndMakeActiveApp();
        m_mainWindowController.setDateToNow();
    } else if (name == u"toggle"_s) {
        // What was started to be shown is not hidden at once, however soon it was in front.
        if (m_services.launcher.isStarting())
            showWindowAndMakeActiveApp();
        else
            toggleAppHiddenStatus();
    } else if (name == u"preferences"_s) {
        showPreferences();
    }
}
