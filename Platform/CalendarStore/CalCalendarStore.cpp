// SPDX-License-Identifier: MIT
#include "CalCalendarStore.h"

#include "CalendarStoreBackend.h"
#include "MergedCalendars.h"
#include "NotificationMerger.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <tuple>

namespace
{

using Entry = MergedCalendars::Entry;

// What decides how calendars are merged. Calendars never change, so comparing pointers is enough.
struct BackendCalendars {
    CalCalendarList calendars;
    bool hasDeclaredDefault = false;

    bool operator==(const BackendCalendars &) const = default;
};

// What a predicate asks of one back end, in the back end's own terms.
struct BackendQuestion {
    CalendarStoreBackend *backend = nullptr;
    CalCalendarList calendars;
};

std::vector<BackendQuestion> questions(const MergedCalendars &merged, const CalCalendarList &asked)
{
    QSet<QString> askedUids;
    for (const CalCalendarPtr &calendar : asked) {
        if (calendar)
            askedUids.insert(calendar->uid());
    }

    std::vector<BackendQuestion> questions;
    for (const Entry &entry : merged.entries()) {
        if (!askedUids.contains(entry.shown->uid()))
            continue;
        auto question = std::ranges::find(questions, entry.backend, &BackendQuestion::backend);
        if (question == questions.end())
            question = questions.insert(question, { entry.backend, {} });
        question->calendars.append(entry.own);
    }
    return questions;
}

// Null when the back end answers with something that it does not list.
const Entry *adoptRecord(CalCalendarItem &record, const CalendarStoreBackend *backend, const MergedCalendars &merged)
{
    const Entry *const entry = record.calendar() ? merged.ofBackend(backend, record.calendar()->uid()) : nullptr;
    if (!entry)
        return nullptr;
    record.setCalendar(entry->shown);
    record.setUid(merged.uidOfItem(record.origin(), *entry));
    return entry;
}

auto placeOf(const CalEvent &event)
{
    // Titles are compared by character code: the order must not depend on a language.
    return std::tuple(
        event.startDate().toMSecsSinceEpoch(), !event.isAllDay(), event.title().value_or(QString()), event.uid());
}

// Sorts records by a key that is taken once from each.
template <typename Record, typename Key>
QList<std::shared_ptr<Record>> sortedByKey(std::vector<std::pair<Key, std::shared_ptr<Record>>> keyed)
{
    std::ranges::sort(keyed, {}, [](const auto &pair) -> const Key & { return pair.first; });
    QList<std::shared_ptr<Record>> records;
    records.reserve(static_cast<qsizetype>(keyed.size()));
    for (auto &pair : keyed)
        records.append(std::move(pair.second));
    return records;
}

CalendarStoreBackend::TaskState taskState(CalPredicate::Subject subject)
{
    switch (subject) {
    case CalPredicate::Subject::TasksCompletedSince:
        return CalendarStoreBackend::TaskState::CompletedSince;
    case CalPredicate::Subject::UncompletedTasks:
        return CalendarStoreBackend::TaskState::Uncompleted;
    case CalPredicate::Subject::AllTasks:
    case CalPredicate::Subject::EventsInRange:
        break;
    }
    return CalendarStoreBackend::TaskState::Any;
}

StoreError refusal(StoreError::Code code, const CalCalendarItem &item, const QString &reason)
{
    return { code, item.title().value_or(QString()), item.calendar() ? item.calendar()->title() : QString(), reason };
}

// What the store can tell without its back end: nothing, when the save may go on.
std::optional<StoreError> reasonNotToSave(const CalTask &task, const MergedCalendars &merged, const Entry *calendar)
{
    if (!task.calendar()) {
        return refusal(
            StoreError::Code::Invalid, task, QCoreApplication::translate("Vantle", "No calendar was chosen for it."));
    }
    if (!calendar) {
        return refusal(StoreError::Code::NotFound, task,
            QCoreApplication::translate("Vantle", "The calendar does not exist any more."));
    }
    if (!calendar->shown->isEditable()) {
        return refusal(
            StoreError::Code::ReadOnly, task, QCoreApplication::translate("Vantle", "The calendar cannot be changed."));
    }
    if (!calendar->shown->holds(CalItemKind::Task)) {
        return refusal(
            StoreError::Code::Invalid, task, QCoreApplication::translate("Vantle", "The calendar cannot hold to-dos."));
    }
    const CalCalendarPtr source = task.asRead() ? task.asRead()->calendar() : nullptr;
    if (source && !merged.ofBackend(calendar->backend, source->uid())) {
        return refusal(StoreError::Code::Invalid, task,
            QCoreApplication::translate("Vantle", "It cannot be moved into a calendar of another kind of storage."));
    }
    return std::nullopt;
}

} // namespace

