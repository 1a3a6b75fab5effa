// SPDX-License-Identifier: MIT
#include "FileSnapshot.h"

namespace FolderStore
{

FileSnapshot::FileSnapshot(const QString &fileName, const FileContent &content, ICalendar::ZoneRegistry &zones)
    : ItemSet(fileName, content.bytes, zones)
    , m_state(content.state)
    , m_linkTarget(content.linkTarget)
    , m_looksUnfinished(!content.isSettled || content.bytes.isEmpty() || document().isCut)
{
}

} // namespace FolderStore
