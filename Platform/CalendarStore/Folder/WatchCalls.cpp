// SPDX-License-Identifier: MIT
#include "WatchCalls.h"

#include <sys/inotify.h>

namespace FolderStore
{

int WatchCalls::start()
{
    return ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
}

int WatchCalls::watch(int queue, const char *folder, quint32 events)
{
    return ::inotify_add_watch(queue, folder, events);
}

} // namespace FolderStore
