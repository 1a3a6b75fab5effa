// SPDX-License-Identifier: MIT
#include "DesktopPresence.h"

#include "X11Messages.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace
{

// Window managers grant a pager what they may refuse to an application.
constexpr quint32 sourceIsPager = 2;

// Where the person has it. Without that wish the window manager finds a place for a window that is shown again,
// as for a new one.
void keepPlace(const QWidget &window)
{
    QWindow *const handle = window.windowHandle();
    if (handle && !(window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)))
        handle->setGeometry(handle->geometry());
}

} // namespace

DesktopPresence::DesktopPresence(QObject *parent)
    : Presence(parent)
{
    connect(qApp, &QGuiApplication::applicationStateChanged, this, &DesktopPresence::applicationStateDidChange);
}

void DesktopPresence::manage(QWidget &window)
{
    m_windows.append(&window);
    window.installEventFilter(this);
    if (window.isVisible())
        applyTaskBarEntry(window);
}

void DesktopPresence::setTaskBarEntry(TaskBarEntry entry)
{
    m_taskBarEntry = entry;
    for (const auto &window : std::as_const(m_windows)) {
        if (window && window->isVisible())
            applyTaskBarEntry(*window);
    }
}

bool DesktopPresence::canHideTaskBarEntry() const
{
    return X11Messages::isAvailable();
}

void DesktopPresence::applyTaskBarEntry(const QWidget &window) const
{
    const bool isVisible = m_taskBarEntry == TaskBarEntry::Visible;
    X11Messages::changeStates(window, isVisible ? X11Messages::States::Remove : X11Messages::States::Add,
        { "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER" });
}

bool DesktopPresence::eventFilter(QObject *watched, QEvent *event)
{
    auto *const window = qobject_cast<QWidget *>(watched);
    if (event->type() == QEvent::Show && !event->spontaneous() && window) {
        m_isHidden = false;
        m_hidden.removeAll(window);
        applyTaskBarEntry(*window);
        // Once more when the window manager has it: some forget the states of a window that was hidden.
        QTimer::singleShot(0, window, [this, window] {
            if (window->isVisible())
                applyTaskBarEntry(*window);
        });
    }
    if (event->type() == QEvent::Hide && !event->spontaneous() && window)
        keepPlace(*window);
    return Presence::eventFilter(watched, event);
}

void DesktopPresence::setHidesOnDeactivate(QWidget &window, bool hides)
{
    m_hidingOnDeactivate.removeAll(&window);
    if (hides)
        m_hidingOnDeactivate.append(&window);
}

void DesktopPresence::applicationStateDidChange(Qt::ApplicationState state)
{
    if (state == Qt::ApplicationActive) {
        showHiddenWindows();
        return;
    }
    if (QApplication::activeModalWidget())
        return;
    for (const auto &window : std::as_const(m_hidingOnDeactivate)) {
        if (window && window->isVisible())
            hideWindow(*window);
    }
}

void DesktopPresence::hideWindow(QWidget &window)
{
    keepPlace(window);
    window.hide();
    m_hidden.append(&window);
}

void DesktopPresence::showHiddenWindows()
{
    // Showing takes each off the list.
    const QList<QPointer<QWidget>> hidden = std::exchange(m_hidden, {});
    for (const auto &window : hidden) {
        if (window)
            window->show();
    }
}

bool DesktopPresence::isActive() const
{
    // Qt goes on taking an application for active whose window was closed with the keyboard in it.
    return !m_isHidden && QGuiApplication::applicationState() == Qt::ApplicationActive
        && QGuiApplication::focusWindow();
}

void DesktopPresence::activate()
{
    if (QApplication::activeWindow())
        return;
    for (const auto &window : std::as_const(m_windows)) {
        if (window && window->isVisible()) {
            requestFocus(*window);
            return;
        }
    }
}

void DesktopPresence::bringToFront(QWidget &window)
{
    showHiddenWindows();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    // A sheet over the window has the keyboard.
    QWidget *const modal = QApplication::activeModalWidget();
    requestFocus(modal && modal->isVisible() ? *modal : window);
}

void DesktopPresence::requestFocus(QWidget &window)
{
    const ActivationToken token = std::exchange(m_token, {});
    // Qt's Wayland part reads it from there, and there alone.
    if (!token.waylandToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.waylandToken);
    window.activateWindow();
    X11Messages::send(window, "_NET_ACTIVE_WINDOW", { sourceIsPager, token.userTime, 0, 0, 0 });
    X11Messages::finishStartup(token.startupId);
}

void DesktopPresence::hide()
{
    // To hide a dialog that waits for an answer would be to answer it.
    const QWidget *const modal = QApplication::activeModalWidget();
    if (modal && modal->windowModality() == Qt::ApplicationModal)
        return;

    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *window : all) {
        if (window->isVisible() && window->windowType() == Qt::Popup)
            window->close();
    }
    // Dialogs before the windows that they stand over.
    for (QWidget *window : all) {
        if (window->isVisible() && window->parentWidget())
            hideWindow(*window);
    }
    for (QWidget *window : all) {
        if (window->isVisible() && window->windowType() != Qt::ToolTip)
            hideWindow(*window);
    }
    std::reverse(m_hidden.begin(), m_hidden.end());
    m_isHidden = true;
}
