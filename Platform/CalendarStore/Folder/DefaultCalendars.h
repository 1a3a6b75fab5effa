// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Items
{
class ProblemLog;
}

namespace FolderStore
{

// Makes the calendars "Home" and "Work" in a root that holds nothing, or is not there yet.
void makeDefaultCalendars(const QString &root, Items::ProblemLog &log);

} // namespace FolderStore
