// SPDX-License-Identifier: MIT
#pragma once

#include "HookedCalls.h"

#include <algorithm>
#include <cerrno>
#include <functional>

// Fails at one call, or does something else there first. Calls are counted from 0.
class InterferingCalls final : public HookedCalls
{
public:
    InterferingCalls()
    {
        hook = [this](Call) {
            const int number = made++;
            if (number == actsAt && !actsAfter)
                action();
            return number == failsAt ? reason : 0;
        };
        afterwards = [this](Call) {
            if (made - 1 == actsAt && actsAfter)
                action();
        };
    }

    int failsAt = -1;
    int reason = EIO;
    int actsAt = -1;
    bool actsAfter = false;
    std::function<void()> action;
    int made = 0;
    // As on file systems that know neither exchanging nor renaming without replacing.
    bool cannotExchange = false;

    ssize_t write(int file, const void *bytes, size_t count) override
    {
        // In two parts, so that a write may stop half way.
        return HookedCalls::write(file, bytes, std::max<size_t>(1, count / 2));
    }
    int exchange(int folder, const char *name, const char *otherName) override
    {
        return cannotExchange ? unsupported() : HookedCalls::exchange(folder, name, otherName);
    }
    int renameIfFree(int folder, const char *name, const char *newName) override
    {
        return cannotExchange ? unsupported() : HookedCalls::renameIfFree(folder, name, newName);
    }

private:
    static int unsupported()
    {
        errno = EINVAL;
        return -1;
    }
};
