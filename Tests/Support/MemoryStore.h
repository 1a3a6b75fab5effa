// SPDX-License-Identifier: MIT
#pragma once

#include "MemoryBackend.h"

#include <CalCalendarStore.h>

// A calendar store over one MemoryBackend with the editable calendars "Home"
// and "Work", for tests that need a store and not its merging.
struct MemoryStore {
    MemoryStore();
    // Over a back end without calendars.
    static MemoryStore empty();

    MemoryBackend *backend; // the store's
    std::unique_ptr<CalCalendarStore> owned;
    CalCalendarStore &store() const { return *owned; }

private:
    explicit MemoryStore(std::unique_ptr<MemoryBackend> ownBackend);
};
