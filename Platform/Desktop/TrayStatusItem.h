// SPDX-License-Identifier: MIT
#pragma once

#include "StatusItem.h"

#include <QIcon>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

class StatusIconHosts;

// A status icon of Qt, made once there is somebody to show it: Qt looks for a
// host at its first icon, and never again.
class TrayStatusItem final : public StatusItem
{
    Q_OBJECT

public:
    // The hosts outlive it.
    explicit TrayStatusItem(const StatusIconHosts &hosts, QObject *parent = nullptr);
    ~TrayStatusItem() override;

    void setImage(const QIcon &image) override;
    void setAlternateImage(const QIcon &image) override;
    void setToolTip(const QString &text) override;
    void setMenu(QMenu *menu) override;
    void popUpMenu(QMenu *menu) override;
    bool isShown() const override;

private:
    void makeIcon();
    void showImage();
    void takeActivation(QSystemTrayIcon::ActivationReason reason);

    const StatusIconHosts &m_hosts;
    std::unique_ptr<QSystemTrayIcon> m_icon;
    QTimer m_secondPress; // runs while a second press can still come
    QIcon m_image;
    QIcon m_alternateImage;
    QString m_toolTip;
    QPointer<QMenu> m_menu;
    QMetaObject::Connection m_menuCloses;
    bool m_isHighlighted = false;
};
