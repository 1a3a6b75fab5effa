// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace FolderStore
{

// The calls to the system by which folders are watched, as they are: -1 and errno
// on failure. Tests put in their place what a system does that has no watches left.
class WatchCalls
{
public:
    WatchCalls() = default;
    virtual ~WatchCalls() = default;
    WatchCalls(const WatchCalls &) = delete;
    WatchCalls &operator=(const WatchCalls &) = delete;

    virtual int start();
    virtual int watch(int queue, const char *folder, quint32 events);
};

} // namespace FolderStore
