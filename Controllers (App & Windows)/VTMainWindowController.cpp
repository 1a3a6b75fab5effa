// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace
{

VTEditServices editServices(const VTMainWindowServices &services)
{
    return { services.store, services.clock, services.alerts, services.fileChooser, services.sounds };
}

} // namespace

VTMainWindowController::VTMainWindowController(const VTMainWindowServices &services, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_eventEditController(std::make_unique<VTEventEditController>(editServices(services)))
    , m_taskEditController(std::make_unique<VTTaskEditController>(editServices(services)))
    , m_headerFromatterWithoutYear(VTDateFormatter::longWithoutYear(QLocale()))
    , m_headerFromatterWithYear(VTDateFormatter::longWithYear(QLocale()))
    , m_navigatorFormatter(VTDateFormatter::abbreviated(QLocale()))
{
}

VTMainWindowController::~VTMainWindowController() = default;

QVariant VTMainWindowController::valueForKey(const QString &key) const
{
    if (key == u"selectedCalItems"_s) {
        const auto items = selectedCalItems();
        return items ? QVariant::fromValue(*items) : QVariant();
    }
    if (key == u"selectedCalItemUID"_s)
        return m_selectedCalItemUID ? QVariant(*m_selectedCalItemUID) : QVariant();
    if (key == u"unselectedCalendarsUID"_s)
        return m_unselectedCalendarsUID ? QVariant(*m_unselectedCalendarsUID) : QVariant();
    return property(key.toLatin1().constData());
}
