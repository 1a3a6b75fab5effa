// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// Where a desktop asks for the passwords of calendar accounts. Vantle itself
// asks for none.
namespace AccountSettings
{

struct Program {
    QString name; // looked for in the search path
    QStringList arguments;

    bool operator==(const Program &) const = default;
};

// What to try, the best first, on a desktop of that name (as in $XDG_CURRENT_DESKTOP: several, separated by
// colons). First the desktop's own settings, then the programs that manage calendars.
QList<Program> programsFor(const QString &desktop);

// Starts the first one that is installed. False when none is, or it did not start.
[[nodiscard]] bool open(const QString &desktop);

} // namespace AccountSettings
