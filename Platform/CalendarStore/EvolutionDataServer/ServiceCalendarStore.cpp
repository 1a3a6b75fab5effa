// SPDX-License-Identifier: MIT
#include "GLibTypes.h"

#include "ServiceCalendarStore.h"

#include "GLibPump.h"
#include "ServicePulse.h"
#include "ServiceSaver.h"
#include "SourceClient.h"
#include "SourceList.h"

#include <Answers.h>
#include <ChangeAnnouncer.h>
#include <Clock.h>
#include <ProblemLog.h>

#include <QSet>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <utility>

#include <malloc.h>

using namespace Qt::StringLiterals;
using Service::CalendarDescription;
using Service::SourceClient;
using Service::SourceDescription;

namespace
{

// A pleasant colour for sources without one: the service's own first choice.
const QColor colorOfNone(0x62, 0xa0, 0xea);

// After items have come, until what brought them is gone.
constexpr std::chrono::seconds timeToLetGo { 2 };

// While items come, the threads of the library take more than what is kept of them. It is free afterwards, but stays
// with the process until it is asked for. That takes longer than a frame of the window, so a thread of the library does
// it.
void letGoOfFreeMemory()
{
    const Service::Owned<GTask> task(g_task_new(nullptr, nullptr, nullptr, nullptr));
    g_task_run_in_thread(
        task.get(), [](GTask *trimming, gpointer /*source*/, gpointer /*data*/, GCancellable * /*cancellable*/) {
            g_task_return_boolean(trimming, ::malloc_trim(0) != 0 ? TRUE : FALSE);
        });
}

} // namespace

class ServiceCalendarStore::Private final : public QObject
{
public:
    using Key = std::pair<QString, CalItemKind>; // a source and what is wanted of it

    Private(ServiceCalendarStore *store, const Clock &clock);

    void takeSources();
    void updateCalendars();
    void updateSilence();
    void updateCompleteness();
    void mendOnce(SourceClient &client);
    void note(const SourceClient &client, CalBackendChange::Author author);
    CalCalendarPtr recordOf(const CalendarDescription &description) const;
    std::vector<SourceClient *> clientsOf(const CalendarDescription &description) const;

    SourceClient *client(const QString &source, CalItemKind kind) const;
    // The source of a calendar that holds items of that kind.
    SourceClient *clientOf(const QString &calendar, CalItemKind kind) const;
    QString calendarOf(const SourceClient &client) const;

    ServiceCalendarStore *q;
    Service::GLibPump pump;
    ICalendar::ZoneRegistry zones;
    Service::SourceList list;
    std::map<Key, std::unique_ptr<SourceClient>> clients;
    std::vector<CalendarDescription> descriptions;
    CalCalendarList calendars;
    Items::ChangeAnnouncer announcer;
    mutable Items::ProblemLog log;
    Service::ServicePulse pulse;
    Service::ServiceSaver saver;
    QStringList silent; // uids of calendars
    bool isUnreached = false;
    QTimer letGo;
    QSet<QString> mended; // uids of sources that were looked at for saves that were not ended, since they answer
    bool isComplete = false;
};

ServiceCalendarStore::Private::Private(ServiceCalendarStore *store, const Clock &clock)
    : q(store)
    , pulse([this] {
        QSet<QString> names;
        for (const auto &[key, client] : clients)
            names.insert(client->busName());
        names.remove({});
        return names;
    })
    , saver([this](const QString &calendar, CalItemKind kind) { return clientOf(calendar, kind); },
          [this](const QString &source, CalItemKind kind) { return client(source, kind); }, zones, clock)
{
    connect(&announcer, &Items::ChangeAnnouncer::changed, q, &ServiceCalendarStore::changed);
    connect(&list, &Service::SourceList::changed, this, &Private::takeSources);
    const auto heartbeat = [this](bool isUnanswering) {
        return [this, isUnanswering](const QString &name) {
            for (const auto &[key, client] : clients) {
                if (client->busName() == name)
                    client->setUnanswering(isUnanswering);
            }
        };
    };
    connect(&pulse, &Service::ServicePulse::answered, this, heartbeat(false));
    connect(&pulse, &Service::ServicePulse::unanswered, this, heartbeat(true));
    letGo.setSingleShot(true);
    connect(&letGo, &QTimer::timeout, this, letGoOfFreeMemory);
    // The calendars come within a moment, and are shown together.
    announcer.gather();
    list.open();
}

