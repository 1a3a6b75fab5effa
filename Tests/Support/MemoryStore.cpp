// SPDX-License-Identifier: MIT
#include "MemoryStore.h"

#include "TestRecords.h"

using namespace Qt::StringLiterals;

namespace
{

std::unique_ptr<CalCalendarStore> storeOver(std::unique_ptr<MemoryBackend> backend)
{
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::move(backend));
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

} // namespace

MemoryStore::MemoryStore()
    : MemoryStore(std::make_unique<MemoryBackend>())
{
    backend->addCalendar(makeCalendar(u"Home"_s, Qt::blue));
    backend->addCalendar(makeCalendar(u"Work"_s, Qt::red));
}

MemoryStore MemoryStore::empty()
{
    return MemoryStore(std::make_unique<MemoryBackend>());
}

MemoryStore::MemoryStore(std::unique_ptr<MemoryBackend> ownBackend)
    : backend(ownBackend.get())
    , owned(storeOver(std::move(ownBackend)))
{
}
