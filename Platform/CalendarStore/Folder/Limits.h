// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// How much the folder store takes from one file. Stated once, here.
namespace FolderStore::Limits
{

// A longer file is skipped with a note. A calendar of 50,000 usual events fits.
constexpr qint64 itemFileBytes = 32 * 1024 * 1024;
// A longer file is left to the worker, so that nobody waits for it.
constexpr qint64 bytesReadWhileWaiting = 32 * 1024;
// `color`, `displayname` and `order`: a longer file counts as missing.
constexpr qint64 descriptionFileBytes = 4096;
constexpr int displayNameCharacters = 200;

} // namespace FolderStore::Limits