void ServiceCalendarStore::Private::takeSources()
{
    std::map<Key, std::unique_ptr<SourceClient>> kept;
    for (const SourceDescription &description : list.sources()) {
        const Key key(description.uid, description.holdsEvents ? CalItemKind::Event : CalItemKind::Task);
        if (const auto known = clients.find(key); known != clients.end()) {
            known->second->setDescription(description);
            kept.emplace(key, std::move(known->second));
            continue;
        }
        Service::Owned<ESource> source = list.source(description.uid);
        if (!source)
            continue;
        auto opened = std::make_unique<SourceClient>(description, std::move(source), zones);
        SourceClient *const client = opened.get();
        connect(client, &SourceClient::itemsChanged, this,
            [this, client](CalBackendChange::Author author) { note(*client, author); });
        connect(
            client, &SourceClient::itemsChanged, client,
            [this, client] {
                if (saver.awaitsArrivals())
                    saver.takeBackLateArrivals(*client);
            },
            Qt::QueuedConnection);
        connect(client, &SourceClient::stateChanged, this, [this, client] {
            updateCalendars();
            updateSilence();
            mendOnce(*client);
            updateCompleteness();
            letGo.start(timeToLetGo);
        });
        client->open();
        kept.emplace(key, std::move(opened));
    }
    clients = std::move(kept);
    descriptions = pairedCalendars(list.sources());
    updateCalendars();
    updateSilence();
    updateCompleteness();
}

std::vector<SourceClient *> ServiceCalendarStore::Private::clientsOf(const CalendarDescription &description) const
{
    std::vector<SourceClient *> found;
    for (SourceClient *const each :
        { client(description.events, CalItemKind::Event), client(description.tasks, CalItemKind::Task) }) {
        if (each)
            found.push_back(each);
    }
    return found;
}

CalCalendarPtr ServiceCalendarStore::Private::recordOf(const CalendarDescription &description) const
{
    const std::vector<SourceClient *> halves = clientsOf(description);
    CalCalendar::Values values;
    values.uid = description.uid();
    values.title = description.title;
    values.color = description.color.isValid() ? description.color : colorOfNone;
    values.isEditable = std::ranges::any_of(halves, [](const auto *half) { return !half->isReadOnly(); });
    values.holdsEvents = !description.events.isEmpty();
    values.holdsTasks = !description.tasks.isEmpty();
    for (const SourceClient *const half : halves) {
        if (half->availability() != CalCalendar::Availability::Available)
            values.availability = half->availability();
    }
    return std::make_shared<CalCalendar>(std::move(values));
}

