// SPDX-License-Identifier: MIT
#include "ItemDeparture.h"

namespace FolderStore
{

ItemDeparture::ItemDeparture(ItemFiles &files, const CalCalendarItem &record, StoredItem stored, QByteArray text,
    std::function<void(bool hasLeft)> settled)
    : m_files(files)
    , m_record(record)
    , m_stored(std::move(stored))
    , m_text(std::move(text))
    , m_settled(std::move(settled))
{
}

Result<void, StoreError> ItemDeparture::leave()
{
    const auto left = m_files.takeOut(m_stored, m_record);
    if (!left)
        return left.error();
    if (m_settled)
        m_settled(true);
    return {};
}

void ItemDeparture::stay()
{
    if (m_settled)
        m_settled(false);
}

} // namespace FolderStore
