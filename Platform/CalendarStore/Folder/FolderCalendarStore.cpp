// SPDX-License-Identifier: MIT
#include "FolderCalendarStore.h"

#include "Collection.h"
#include "FolderSynchronizer.h"
#include "ItemRemover.h"
#include "ItemSaver.h"
#include "ItemTimes.h"
#include "RecordMaker.h"
#include "TwoStepSaver.h"

#include <ZoneRegistry.h>

#include <QTimeZone>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using FolderStore::Collection;
using FolderStore::GroupRef;
using FolderStore::ItemTimes;
using FolderStore::RecordMaker;
using ICalendar::Item;

namespace
{

// The range of a question, in the zone in which the process stands at that moment.
struct Question {
    ICalendar::UtcSeconds from;
    ICalendar::UtcSeconds to;
    ICalendar::ZonePtr local;
    QByteArray zoneName;

    bool includes(const ItemTimes &times) const
    {
        return FolderStore::overlaps(times.start.toUtc(*local), times.end.toUtc(*local), from, to);
    }
};

} // namespace

class FolderCalendarStore::Private final
{
public:
    Private(Options options, const Clock &clock, FolderStore::FileCalls *calls)
        : synchronizer(std::move(options))
        , files(synchronizer, clock, calls ? *calls : ownCalls)
        , eventSaver(files, saver, calls ? *calls : ownCalls)
    {
    }

    void addOccurrences(CalEventList &events, const Collection &collection, const RecordMaker &maker,
        const GroupRef &ref, const Question &question);

    FolderStore::FolderSynchronizer synchronizer;
    CalCalendarList calendars; // as they were asked for last
    FolderStore::FileCalls ownCalls;
    FolderStore::ItemFiles files;
    FolderStore::ItemSaver saver { files };
    FolderStore::TwoStepSaver eventSaver;
    FolderStore::ItemRemover remover { files };
};

void FolderCalendarStore::Private::addOccurrences(CalEventList &events, const Collection &collection,
    const RecordMaker &maker, const GroupRef &ref, const Question &question)
{
    const FolderStore::FileSnapshot &file = *ref.file;
    const ICalendar::Expansion &expansion
        = collection.expansions().expansion(ref, question.from, question.to, *question.local, question.zoneName);
    if (expansion.repeatsTooOften)
        synchronizer.log().note(
            collection.pathOf(file.fileName()), 0, u"repeats too often: %1"_s.arg(file.uidOf(ref.get())));
    for (const ICalendar::Occurrence &occurrence : expansion.occurrences) {
        const ItemTimes times { occurrence.start, occurrence.end };
        if (!question.includes(times))
            continue;
        const int override = occurrence.overriddenBy;
        const Item &values = file.item(override >= 0 ? ref.get().overrides.at(override) : ref.get().master);
        events << maker.event(ref, values, times, FolderStore::recurrenceIdText(occurrence.recurrenceId));
    }
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
    // Before anything is read, so that nobody sees the first half of a save.
    d->eventSaver.mendLeftOvers(d->synchronizer.root());
    d->synchronizer.open();
}

FolderCalendarStore::~FolderCalendarStore() = default;

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
    return collection && collection->holdsUid(plainUid);
}

CalEventList FolderCalendarStore::events(
    const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const
{
    const Question question { start.toSecsSinceEpoch(), end.toSecsSinceEpoch(), ICalendar::ZoneRegistry::localZone(),
        QTimeZone::systemTimeZoneId() };
    CalEventList events;
    for (const CalCalendarPtr &calendar : calendars) {
        const Collection *collection = d->synchronizer.collection(calendar->uid());
        if (!collection)
            continue;
        const RecordMaker maker(*collection, collection->record(), *question.local);
        for (const GroupRef &ref : collection->eventCandidates(question.from, question.to)) {
            if (ref.get().needsExpansion) {
                d->addOccurrences(events, *collection, maker, ref, question);
                continue;
            }
            const Item &item = ref.file->representative(ref.get());
            const auto times = FolderStore::timesOfItem(item);
            if (times && question.includes(*times))
                events << maker.event(ref, item, *times,
                    item.recurrenceId ? FolderStore::recurrenceIdText(*item.recurrenceId) : QString());
        }
    }
    return events;
}

CalTaskList FolderCalendarStore::tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const
{
    const ICalendar::ZonePtr local = ICalendar::ZoneRegistry::localZone();
    const ICalendar::UtcSeconds sinceSeconds = since.isValid() ? since.toSecsSinceEpoch() : 0;
    CalTaskList tasks;
    for (const CalCalendarPtr &calendar : calendars) {
        const Collection *collection = d->synchronizer.collection(calendar->uid());
        if (!collection)
            continue;
        const RecordMaker maker(*collection, collection->record(), *local);
        for (const GroupRef &ref : collection->tasks().inState(state, sinceSeconds))
            tasks << maker.task(ref);
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
