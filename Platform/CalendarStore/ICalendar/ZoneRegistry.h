// SPDX-License-Identifier: MIT
#pragma once

#include "CivilTime.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace ICalendar
{

// All time zones of the process, each made once and shared by every item.
//
// May be used from one thread at a time; the zones that it hands out may be
// used from any.
class ZoneRegistry
{
public:
    ZoneRegistry();
    ~ZoneRegistry();
    ZoneRegistry(const ZoneRegistry &) = delete;
    ZoneRegistry &operator=(const ZoneRegistry &) = delete;

    // The zone that a VTIMEZONE describes, by its text (from BEGIN to END). Null when it makes no zone.
    ZonePtr embeddedZone(const QByteArray &vtimezone);
    // The system's zone of that name: an IANA name, one behind a vendor's prefix
    // (/mozilla.org/20050126_1/Europe/Berlin), or a Windows name. Null when there is none.
    ZonePtr systemZone(const QString &tzid);

    // The zone that the process stands in at this moment (TZ, or the system's setting).
    static ZonePtr localZone();
    // Its IANA name; empty when it has none that leads to a file of the system.
    static QByteArray localZoneName();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ICalendar
