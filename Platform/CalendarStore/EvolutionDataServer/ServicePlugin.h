// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

#include <QtPlugin>

#include <memory>

class Clock;

// What the module gives to the program.
class ServicePlugin
{
public:
    ServicePlugin() = default;
    virtual ~ServicePlugin() = default;
    ServicePlugin(const ServicePlugin &) = delete;
    ServicePlugin &operator=(const ServicePlugin &) = delete;

    // `clock` outlives the back end.
    virtual std::unique_ptr<CalendarStoreBackend> makeBackend(Clock &clock) = 0;
};

// Ends in the version of the project: a module of another version is another interface.
#define VANTLE_SERVICE_PLUGIN "org.vantle.Vantle.ServicePlugin/0.1.0"
Q_DECLARE_INTERFACE(ServicePlugin, VANTLE_SERVICE_PLUGIN)
