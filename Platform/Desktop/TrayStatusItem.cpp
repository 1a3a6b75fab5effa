// SPDX-License-Identifier: MIT
#include "TrayStatusItem.h"

#include "StatusIconHosts.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>

TrayStatusItem::TrayStatusItem(const StatusIconHosts &hosts, QObject *parent)
    : StatusItem(parent)
    , m_hosts(hosts)
{
    m_secondPress.setSingleShot(true);
    connect(&m_secondPress, &QTimer::timeout, this, [this] { sendAction(); });
    connect(&m_hosts, &StatusIconHosts::hasHostDidChange, this, &TrayStatusItem::makeIcon);
    // Its owner says first what it looks like.
    QMetaObject::invokeMethod(this, &TrayStatusItem::makeIcon, Qt::QueuedConnection);
}

TrayStatusItem::~TrayStatusItem() = default;

bool TrayStatusItem::isShown() const
{
    return m_icon && m_hosts.hasHost();
}

// A host that comes back finds the icon by itself.
void TrayStatusItem::makeIcon()
{
    if (m_icon || !m_hosts.hasHost())
        return;
    m_icon = std::make_unique<QSystemTrayIcon>();
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &TrayStatusItem::takeActivation);
    m_icon->setToolTip(m_toolTip);
    m_icon->setContextMenu(m_menu);
    showImage();
    m_icon->show();
}

void TrayStatusItem::setImage(const QIcon &image)
{
    m_image = image;
    showImage();
}

void TrayStatusItem::setAlternateImage(const QIcon &image)
{
    m_alternateImage = image;
    showImage();
}

void TrayStatusItem::showImage()
{
    if (m_icon)
        m_icon->setIcon(m_isHighlighted ? m_alternateImage : m_image);
}

void TrayStatusItem::setToolTip(const QString &text)
{
    m_toolTip = text;
    if (m_icon)
        m_icon->setToolTip(text);
}

void TrayStatusItem::setMenu(QMenu *menu)
{
    m_menu = menu;
    if (m_icon)
        m_icon->setContextMenu(menu);
}

void TrayStatusItem::popUpMenu(QMenu *menu)
{
    // Of a menu that a host draws nobody tells when it closes; so only this one highlights.
    m_isHighlighted = true;
    showImage();
    disconnect(m_menuCloses);
    m_menuCloses = connect(menu, &QMenu::aboutToHide, this, [this] {
        m_isHighlighted = false;
        showImage();
        disconnect(m_menuCloses);
    });
    menu->popup(QCursor::pos());
}

void TrayStatusItem::takeActivation(QSystemTrayIcon::ActivationReason reason)
{
    // The host, or Qt, shows the menu at a right press.
    if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::DoubleClick)
        return;
    // A menu that opened at the first press would swallow the second one. A tray tells
    // of that as a double click, a host of another press.
    if (reason == QSystemTrayIcon::Trigger && !m_secondPress.isActive()) {
        m_secondPress.start(QApplication::doubleClickInterval());
        return;
    }
    m_secondPress.stop();
    sendDoubleAction();
}
