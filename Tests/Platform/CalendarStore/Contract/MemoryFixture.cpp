// SPDX-License-Identifier: MIT
#include "MemoryFixture.h"

#include <CalendarFolder.h>
#include <TestRecords.h>

using namespace Qt::StringLiterals;

namespace
{

// What happens in these years is held as one record for each occurrence.
const QDateTime firstInstant { QDate(2024, 1, 1), QTime(0, 0) };
const QDateTime lastInstant { QDate(2027, 12, 31), QTime(23, 59, 59) };

} // namespace

MemoryFixture::MemoryFixture()
{
    auto backend = std::make_unique<MemoryBackend>();
    m_backend = backend.get();
    m_backend->addCalendar(makeCalendar(u"Home"_s));
    m_backend->addCalendar(makeCalendar(u"Work"_s));
    m_backend->addCalendar(makeReadOnlyCalendar(readOnlyUid()));
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::move(backend));
    m_store = std::make_unique<CalCalendarStore>(std::move(backends));
}

CalCalendarStore &MemoryFixture::store()
{
    m_isInUse = true;
    return *m_store;
}

void MemoryFixture::post(const CalBackendChange &change)
{
    if (m_isInUse)
        m_backend->postChange(change);
}

void MemoryFixture::put(const QString &calendarUid, const QString &plainUid, const QByteArray &components)
{
    // The text is understood by whoever understands texts; here it is about what is done with the records.
    const CalendarFolder folder;
    folder.write(u"c/%1.ics"_s.arg(plainUid), calendarText(components));
    const auto reader = folder.openWithoutWatching();
    const CalEventList events = reader->events(firstInstant, lastInstant, reader->calendars());
    const CalTaskList tasks = reader->tasks(CalendarStoreBackend::TaskState::Any, {}, reader->calendars());

    if (m_backend->holdsUid(calendarUid, plainUid))
        m_backend->removeItem(calendarUid, plainUid);
    for (const CalEventPtr &event : events)
        m_backend->addEvent(calendarUid, event);
    for (const CalTaskPtr &task : tasks)
        m_backend->addTask(calendarUid, task);
    post({ .events = !events.isEmpty(), .tasks = !tasks.isEmpty(), .calendarUids = { calendarUid } });
}

void MemoryFixture::takeAway(const QString &calendarUid, const QString &plainUid)
{
    const bool isEvent = m_backend->storedEvent(plainUid) != nullptr;
    m_backend->removeItem(calendarUid, plainUid);
    post({ .events = isEvent, .tasks = !isEvent, .calendarUids = { calendarUid } });
}

void MemoryFixture::addCalendar(const QString &uid)
{
    m_backend->addCalendar(makeCalendar(uid));
    post({ .calendars = true, .calendarUids = { uid } });
}

void MemoryFixture::takeCalendarAway(const QString &uid)
{
    m_backend->removeCalendar(uid);
    post({ .calendars = true, .calendarUids = { uid } });
}

void MemoryFixture::breakTheDisk()
{
    m_backend->refuseSaves(StoreError::Code::ReadOnly, u"The disk is broken."_s);
}
