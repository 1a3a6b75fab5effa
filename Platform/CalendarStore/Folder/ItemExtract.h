// SPDX-License-Identifier: MIT
#pragma once

#include "FileSnapshot.h"

#include <QByteArray>

namespace FolderStore
{

// One group of a file, apart from the others. `text` is what the file was read from.
// Time zones belong to all: they stay on both sides.

// Whether the file holds the group and nothing else.
bool holdsNothingElse(const FileSnapshot &file, int group, const QByteArray &text);
QByteArray textOfGroupAlone(const FileSnapshot &file, int group, const QByteArray &text);
QByteArray textWithoutGroup(const FileSnapshot &file, int group, const QByteArray &text);

} // namespace FolderStore
