// SPDX-License-Identifier: MIT
//
// A source is opened, listened to, given up and opened again.
#include "SourceClient.h"

#include <QPointer>

#include <algorithm>

namespace Service
{

namespace
{

// A calendar of 50,000 events comes in a few seconds.
constexpr std::chrono::seconds patienceWithAnAttempt { 20 };
constexpr std::chrono::milliseconds shortestPause { 100 };
constexpr std::chrono::milliseconds longestPause { 4000 };
// Of every client that was just opened it is said that it cannot be changed, until the library has caught up.
constexpr std::chrono::milliseconds timeToSettle { 2000 };
// The library waits for nobody when it is told so.
constexpr auto noWaitForConnection = static_cast<guint32>(-1);

// Everything, whatever the service's index by time knows.
constexpr const char *allItems = "#t";

// An attempt to open a source: what one thread of the library needs and brings back.
struct Opening {
    QPointer<SourceClient> asker;
    quint64 attempt = 0;
    Owned<ESource> source;
    bool holdsEvents = false;
    Owned<ECalClient> client;
    Owned<ECalClientView> contents;
    Owned<ECalClientView> changes;
};

void deleteOpening(gpointer opening)
{
    delete static_cast<Opening *>(opening);
}

Owned<ECalClientView> newView(ECalClient *client, GCancellable *cancellable, GError **error)
{
    ECalClientView *view = nullptr;
    e_cal_client_get_view_sync(client, allItems, &view, cancellable, error);
    return Owned<ECalClientView>(view);
}

// On a thread of the library, which may wait.
void openOnThread(GTask *task, gpointer /*source*/, gpointer data, GCancellable *cancellable)
{
    auto *const opening = static_cast<Opening *>(data);
    GError *error = nullptr;
    const auto kind = opening->holdsEvents ? E_CAL_CLIENT_SOURCE_TYPE_EVENTS : E_CAL_CLIENT_SOURCE_TYPE_TASKS;
    opening->client.reset(reinterpret_cast<ECalClient *>(
        e_cal_client_connect_sync(opening->source.get(), kind, noWaitForConnection, cancellable, &error)));
    if (opening->client)
        opening->contents = newView(opening->client.get(), cancellable, &error);
    if (opening->contents)
        opening->changes = newView(opening->client.get(), cancellable, &error);
    if (opening->changes)
        e_cal_client_view_set_flags(opening->changes.get(), E_CAL_CLIENT_VIEW_FLAGS_NONE, &error);
    if (error)
        g_task_return_error(task, error);
    else
        g_task_return_boolean(task, TRUE);
}

// The views of a source, in the order in which they are started.
struct Views {
    Owned<ECalClientView> changes;
    Owned<ECalClientView> contents;
};

void deleteViews(gpointer views)
{
    delete static_cast<Views *>(views);
}

void startOnThread(GTask *task, gpointer /*source*/, gpointer data, GCancellable * /*cancellable*/)
{
    const auto *const views = static_cast<Views *>(data);
    GError *error = nullptr;
    e_cal_client_view_start(views->changes.get(), &error);
    if (!error)
        e_cal_client_view_start(views->contents.get(), &error);
    if (error)
        g_task_return_error(task, error);
    else
        g_task_return_boolean(task, TRUE);
}

} // namespace

void SourceClient::open()
{
    close();
    m_cancellable.reset(g_cancellable_new());
    m_patience.start(patienceWithAnAttempt);

    auto *const opening = new Opening;
    opening->asker = this;
    opening->attempt = m_attempt;
    opening->source = referenced(m_source.get());
    opening->holdsEvents = m_description.holdsEvents;
    const Owned<GTask> task(g_task_new(
        nullptr, m_cancellable.get(),
        [](GObject * /*nothing*/, GAsyncResult *answer, gpointer /*data*/) {
            const auto *const opened = static_cast<Opening *>(g_task_get_task_data(G_TASK(answer)));
            if (opened->asker && opened->asker->m_attempt == opened->attempt)
                opened->asker->takeClient(answer);
        },
        nullptr));
    g_task_set_task_data(task.get(), opening, deleteOpening);
    g_task_run_in_thread(task.get(), openOnThread);
}

void SourceClient::takeClient(GAsyncResult *answer)
{
    Failure failure;
    if (!g_task_propagate_boolean(G_TASK(answer), failure)) {
        openLater();
        return;
    }
    auto *const opening = static_cast<Opening *>(g_task_get_task_data(G_TASK(answer)));
    m_client = std::move(opening->client);
    m_contents = std::move(opening->contents);
    m_changes = std::move(opening->changes);
    m_busName = QString::fromUtf8(takenText(e_client_dup_bus_name(E_CLIENT(m_client.get()))));
    m_settling.start(timeToSettle);
    listen();
    startViews();
}

void SourceClient::listen()
{
    g_signal_connect_swapped(
        m_client.get(), "backend-died", G_CALLBACK(+[](SourceClient *client) { client->openLater(); }), this);
    for (const char *const property : { "notify::readonly", "notify::online" }) {
        g_signal_connect_swapped(
            m_client.get(), property, G_CALLBACK(+[](SourceClient *client) { client->readState(); }), this);
    }
    g_signal_connect_swapped(m_contents.get(), "objects-added",
        G_CALLBACK(+[](SourceClient *client, const GSList *components) { client->takeContents(components); }), this);
    g_signal_connect_swapped(
        m_contents.get(), "complete", G_CALLBACK(+[](SourceClient *client) { client->contentsAreComplete(); }), this);
    for (const char *const name : { "objects-added", "objects-modified" }) {
        g_signal_connect_swapped(m_changes.get(), name,
            G_CALLBACK(+[](SourceClient *client, const GSList *components) { client->changed(components); }), this);
    }
    for (ECalClientView *const view : { m_contents.get(), m_changes.get() }) {
        g_signal_connect_swapped(view, "objects-removed",
            G_CALLBACK(+[](SourceClient *client, const GSList *ids) { client->removed(ids); }), this);
    }
}

// The calls to start them wait for their answers, so they are made on a thread of the library, too.
void SourceClient::startViews()
{
    m_seen.clear();
    m_series.clear();
    const Owned<GTask> task(g_task_new(
        m_changes.get(), m_cancellable.get(),
        [](GObject * /*changes*/, GAsyncResult *answer, gpointer asker) {
            const std::unique_ptr<QPointer<SourceClient>> client(static_cast<QPointer<SourceClient> *>(asker));
            Failure failure;
            const bool isStarted = g_task_propagate_boolean(G_TASK(answer), failure);
            const bool isMeant = *client && (*client)->m_changes.get() == g_task_get_source_object(G_TASK(answer));
            if (!isStarted && isMeant)
                (*client)->openLater();
        },
        new QPointer<SourceClient>(this)));
    g_task_set_task_data(
        task.get(), new Views { referenced(m_changes.get()), referenced(m_contents.get()) }, deleteViews);
    g_task_run_in_thread(task.get(), startOnThread);
}

void SourceClient::close()
{
    ++m_attempt;
    m_patience.stop();
    m_again.stop();
    m_nextFetch.stop();
    m_endOfOldNews.stop();
    m_settling.stop();
    m_isOpen = false;
    m_awaitsItems = false;
    m_isUnanswering = false;
    m_fetching = 0;
    m_busName.clear();
    if (m_cancellable)
        g_cancellable_cancel(m_cancellable.get());
    dropView(m_contents);
    dropView(m_changes);
    if (m_client)
        g_signal_handlers_disconnect_by_data(m_client.get(), this);
    m_client.reset();
    m_series.clear();
    m_toldZones.clear();
}

// A client that has lost its service is of no use any more; the next one starts the service again.
void SourceClient::openLater()
{
    close();
    const auto pause = std::min(longestPause, shortestPause * (1 << std::min(m_failures, 6)));
    ++m_failures;
    m_again.start(pause);
    // Whoever waits for all that there is has waited long enough.
    m_isComplete = m_isComplete || m_failures > 2;
    tellState();
}

void SourceClient::dropView(Owned<ECalClientView> &view)
{
    if (view)
        g_signal_handlers_disconnect_by_data(view.get(), this);
    view.reset();
}

} // namespace Service
