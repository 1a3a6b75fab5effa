// SPDX-License-Identifier: MIT
#include "CalCalendarStore.h"

#include "CalendarStoreBackend.h"
#include "ItemTransfer.h"
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
    // A handful of calendars; and those of the last answer are nearly always asked about.
    const auto isAsked = [&](const CalCalendarPtr &shown) {
        return asked.contains(shown) || std::ranges::any_of(asked, [&](const CalCalendarPtr &calendar) {
            return calendar && calendar->uid() == shown->uid();
        });
    };

    std::vector<BackendQuestion> questions;
    for (const Entry &entry : merged.entries()) {
        if (!isAsked(entry.shown))
            continue;
        auto question = std::ranges::find(questions, entry.backend, &BackendQuestion::backend);
        if (question == questions.end())
            question = questions.insert(question, { entry.backend, {} });
        question->calendars.append(entry.own);
    }
    return questions;
}

void noteHolder(CalCalendarItem &record, const CalendarStoreBackend *backend)
{
    CalItemOrigin origin = record.origin();
    origin.backend = backend;
    record.setOrigin(origin);
}

// Null when the back end answers with something that it does not list.
const Entry *adoptRecord(CalCalendarItem &record, const CalendarStoreBackend *backend, const MergedCalendars &merged)
{
    const Entry *const entry = record.calendar() ? merged.ofBackend(backend, record.calendar()) : nullptr;
    if (!entry)
        return nullptr;
    record.setCalendar(entry->shown);
    noteHolder(record, backend);
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

template <typename Record> StoreError refusal(StoreError::Code code, const Record &item, const QString &reason)
{
    const std::optional<QString> title = item.asRead() ? item.asRead()->title() : item.title();
    return { code, title.value_or(QString()), item.calendar() ? item.calendar()->title() : QString(), reason };
}

QString calendarVanished()
{
    return QCoreApplication::translate("Vantle", "The calendar does not exist any more.");
}

QString calendarIsReadOnly()
{
    return QCoreApplication::translate("Vantle", "The calendar cannot be changed.");
}

QString calendarOfOtherKind(CalItemKind kind)
{
    return kind == CalItemKind::Event ? QCoreApplication::translate("Vantle", "The calendar cannot hold events.")
                                      : QCoreApplication::translate("Vantle", "The calendar cannot hold to-dos.");
}

// The calendar that holds the stored item of a record; null when it is not stored, or its calendar is gone.
template <typename Record> const Entry *sourceOf(const Record &item, const MergedCalendars &merged)
{
    // The values as read are the back end's own, and so is the uid of their calendar.
    const CalCalendarPtr source = item.asRead() ? item.asRead()->calendar() : nullptr;
    return source && item.origin().isStored() ? merged.ofBackend(item.origin().backend, source->uid()) : nullptr;
}

// What the store can tell without its back end: nothing, when the save may go on.
template <typename Record>
std::optional<StoreError> reasonNotToSave(const Record &item, const MergedCalendars &merged, const Entry *calendar)
{
    using Code = StoreError::Code;

    if (!item.calendar())
        return refusal(Code::Invalid, item, QCoreApplication::translate("Vantle", "No calendar was chosen for it."));
    if (!calendar)
        return refusal(Code::NotFound, item, calendarVanished());
    if (!calendar->shown->isEditable())
        return refusal(Code::ReadOnly, item, calendarIsReadOnly());
    if (!calendar->shown->holds(item.kind()))
        return refusal(Code::Invalid, item, calendarOfOtherKind(item.kind()));
    if (!item.origin().isStored() || !item.asRead())
        return std::nullopt;
    const Entry *const source = sourceOf(item, merged);
    if (!source)
        return refusal(Code::NotFound, item, calendarVanished());
    if (!source->shown->isEditable()) {
        return refusal(Code::ReadOnly, item,
            QCoreApplication::translate("Vantle", "It cannot be moved out of a calendar that cannot be changed."));
    }
    return std::nullopt;
}

// As for a save. `source` is the calendar that holds the item, null when it is not known.
template <typename Record> std::optional<StoreError> reasonNotToRemove(const Record &item, const Entry *source)
{
    using Code = StoreError::Code;

    if (!item.origin().isStored() || !item.asRead())
        return refusal(Code::NotFound, item, QCoreApplication::translate("Vantle", "It has never been saved."));
    if (!source)
        return refusal(Code::NotFound, item, calendarVanished());
    if (!source->shown->isEditable())
        return refusal(Code::ReadOnly, item, calendarIsReadOnly());
    return std::nullopt;
}

// The back end knows the calendar by its own uid only.
template <typename Record, typename Write>
Result<void, StoreError> writeInOwnTerms(Record &item, const Entry &calendar, const Write &write)
{
    const CalCalendarPtr shown = item.calendar();
    const bool isRenamed = calendar.own != calendar.shown;
    if (isRenamed)
        item.setCalendar(calendar.own);
    Result<void, StoreError> result = write(*calendar.backend, item);
    if (isRenamed)
        item.setCalendar(shown);
    return result;
}

// `error` may be null.
bool succeeded(const Result<void, StoreError> &result, StoreError *error)
{
    if (!result && error)
        *error = result.error();
    return result.isOk();
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

    // `write` and `remove` call the back end that they are given, with a record in the back end's own terms;
    // `transfer` saves into a calendar of another back end.
    template <typename Record, typename Write, typename Transfer>
    Result<void, StoreError> save(Record &item, Write write, Transfer transfer);
    template <typename Record, typename Remove> Result<void, StoreError> remove(const Record &item, Remove remove);

    std::vector<std::unique_ptr<CalendarStoreBackend>> backends; // outlive the removal
    NotificationMerger merger;
    std::unique_ptr<CalRemoval> lastRemoval;
    QString lastRemovedTitle;
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

template <typename Record, typename Write, typename Transfer>
Result<void, StoreError> CalCalendarStore::Private::save(Record &item, Write write, Transfer transfer)
{
    const auto known = merged();
    const Entry *const calendar = item.calendar() ? known->shownAs(item.calendar()->uid()) : nullptr;
    if (const auto reason = reasonNotToSave(item, *known, calendar))
        return *reason;

    const Entry *const source = sourceOf(item, *known);
    const Entry *holder = calendar;
    if (source && source->backend != calendar->backend) {
        const auto place = transfer(item, *source, *calendar);
        if (!place)
            return place.error();
        holder = place.value() == ItemTransfer::Place::Source ? source : calendar;
    } else if (auto written = writeInOwnTerms(item, *calendar, write); !written) {
        return written;
    }
    noteHolder(item, holder->backend);
    // The first step of a move can leave the item where it was.
    const Entry *const place = sourceOf(item, *known);
    item.setUid(known->uidOfItem(item.origin(), place ? *place : *calendar));
    return {};
}

template <typename Record, typename Remove>
Result<void, StoreError> CalCalendarStore::Private::remove(const Record &item, Remove remove)
{
    const auto known = merged();
    const Entry *const source = sourceOf(item, *known);
    std::optional<StoreError> failure = reasonNotToRemove(item, source);
    if (!failure && source) {
        Result<std::unique_ptr<CalRemoval>, StoreError> result = remove(*source->backend, item);
        if (result) {
            lastRemoval = std::move(result).value();
            lastRemovedTitle = item.asRead()->title().value_or(QString());
            return {};
        }
        failure = result.error();
    }
    failure->action = StoreError::Action::Remove;
    return *failure;
}

CalCalendarStore::CalCalendarStore(std::vector<std::unique_ptr<CalendarStoreBackend>> backends, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(std::move(backends)))
{
    connect(&d->merger, &NotificationMerger::notificationPosted, this, &CalCalendarStore::notificationPosted);
    for (const auto &owned : d->backends)
        listenTo(*owned);
    d->completionIsAnnounced = isComplete();
}

void CalCalendarStore::listenTo(CalendarStoreBackend &backend)
{
    connect(&backend, &CalendarStoreBackend::changed, this,
        [this, &backend](const CalBackendChange &change) { d->takeIn(change, backend); });
    connect(&backend, &CalendarStoreBackend::loaded, this, [this] {
        if (!d->completionIsAnnounced && isComplete()) {
            d->completionIsAnnounced = true;
            Q_EMIT loaded();
        }
    });
    connect(&backend, &CalendarStoreBackend::silenceDidChange, this, &CalCalendarStore::silenceDidChange);
    connect(&backend, &CalendarStoreBackend::overwritten, this, &CalCalendarStore::savedChangeWasOverwritten);
}

CalCalendarStore::~CalCalendarStore() = default;

void CalCalendarStore::addBackend(std::unique_ptr<CalendarStoreBackend> backend)
{
    CalendarStoreBackend &added = *backend;
    d->backends.insert(d->backends.begin(), std::move(backend));
    listenTo(added);
    CalBackendChange change;
    change.calendars = change.events = change.tasks = true;
    for (const CalCalendarPtr &calendar : added.calendars())
        change.calendarUids.insert(calendar->uid());
    if (!change.calendarUids.isEmpty())
        d->takeIn(change, added);
    d->completionIsAnnounced = d->completionIsAnnounced && isComplete();
    if (!added.silentCalendars().isEmpty() || added.isUnreached())
        QMetaObject::invokeMethod(this, &CalCalendarStore::silenceDidChange, Qt::QueuedConnection);
}

void CalCalendarStore::refresh()
{
    for (const auto &backend : d->backends)
        backend->refresh();
}

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

QString CalCalendarStore::desktopSourceUid(const QString &calendarUid, CalItemKind kind) const
{
    const auto merged = d->merged();
    const MergedCalendars::Entry *calendar = merged->shownAs(calendarUid);
    return calendar ? calendar->backend->desktopSourceUid(calendar->own->uid(), kind) : QString();
}

bool CalCalendarStore::isComplete() const
{
    return d->isComplete();
}

CalCalendarList CalCalendarStore::silentCalendars() const
{
    const auto merged = d->merged();
    CalCalendarList silent;
    for (const Entry &entry : merged->entries()) {
        if (entry.backend->silentCalendars().contains(entry.own->uid()))
            silent.append(entry.shown);
    }
    return silent;
}

bool CalCalendarStore::hasUnreachedService() const
{
    return std::ranges::any_of(d->backends, [](const auto &backend) { return backend->isUnreached(); });
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
    return succeeded(d->save(
                         *task, [](CalendarStoreBackend &backend, CalTask &own) { return backend.saveTask(own); },
                         [](CalTask &stored, const Entry &source, const Entry &target) {
                             return ItemTransfer::save(stored, source, target);
                         }),
        error);
}

bool CalCalendarStore::saveEvent_span_error(const CalEventPtr &event, CalSpan span, StoreError *error)
{
    return succeeded(
        d->save(
            *event, [span](CalendarStoreBackend &backend, CalEvent &own) { return backend.saveEvent(own, span); },
            [span](CalEvent &stored, const Entry &source, const Entry &target) {
                return ItemTransfer::save(stored, span, source, target);
            }),
        error);
}

bool CalCalendarStore::removeEvent_span_error(const CalEventPtr &event, CalSpan span, StoreError *error)
{
    const bool isRemoved = succeeded(d->remove(*event,
                                         [span](CalendarStoreBackend &backend, const CalEvent &stored) {
                                             return backend.removeEvent(stored, span);
                                         }),
        error);
    if (isRemoved)
        Q_EMIT undoableRemovalDidChange();
    return isRemoved;
}

bool CalCalendarStore::removeTask_error(const CalTaskPtr &task, StoreError *error)
{
    const bool isRemoved = succeeded(
        d->remove(
            *task, [](CalendarStoreBackend &backend, const CalTask &stored) { return backend.removeTask(stored); }),
        error);
    if (isRemoved)
        Q_EMIT undoableRemovalDidChange();
    return isRemoved;
}

std::optional<QString> CalCalendarStore::undoableRemovalTitle() const
{
    return d->lastRemoval ? std::optional(d->lastRemovedTitle) : std::nullopt;
}

bool CalCalendarStore::undoRemoval_error(StoreError *error)
{
    if (!d->lastRemoval)
        return false;
    Result<void, StoreError> result = d->lastRemoval->takeBack();
    if (!result) {
        StoreError failure = result.error();
        failure.action = StoreError::Action::Restore;
        return succeeded(failure, error);
    }
    d->lastRemoval.reset();
    Q_EMIT undoableRemovalDidChange();
    return true;
}
