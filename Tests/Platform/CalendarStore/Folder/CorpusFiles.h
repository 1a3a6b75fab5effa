// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

// For tests that read whole folders of calendar files.

// Nothing where there is no such file.
QByteArray bytesOf(const QString &path);
// The .ics files in the folder and in those below it, in the order of their paths.
QStringList calendarFilesBelow(const QString &folder);
