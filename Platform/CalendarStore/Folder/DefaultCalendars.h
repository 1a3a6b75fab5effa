// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace FolderStore
{

class ProblemLog;

// Makes the calendars "Home" and "Work" in a root that holds nothing, or is not there yet.
void makeDefaultCalendars(const QString &root, ProblemLog &log);

} // namespace FolderStore
