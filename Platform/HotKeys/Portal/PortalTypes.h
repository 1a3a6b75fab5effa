// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

// A shortcut on the bus: (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties; // "description", "preferred_trigger", "trigger_description"
};
using PortalShortcutList = QList<PortalShortcut>;

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);

// Once before the first of them is sent or taken.
void registerPortalTypes();

namespace Portal
{

QString service();
QString path();
QString globalShortcutsInterface();
QString requestInterface();
QString sessionInterface();

// The services of desktops that answer in the portal's name.
QString backEndServices(); // a pattern for QDBusServiceWatcher

} // namespace Portal

Q_DECLARE_METATYPE(PortalShortcut)
