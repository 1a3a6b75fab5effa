// SPDX-License-Identifier: MIT
#include "FileCalls.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FolderStore
{

int FileCalls::create(int folder, const char *name)
{
    return ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
}

ssize_t FileCalls::write(int file, const void *bytes, size_t count)
{
    return ::write(file, bytes, count);
}

int FileCalls::changeOwner(int file, uid_t owner, gid_t group)
{
    return ::fchown(file, owner, group);
}

int FileCalls::changeMode(int file, mode_t mode)
{
    return ::fchmod(file, mode);
}

int FileCalls::flush(int file)
{
    return ::fsync(file);
}

int FileCalls::close(int file)
{
    return ::close(file);
}

int FileCalls::exchange(int folder, const char *name, const char *otherName)
{
    return ::renameat2(folder, name, folder, otherName, RENAME_EXCHANGE);
}

int FileCalls::rename(int folder, const char *name, const char *newName)
{
    return ::renameat(folder, name, folder, newName);
}

int FileCalls::renameIfFree(int folder, const char *name, const char *newName)
{
    return ::renameat2(folder, name, folder, newName, RENAME_NOREPLACE);
}

int FileCalls::link(int folder, const char *name, const char *newName)
{
    return ::linkat(folder, name, folder, newName, 0);
}

int FileCalls::unlink(int folder, const char *name)
{
    return ::unlinkat(folder, name, 0);
}

} // namespace FolderStore
