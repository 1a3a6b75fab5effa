// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QString>

#include <vector>

namespace Service
{

// What the service says of one source: it holds events or to-dos, never both.
struct SourceDescription {
    QString uid;
    bool holdsEvents = false; // else to-dos
    QString name;
    QColor color; // invalid when it has none
    int order = 0;
    QString account; // uid of the source that it belongs to
    QString accountName;
    QString remotePath; // on the account's server; empty for others
    bool isRemote = false; // lives on a server
    bool isBuiltIn = false; // the service's own personal one
    bool isDefault = false; // of its kind

    bool operator==(const SourceDescription &) const = default;
};

// One calendar as the store shows it, of one or two sources.
struct CalendarDescription {
    QString events; // uid of the source of events; empty for none
    QString tasks; // the same for to-dos
    QString title;
    QColor color;
    bool isDefault = false;

    QString uid() const { return events.isEmpty() ? tasks : events; }
    bool operator==(const CalendarDescription &) const = default;
};

// Makes calendars of sources: one of events and one of to-dos that have account, name and remote path in common are
// one calendar, and so are the two built-in ones. The default calendar and the default list of to-dos are one in any
// case, and the first. The others come by the order that they were given, then by name.
std::vector<CalendarDescription> pairedCalendars(const std::vector<SourceDescription> &sources);

} // namespace Service
