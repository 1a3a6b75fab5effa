// SPDX-License-Identifier: MIT
#include "PortalTypes.h"

#include <QDBusMetaType>

using namespace Qt::StringLiterals;

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

void registerPortalTypes()
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcutList>();
}

QString Portal::service()
{
    return u"org.freedesktop.portal.Desktop"_s;
}

QString Portal::path()
{
    return u"/org/freedesktop/portal/desktop"_s;
}

QString Portal::globalShortcutsInterface()
{
    return u"org.freedesktop.portal.GlobalShortcuts"_s;
}

QString Portal::requestInterface()
{
    return u"org.freedesktop.portal.Request"_s;
}

QString Portal::sessionInterface()
{
    return u"org.freedesktop.portal.Session"_s;
}

QString Portal::backEndServices()
{
    return u"org.freedesktop.impl.portal.desktop*"_s;
}