// Calendars come when it is known of them whether they can be changed: their order depends on it.
void ServiceCalendarStore::Private::updateCalendars()
{
    const auto shows = [](const CalCalendarPtr &one, const CalCalendarPtr &other) {
        return one->uid() == other->uid() && one->title() == other->title() && one->color() == other->color()
            && one->isEditable() == other->isEditable() && one->availability() == other->availability()
            && one->holds(CalItemKind::Event) == other->holds(CalItemKind::Event)
            && one->holds(CalItemKind::Task) == other->holds(CalItemKind::Task);
    };
    CalCalendarList current;
    CalBackendChange change;
    for (const CalendarDescription &description : descriptions) {
        const auto halves = clientsOf(description);
        const auto known
            = std::ranges::find(calendars, description.uid(), [](const auto &each) { return each->uid(); });
        const bool isRead = std::ranges::all_of(halves, [](const auto *half) { return half->isComplete(); });
        if (halves.empty() || (!isRead && known == calendars.end()))
            continue;
        CalCalendarPtr record = recordOf(description);
        if (known != calendars.end() && shows(*known, record)) {
            current << *known;
            continue;
        }
        change.calendarUids.insert(record->uid());
        // What it holds is shown from now on.
        change.events = change.events || known == calendars.end();
        change.tasks = change.tasks || known == calendars.end();
        current << std::move(record);
    }
    if (current == calendars)
        return;
    for (const CalCalendarPtr &before : calendars) {
        if (std::ranges::none_of(current, [&](const auto &each) { return each->uid() == before->uid(); })) {
            change.calendarUids.insert(before->uid());
            change.events = change.tasks = true;
        }
    }
    calendars = std::move(current);
    change.calendars = true;
    announcer.add(change);
}

void ServiceCalendarStore::Private::updateSilence()
{
    QStringList uids;
    QStringList empty;
    for (const CalendarDescription &description : descriptions) {
        std::vector<SourceClient *> halves = clientsOf(description);
        std::erase_if(halves, [](const auto *half) { return !half->isComplete() || !half->isSilent(); });
        if (std::ranges::any_of(halves, [](const auto *half) { return !half->isEmpty(); }))
            uids << description.uid();
        else if (!halves.empty())
            empty << description.uid();
    }
    // Of a calendar without items nothing can be out of date; but that the service is silent is told in any case.
    if (uids.isEmpty())
        uids = std::move(empty);
    if (uids == silent && list.isSilent() == isUnreached)
        return;
    silent = std::move(uids);
    isUnreached = list.isSilent();
    Q_EMIT q->silenceDidChange();
}

void ServiceCalendarStore::Private::updateCompleteness()
{
    const bool now
        = list.isKnown() && std::ranges::all_of(clients, [](const auto &each) { return each.second->isComplete(); });
    if (std::exchange(isComplete, now) || !now)
        return;
    announcer.announceSoon();
    QMetaObject::invokeMethod(q, &ServiceCalendarStore::loaded, Qt::QueuedConnection);
}

// Before anything is written here: what was left by another run of the program, or when the service went.
void ServiceCalendarStore::Private::mendOnce(SourceClient &client)
{
    const QString uid = client.description().uid;
    if (!client.client() || client.isSilent()) {
        // What was on its way is looked at when it is back.
        mended.remove(uid);
        return;
    }
    if (mended.contains(uid))
        return;
    mended.insert(uid);
    saver.mendLeftOvers(client);
}

void ServiceCalendarStore::Private::note(const SourceClient &client, CalBackendChange::Author author)
{
    CalBackendChange change;
    change.author = author;
    change.events = client.description().holdsEvents;
    change.tasks = !change.events;
    change.calendarUids = { calendarOf(client) };
    announcer.add(change);
}

SourceClient *ServiceCalendarStore::Private::client(const QString &source, CalItemKind kind) const
{
    const auto found = clients.find({ source, kind });
    return found == clients.end() ? nullptr : found->second.get();
}

SourceClient *ServiceCalendarStore::Private::clientOf(const QString &calendar, CalItemKind kind) const
{
    const auto found = std::ranges::find(descriptions, calendar, &CalendarDescription::uid);
    if (found == descriptions.end())
        return nullptr;
    return client(kind == CalItemKind::Event ? found->events : found->tasks, kind);
}

QString ServiceCalendarStore::Private::calendarOf(const SourceClient &client) const
{
    const auto &own = client.description();
    const auto found = std::ranges::find(
        descriptions, own.uid, own.holdsEvents ? &CalendarDescription::events : &CalendarDescription::tasks);
    return found == descriptions.end() ? own.uid : found->uid();
}

ServiceCalendarStore::ServiceCalendarStore(Clock &clock, QObject *parent)
    : CalendarStoreBackend(parent)
    , d(std::make_unique<Private>(this, clock))
{
}

