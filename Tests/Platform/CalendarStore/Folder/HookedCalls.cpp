// SPDX-License-Identifier: MIT
#include "HookedCalls.h"

#include <cerrno>

bool HookedCalls::isToFail(Call call) const
{
    const int reason = hook(call);
    if (reason != 0)
        errno = reason;
    return reason != 0;
}

int HookedCalls::create(int folder, const char *name)
{
    return isToFail(Call::Create) ? -1 : FileCalls::create(folder, name);
}

ssize_t HookedCalls::write(int file, const void *bytes, size_t count)
{
    return isToFail(Call::Write) ? -1 : FileCalls::write(file, bytes, count);
}

int HookedCalls::changeOwner(int file, uid_t owner, gid_t group)
{
    return isToFail(Call::ChangeOwner) ? -1 : FileCalls::changeOwner(file, owner, group);
}

int HookedCalls::changeMode(int file, mode_t mode)
{
    return isToFail(Call::ChangeMode) ? -1 : FileCalls::changeMode(file, mode);
}

int HookedCalls::flush(int file)
{
    return isToFail(Call::Flush) ? -1 : FileCalls::flush(file);
}

int HookedCalls::close(int file)
{
    const bool fails = isToFail(Call::Close);
    const int outcome = FileCalls::close(file);
    if (fails)
        errno = EIO;
    return fails ? -1 : outcome;
}

int HookedCalls::exchange(int folder, const char *name, const char *otherName)
{
    return isToFail(Call::Exchange) ? -1 : FileCalls::exchange(folder, name, otherName);
}

int HookedCalls::rename(int folder, const char *name, const char *newName)
{
    return isToFail(Call::Rename) ? -1 : FileCalls::rename(folder, name, newName);
}

int HookedCalls::renameIfFree(int folder, const char *name, const char *newName)
{
    return isToFail(Call::Rename) ? -1 : FileCalls::renameIfFree(folder, name, newName);
}

int HookedCalls::link(int folder, const char *name, const char *newName)
{
    return isToFail(Call::Link) ? -1 : FileCalls::link(folder, name, newName);
}

int HookedCalls::unlink(int folder, const char *name)
{
    return isToFail(Call::Unlink) ? -1 : FileCalls::unlink(folder, name);
}
