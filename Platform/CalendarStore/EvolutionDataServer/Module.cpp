// SPDX-License-Identifier: MIT
#include "ServiceCalendarStore.h"
#include "ServicePlugin.h"

#include <QObject>

// The way in from the program.
class Module final : public QObject, public ServicePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID VANTLE_SERVICE_PLUGIN)
    Q_INTERFACES(ServicePlugin)

public:
    std::unique_ptr<CalendarStoreBackend> makeBackend(Clock &clock) override
    {
        return std::make_unique<ServiceCalendarStore>(clock);
    }
};

#include "Module.moc"