class CalCalendarStore::Private
{
public:
    explicit Private(std::vector<std::unique_ptr<CalendarStoreBackend>> ownBackends)
        : backends(std::move(ownBackends))
    {
    }

    // Made anew only when a back end answers with other calendars.
    std::shared_ptr<const MergedCalendars> merged();
    bool isComplete() const
    {
        return std::ranges::all_of(backends, [](const auto &backend) { return backend->isComplete(); });
    }
    void takeIn(const CalBackendChange &change, const CalendarStoreBackend &backend);
    QSet<QString> shownUids(const CalBackendChange &change, const CalendarStoreBackend &backend);

    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    NotificationMerger merger;
    bool completionIsAnnounced = false;
    std::vector<BackendCalendars> mergedFrom;
    std::shared_ptr<const MergedCalendars> lastMerged;
};

std::shared_ptr<const MergedCalendars> CalCalendarStore::Private::merged()
{
    std::vector<BackendCalendars> current;
    for (const auto &backend : backends)
        current.push_back({ backend->calendars(), backend->hasDeclaredDefault() });
    if (!lastMerged || current != mergedFrom) {
        lastMerged = std::make_shared<const MergedCalendars>(backends);
        mergedFrom = std::move(current);
    }
    return lastMerged;
}

void CalCalendarStore::Private::takeIn(const CalBackendChange &change, const CalendarStoreBackend &backend)
{
    completionIsAnnounced = completionIsAnnounced && isComplete();

    const QSet<QString> uids = shownUids(change, backend);
    const bool isOurs = change.author == CalBackendChange::Author::Ourselves;
    if (change.calendars)
        merger.add(isOurs ? CalCalendarsChangedNotification : CalCalendarsChangedExternallyNotification, uids);
    if (change.events)
        merger.add(isOurs ? CalEventsChangedNotification : CalEventsChangedExternallyNotification, uids);
    if (change.tasks)
        merger.add(isOurs ? CalTasksChangedNotification : CalTasksChangedExternallyNotification, uids);
}

QSet<QString> CalCalendarStore::Private::shownUids(const CalBackendChange &change, const CalendarStoreBackend &backend)
{
    const auto calendars = merged();
    QSet<QString> uids;
    for (const QString &ownUid : change.calendarUids) {
        // A calendar that is gone keeps the name under which it was probably known.
        const Entry *const entry = calendars->ofBackend(&backend, ownUid);
        uids.insert(entry ? entry->shown->uid() : ownUid);
    }
    return uids;
}

CalCalendarStore::CalCalendarStore(std::vector<std::unique_ptr<CalendarStoreBackend>> backends, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(std::move(backends)))
{
    connect(&d->merger, &NotificationMerger::notificationPosted, this, &CalCalendarStore::notificationPosted);
    for (const auto &owned : d->backends) {
        CalendarStoreBackend *const backend = owned.get();
        connect(backend, &CalendarStoreBackend::changed, this,
            [this, backend](const CalBackendChange &change) { d->takeIn(change, *backend); });
        connect(backend, &CalendarStoreBackend::loaded, this, [this] {
            if (!d->completionIsAnnounced && isComplete()) {
                d->completionIsAnnounced = true;
                Q_EMIT loaded();
            }
        });
    }
    d->completionIsAnnounced = isComplete();
}

