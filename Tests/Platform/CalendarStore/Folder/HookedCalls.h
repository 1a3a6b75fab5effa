// SPDX-License-Identifier: MIT
#pragma once

#include <FileCalls.h>

#include <functional>

// The calls of the system with something that happens before each. The hook answers
// with an error number for the call to fail with, or 0 for it to be made.
class HookedCalls final : public FolderStore::FileCalls
{
public:
    enum class Call { Create, Write, ChangeOwner, ChangeMode, Flush, Close, Exchange, Rename, Link, Unlink };

    std::function<int(Call call)> hook = [](Call) { return 0; };

    int create(int folder, const char *name) override;
    ssize_t write(int file, const void *bytes, size_t count) override;
    int changeOwner(int file, uid_t owner, gid_t group) override;
    int changeMode(int file, mode_t mode) override;
    int flush(int file) override;
    int close(int file) override;
    int exchange(int folder, const char *name, const char *otherName) override;
    int rename(int folder, const char *name, const char *newName) override;
    int renameIfFree(int folder, const char *name, const char *newName) override;
    int link(int folder, const char *name, const char *newName) override;
    int unlink(int folder, const char *name) override;

private:
    bool isToFail(Call call) const;
};
