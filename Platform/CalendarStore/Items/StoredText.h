// SPDX-License-Identifier: MIT
#pragma once

#include "ItemSet.h"

#include <QByteArray>

namespace Items
{

// An item as it is stored at this moment: the text that it stands in, and what was read from that text.
struct StoredText {
    ItemSetPtr set;
    int group = 0;
    QByteArray text;

    const ItemGroup &groupInSet() const { return set->groups().at(static_cast<size_t>(group)); }
    const ICalendar::Item &item() const { return set->representative(groupInSet()); }
};

} // namespace Items