ServiceCalendarStore::~ServiceCalendarStore() = default;

CalCalendarList ServiceCalendarStore::calendars() const
{
    return d->calendars;
}

bool ServiceCalendarStore::hasDeclaredDefault() const
{
    return !d->calendars.isEmpty() && !d->descriptions.empty() && d->descriptions.front().isDefault
        && d->descriptions.front().uid() == d->calendars.first()->uid();
}

bool ServiceCalendarStore::isComplete() const
{
    return d->isComplete;
}

QStringList ServiceCalendarStore::silentCalendars() const
{
    return d->silent;
}

bool ServiceCalendarStore::isUnreached() const
{
    return d->isUnreached;
}

void ServiceCalendarStore::refresh()
{
    for (const auto &[key, client] : d->clients)
        client->refresh();
}

QString ServiceCalendarStore::desktopSourceUid(const QString &calendarUid, CalItemKind kind) const
{
    const auto found = std::ranges::find(d->descriptions, calendarUid, &CalendarDescription::uid);
    if (found == d->descriptions.end())
        return {};
    return kind == CalItemKind::Event ? found->events : found->tasks;
}

bool ServiceCalendarStore::holdsUid(const QString &calendarUid, const QString &plainUid) const
{
    return std::ranges::any_of(std::array { CalItemKind::Event, CalItemKind::Task }, [&](CalItemKind kind) {
        const SourceClient *const client = d->clientOf(calendarUid, kind);
        return client && client->items().holdsUid(plainUid);
    });
}

CalEventList ServiceCalendarStore::events(
    const QDateTime &start, const QDateTime &end, const CalCalendarList &calendars) const
{
    const Items::EventQuestion question(start, end);
    CalEventList events;
    for (const CalCalendarPtr &calendar : calendars) {
        const SourceClient *const client = d->clientOf(calendar->uid(), CalItemKind::Event);
        if (!client)
            continue;
        events += Items::eventsOf(client->items(), calendar, question, [&](const Items::GroupRef &series) {
            d->log.note(client->description().name, 0, u"repeats too often: %1"_s.arg(series.set->name()));
        });
    }
    return events;
}

CalTaskList ServiceCalendarStore::tasks(TaskState state, const QDateTime &since, const CalCalendarList &calendars) const
{
    CalTaskList tasks;
    for (const CalCalendarPtr &calendar : calendars) {
        if (const SourceClient *const client = d->clientOf(calendar->uid(), CalItemKind::Task))
            tasks += Items::tasksOf(client->items(), calendar, state, since);
    }
    return tasks;
}

Result<void, StoreError> ServiceCalendarStore::saveEvent(CalEvent &event, CalSpan span)
{
    return d->saver.save(event, span);
}

Result<void, StoreError> ServiceCalendarStore::saveTask(CalTask &task)
{
    return d->saver.save(task);
}

Result<std::unique_ptr<CalRemoval>, StoreError> ServiceCalendarStore::removeEvent(const CalEvent &event, CalSpan span)
{
    return d->saver.remove(event, span);
}

Result<std::unique_ptr<CalRemoval>, StoreError> ServiceCalendarStore::removeTask(const CalTask &task)
{
    return d->saver.remove(task);
}

Result<std::unique_ptr<CalDeparture>, StoreError> ServiceCalendarStore::sendEvent(CalEvent &event, CalSpan span)
{
    return d->saver.send(event, span);
}

Result<std::unique_ptr<CalDeparture>, StoreError> ServiceCalendarStore::sendTask(CalTask &task)
{
    return d->saver.send(task);
}

Result<void, StoreError> ServiceCalendarStore::takeInEvent(CalEvent &event, const QByteArray &text)
{
    return d->saver.takeIn(event, text);
}

Result<void, StoreError> ServiceCalendarStore::takeInTask(CalTask &task, const QByteArray &text)
{
    return d->saver.takeIn(task, text);
}
