// SPDX-License-Identifier: MIT
#pragma once

#include <FileCalls.h>

#include <cerrno>
#include <functional>

// Fails at one call, or does something else there first. Calls are counted from 0.
class InterferingCalls final : public FolderStore::FileCalls
{
public:
    int failsAt = -1;
    int reason = EIO;
    int actsAt = -1;
    bool actsAfter = false;
    std::function<void()> action;
    int made = 0;
    // As on file systems that know neither exchanging nor renaming without replacing.
    bool cannotExchange = false;

    int create(int folder, const char *name) override
    {
        return through([&] { return FileCalls::create(folder, name); });
    }
    ssize_t write(int file, const void *bytes, size_t count) override
    {
        // In two parts, so that a write may stop half way.
        const size_t part = std::max<size_t>(1, count / 2);
        return through([&] { return FileCalls::write(file, bytes, part); });
    }
    int changeOwner(int file, uid_t owner, gid_t group) override
    {
        return through([&] { return FileCalls::changeOwner(file, owner, group); });
    }
    int changeMode(int file, mode_t mode) override
    {
        return through([&] { return FileCalls::changeMode(file, mode); });
    }
    int flush(int file) override
    {
        return through([&] { return FileCalls::flush(file); });
    }
    int close(int file) override
    {
        // A file is closed also when closing it reports a failure.
        const int closed = FileCalls::close(file);
        return through([&] { return closed; });
    }
    int exchange(int folder, const char *name, const char *otherName) override
    {
        if (cannotExchange) {
            errno = EINVAL;
            return -1;
        }
        return through([&] { return FileCalls::exchange(folder, name, otherName); });
    }
    int rename(int folder, const char *name, const char *newName) override
    {
        return through([&] { return FileCalls::rename(folder, name, newName); });
    }
    int renameIfFree(int folder, const char *name, const char *newName) override
    {
        if (cannotExchange) {
            errno = EINVAL;
            return -1;
        }
        return through([&] { return FileCalls::renameIfFree(folder, name, newName); });
    }
    int link(int folder, const char *name, const char *newName) override
    {
        return through([&] { return FileCalls::link(folder, name, newName); });
    }
    int unlink(int folder, const char *name) override
    {
        return through([&] { return FileCalls::unlink(folder, name); });
    }

private:
    template <typename Call> auto through(const Call &call) -> decltype(call())
    {
        const int number = made++;
        if (number == actsAt && !actsAfter)
            action();
        if (number == failsAt) {
            errno = reason;
            return -1;
        }
        const auto result = call();
        if (number == actsAt && actsAfter)
            action();
        return result;
    }
};
