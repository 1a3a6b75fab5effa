// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include <sys/types.h>

struct stat;

namespace FolderStore
{

// The calls to the system by which a file is replaced, created or removed, as they are: -1 and errno
// on failure. Tests put in their place what fails, or ends the process, at one of them.
class FileCalls
{
public:
    FileCalls() = default;
    virtual ~FileCalls() = default;
    FileCalls(const FileCalls &) = delete;
    FileCalls &operator=(const FileCalls &) = delete;

    // Creates a file that was not there, for writing.
    virtual int create(int folder, const char *name);
    virtual ssize_t write(int file, const void *bytes, size_t count);
    virtual int changeOwner(int file, uid_t owner, gid_t group);
    virtual int changeMode(int file, mode_t mode);
    virtual int flush(int file);
    virtual int close(int file);
    // Gives each of the two names the other's file, in one step.
    virtual int exchange(int folder, const char *name, const char *otherName);
    virtual int rename(int folder, const char *name, const char *newName);
    // -1 and EEXIST when the new name is taken.
    virtual int renameIfFree(int folder, const char *name, const char *newName);
    virtual int link(int folder, const char *name, const char *newName);
    virtual int unlink(int folder, const char *name);
};

} // namespace FolderStore