CalCalendarStore::~CalCalendarStore() = default;

CalCalendarList CalCalendarStore::calendars() const
{
    const auto merged = d->merged();
    CalCalendarList calendars;
    for (const Entry &entry : merged->entries())
        calendars.append(entry.shown);
    return calendars;
}

CalCalendarPtr CalCalendarStore::calendarWithUID(const QString &uid) const
{
    const auto merged = d->merged();
    const Entry *const entry = merged->shownAs(uid);
    return entry ? entry->shown : nullptr;
}

bool CalCalendarStore::isComplete() const
{
    return d->isComplete();
}

CalPredicate CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
    const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars)
{
    return { CalPredicate::Subject::EventsInRange, calendars, start, end };
}

CalPredicate CalCalendarStore::taskPredicateWithCalendars(const CalCalendarList &calendars)
{
    return { CalPredicate::Subject::AllTasks, calendars, {}, {} };
}

CalPredicate CalCalendarStore::taskPredicateWithTasksCompletedSince_calendars(
    const QDateTime &since, const CalCalendarList &calendars)
{
    return { CalPredicate::Subject::TasksCompletedSince, calendars, since, {} };
}

CalPredicate CalCalendarStore::taskPredicateWithUncompletedTasks(const CalCalendarList &calendars)
{
    return { CalPredicate::Subject::UncompletedTasks, calendars, {}, {} };
}

CalEventList CalCalendarStore::eventsWithPredicate(const CalPredicate &predicate) const
{
    if (predicate.subject != CalPredicate::Subject::EventsInRange)
        return {};

    using Place = decltype(placeOf(std::declval<const CalEvent &>()));
    std::vector<std::pair<Place, CalEventPtr>> keyed;
    const auto merged = d->merged();
    for (const auto &[backend, calendars] : questions(*merged, predicate.calendars)) {
        for (const CalEventPtr &event : backend->events(predicate.start, predicate.end, calendars)) {
            if (adoptRecord(*event, backend, *merged))
                keyed.emplace_back(placeOf(*event), event);
        }
    }
    return sortedByKey(std::move(keyed));
}

CalTaskList CalCalendarStore::tasksWithPredicate(const CalPredicate &predicate) const
{
    if (predicate.subject == CalPredicate::Subject::EventsInRange)
        return {};

    std::vector<std::pair<std::tuple<int, QString>, CalTaskPtr>> keyed;
    const auto merged = d->merged();
    for (const auto &[backend, calendars] : questions(*merged, predicate.calendars)) {
        for (const CalTaskPtr &task : backend->tasks(taskState(predicate.subject), predicate.start, calendars)) {
            if (const Entry *const entry = adoptRecord(*task, backend, *merged))
                keyed.emplace_back(std::tuple(entry->rank, task->uid()), task);
        }
    }
    return sortedByKey(std::move(keyed));
}

bool CalCalendarStore::saveTask_error(const CalTaskPtr &task, StoreError *error)
{
    const auto merged = d->merged();
    const Entry *const calendar = task->calendar() ? merged->shownAs(task->calendar()->uid()) : nullptr;
    std::optional<StoreError> failure = reasonNotToSave(*task, *merged, calendar);
    if (!failure) {
        // The back end knows the calendar by its own uid only.
        const CalCalendarPtr shown = task->calendar();
        const bool isRenamed = calendar->own != calendar->shown;
        if (isRenamed)
            task->setCalendar(calendar->own);
        const Result<void, StoreError> result = calendar->backend->saveTask(*task);
        if (isRenamed)
            task->setCalendar(shown);

        if (result) {
            task->setUid(merged->uidOfItem(task->origin(), *calendar));
            return true;
        }
        failure = result.error();
    }

    if (error)
        *error = *failure;
    return false;
}
