// SPDX-License-Identifier: MIT
#pragma once

#include <ItemSet.h>
#include <ZoneRegistry.h>

// Item sets of short texts.
class ItemSets
{
public:
    // `lines` are those of one event, without its frame.
    Items::ItemSetPtr event(const QString &name, const QByteArray &lines)
    {
        return std::make_shared<const Items::ItemSet>(name,
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + lines + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n",
            m_zones);
    }

private:
    ICalendar::ZoneRegistry m_zones;
};
