// SPDX-License-Identifier: MIT
#pragma once

#include "ItemSet.h"

#include <QByteArray>

namespace Items
{

// One group of a set, apart from the others. `text` is what the set was read from.
// Time zones belong to all: they stay on both sides.

// Whether the text holds the group and nothing else.
bool holdsNothingElse(const ItemSet &set, int group, const QByteArray &text);
QByteArray textOfGroupAlone(const ItemSet &set, int group, const QByteArray &text);
QByteArray textWithoutGroup(const ItemSet &set, int group, const QByteArray &text);

} // namespace Items
