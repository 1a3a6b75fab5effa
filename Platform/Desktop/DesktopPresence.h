// SPDX-License-Identifier: MIT
#pragma once

#include "Presence.h"

#include <QList>
#include <QPointer>
#include <QWidget>

// On X11 by what the EWMH offers. On Wayland a window cannot do without its
// task-bar entry, and comes to the front where the compositor accepts the token.
class DesktopPresence final : public Presence
{
    Q_OBJECT

public:
    explicit DesktopPresence(QObject *parent = nullptr);

    void manage(QWidget &window) override;
    void setTaskBarEntry(TaskBarEntry entry) override;
    bool canHideTaskBarEntry() const override;
    void setHidesOnDeactivate(QWidget &window, bool hides) override;

    bool isActive() const override;
    void activate() override;
    void bringToFront(QWidget &window) override;
    void hide() override;
    void setActivationToken(const ActivationToken &token) override { m_token = token; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyTaskBarEntry(const QWidget &window) const;
    void applicationStateDidChange(Qt::ApplicationState state);
    void hideWindow(QWidget &window);
    void showHiddenWindows();
    void requestFocus(QWidget &window);

    QList<QPointer<QWidget>> m_windows;
    QList<QPointer<QWidget>> m_hidingOnDeactivate;
    QList<QPointer<QWidget>> m_hidden; // by us, in the order in which they went
    TaskBarEntry m_taskBarEntry = TaskBarEntry::Visible;
    ActivationToken m_token;
    bool m_isHidden = false; // the person, or a key, has hidden the application
};
