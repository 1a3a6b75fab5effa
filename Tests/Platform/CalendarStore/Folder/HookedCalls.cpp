// SPDX-License-Identifier: MIT
#include "HookedCalls.h"

#include <cerrno>

template <typename Make> auto HookedCalls::through(Call call, const Make &make) -> decltype(make())
{
    if (const int reason = hook(call); reason != 0) {
        errno = reason;
        return -1;
    }
    const auto outcome = make();
    const int reason = errno;
    afterwards(call);
    errno = reason;
    return outcome;
}

int HookedCalls::create(int folder, const char *name)
{
    return through(Call::Create, [&] { return FileCalls::create(folder, name); });
}

ssize_t HookedCalls::write(int file, const void *bytes, size_t count)
{
    return through(Call::Write, [&] { return FileCalls::write(file, bytes, count); });
}

int HookedCalls::changeOwner(int file, uid_t owner, gid_t group)
{
    return through(Call::ChangeOwner, [&] { return FileCalls::changeOwner(file, owner, group); });
}

int HookedCalls::changeMode(int file, mode_t mode)
{
    return through(Call::ChangeMode, [&] { return FileCalls::changeMode(file, mode); });
}

int HookedCalls::flush(int file)
{
    return through(Call::Flush, [&] { return FileCalls::flush(file); });
}

int HookedCalls::close(int file)
{
    const int closed = FileCalls::close(file);
    return through(Call::Close, [closed] { return closed; });
}

int HookedCalls::exchange(int folder, const char *name, const char *otherName)
{
    return through(Call::Exchange, [&] { return FileCalls::exchange(folder, name, otherName); });
}

int HookedCalls::rename(int folder, const char *name, const char *newName)
{
    return through(Call::Rename, [&] { return FileCalls::rename(folder, name, newName); });
}

int HookedCalls::renameIfFree(int folder, const char *name, const char *newName)
{
    return through(Call::Rename, [&] { return FileCalls::renameIfFree(folder, name, newName); });
}

int HookedCalls::link(int folder, const char *name, const char *newName)
{
    return through(Call::Link, [&] { return FileCalls::link(folder, name, newName); });
}

int HookedCalls::unlink(int folder, const char *name)
{
    return through(Call::Unlink, [&] { return FileCalls::unlink(folder, name); });
}
