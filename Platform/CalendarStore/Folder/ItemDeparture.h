// SPDX-License-Identifier: MIT
#pragma once

#include "ItemFiles.h"

#include <CalDeparture.h>

#include <functional>

namespace FolderStore
{

// An item of a file that goes into another back end.
class ItemDeparture final : public CalDeparture
{
public:
    // `text` is the item by itself, with what was changed in the record; `stored` is what its file holds. `settled` is
    // called once, when it is clear whether the item has left.
    ItemDeparture(ItemFiles &files, const CalCalendarItem &record, StoredItem stored, QByteArray text,
        std::function<void(bool hasLeft)> settled = {});

    const QByteArray &text() const override { return m_text; }
    Result<void, StoreError> leave() override;
    void stay() override;

private:
    ItemFiles &m_files;
    const CalCalendarItem &m_record;
    StoredItem m_stored;
    QByteArray m_text;
    std::function<void(bool hasLeft)> m_settled;
};

} // namespace FolderStore
