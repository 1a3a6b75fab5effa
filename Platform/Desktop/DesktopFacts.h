// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// What helps to understand a report: versions of Qt and the system, the desktop,
// language, screens and font, one to a line. Nothing of the person's calendars,
// names or files.
QString desktopFacts();
