// SPDX-License-Identifier: MIT
#pragma once

#include <FileCalls.h>

#include <functional>

// The calls of the system with something that happens before and after each.
class HookedCalls : public FolderStore::FileCalls
{
public:
    enum class Call { Create, Write, ChangeOwner, ChangeMode, Flush, Close, Exchange, Rename, Link, Unlink };

    // Answers with an error number for the call to fail with, or 0 for it to be made. A file is closed also when
    // closing it reports a failure.
    std::function<int(Call call)> hook = [](Call) { return 0; };
    // After a call that was made.
    std::function<void(Call call)> afterwards = [](Call) {};

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
    template <typename Make> auto through(Call call, const Make &make) -> decltype(make());
};
