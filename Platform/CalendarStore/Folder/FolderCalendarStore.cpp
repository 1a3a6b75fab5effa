// SPDX-License-Identifier: MIT
#include "FolderCalendarStore.h"

#include "Collection.h"
#include "FolderSynchronizer.h"
#include "ItemRemover.h"
#include "ItemSaver.h"
#include "TwoStepSaver.h"

#include <Answers.h>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using FolderStore::Collection;

class FolderCalendarStore::Private final
{
public:
    Private(Options options, const Clock &clock, FolderStore::FileCalls *calls)
        : synchronizer(std::move(options))
        , files(synchronizer, clock, calls ? *calls : ownCalls)
        , eventSaver(files, saver, calls ? *calls : ownCalls)
    {
    }

    void noteRepeatsTooOften(const Collection &collection, const Items::GroupRef &series);

    FolderStore::FolderSynchronizer synchronizer;
    CalCalendarList calendars; // as they were asked for last
    FolderStore::FileCalls ownCalls;
    FolderStore::ItemFiles files;
    FolderStore::ItemSaver saver { files };
    FolderStore::TwoStepSaver eventSaver;
    FolderStore::ItemRemover remover { files };
};

void FolderCalendarStore::Private::noteRepeatsTooOften(const Collection &collection, const Items::GroupRef &series)
{
    synchronizer.log().note(
        collection.pathOf(series.set->name()), 0, u"repeats too often: %1"_s.arg(series.set->uidOf(series.get())));
}

FolderCalendarStore::FolderCalendarStore(Options options, Clock &clock, QObject *parent)
    : CalendarStoreBackend(parent)
    , d(std::make_unique<Private>(std::move(options), clock, nullptr))
{
    open();
}

FolderCalendarStore::FolderCalendarStore(Options options, Clock &clock, FolderStore::FileCalls &calls, QObject *parent)
    : CalendarStoreBackend(parent)
    , d(std::make_unique<Private>(std::move(options), clock, &calls))
{
    open();
}

void FolderCalendarStore::open()
{
    connect(&d->synchronizer, &FolderStore::FolderSynchronizer::changed, this, &FolderCalendarStore::changed);
    connect(&d->synchronizer, &FolderStore::FolderSynchronizer::loaded, this, &FolderCalendarStore::loaded);
    connect(&d->synchronizer, &FolderStore::FolderSynchronizer::writtenByOthers, this, [this](const QString &path) {
        // It can be found in the middle of a call, and is told from the event loop.
        for (const StoreError &error : d->files.overwrittenIn(path))
            QMetaObject::invokeMethod(
                this, [this, error] { Q_EMIT overwritten(error); }, Qt::QueuedConnection);
    });
    // Before anything is read, so that nobody sees the first half of a save.
    d->eventSaver.mendLeftOvers(d->synchronizer.root());
    d->synchronizer.open();
}

FolderCalendarStore::~FolderCalendarStore() = default;

void FolderCalendarStore::createDefaultCalendars()
{
    d->synchronizer.createDefaultCalendars();
}

CalCalendarList FolderCalendarStore::calendars() const
{
    // The same list again while nothing has changed: whoever compares it with the one before looks at no record.
    const auto &collections = d->synchronizer.collections();
    const auto recordOf = [](const auto &collection) -> const CalCalendarPtr & { return collection->record(); };
    if (!std::ranges::equal(collections, d->calendars, {}, recordOf)) {
        d->calendars.clear();
        std::ranges::transform(collections, std::back_inserter(d->calendars), recordOf);
    }
    return d->calendars;
}

bool FolderCalendarStore::hasDeclaredDefault() const
{
    return false;
}

bool FolderCalendarStore::isComplete() const
{
    return d->synchronizer.isComplete();
}

bool FolderCalendarStore::holdsUid(const QString &calendarUid, const QString &plainUid) const
{
    const Collection *collection = d->synchronizer.collection(calendarUid);
    return collection && collection->items().holdsUid(plainUid);
}

CalEventList FolderCalendarStore::events(
    const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const
{
    const Items::EventQuestion question(start, end);
    CalEventList events;
    for (const CalCalendarPtr &calendar : calendars) {
        if (const Collection *const collection = d->synchronizer.collection(calendar->uid())) {
            events += Items::eventsOf(collection->items(), collection->record(), question,
                [&](const Items::GroupRef &series) { d->noteRepeatsTooOften(*collection, series); });
        }
    }
    return events;
}

CalTaskList FolderCalendarStore::tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const
{
    CalTaskList tasks;
    for (const CalCalendarPtr &calendar : calendars) {
        if (const Collection *const collection = d->synchronizer.collection(calendar->uid()))
            tasks += Items::tasksOf(collection->items(), collection->record(), state, since);
    }
    return tasks;
}

Result<void, StoreError> FolderCalendarStore::saveEvent(CalEvent &event, CalSpan span)
{
    return d->eventSaver.save(event, span);
}

Result<void, StoreError> FolderCalendarStore::saveTask(CalTask &task)
{
    return d->saver.save(task);
}

Result<std::unique_ptr<CalRemoval>, StoreError> FolderCalendarStore::removeEvent(const CalEvent &event, CalSpan span)
{
    return d->remover.remove(event, span);
}

Result<std::unique_ptr<CalRemoval>, StoreError> FolderCalendarStore::removeTask(const CalTask &task)
{
    return d->remover.remove(task);
}

Result<std::unique_ptr<CalDeparture>, StoreError> FolderCalendarStore::sendEvent(CalEvent &event, CalSpan span)
{
    return d->eventSaver.send(event, span);
}

Result<std::unique_ptr<CalDeparture>, StoreError> FolderCalendarStore::sendTask(CalTask &task)
{
    return d->saver.send(task);
}

Result<void, StoreError> FolderCalendarStore::takeInEvent(CalEvent &event, const QByteArray &text)
{
    return d->saver.takeIn(event, text);
}

Result<void, StoreError> FolderCalendarStore::takeInTask(CalTask &task, const QByteArray &text)
{
    return d->saver.takeIn(task, text);
}
