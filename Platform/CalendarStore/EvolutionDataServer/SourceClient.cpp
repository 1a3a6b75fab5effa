// SPDX-License-Identifier: MIT
#include "SourceClient.h"

#include <QPointer>

#include <algorithm>

namespace Service
{

using Author = CalBackendChange::Author;

namespace
{

// An account that was just opened connects in a second or two.
constexpr std::chrono::seconds graceOfConnecting { 5 };
constexpr int mostFetchesAtOnce = 16;
constexpr std::chrono::milliseconds pauseAfterFailedFetch { 500 };
// The service tells a view also of what happened shortly before it was started, one thing after the other.
constexpr std::chrono::milliseconds oldNews { 5000 };

QString uidOf(ICalComponent *component)
{
    return QString::fromUtf8(i_cal_component_get_uid(component));
}

} // namespace

// One question for the components of a uid.
class SourceClient::Fetch final
{
public:
    QPointer<SourceClient> asker;
    quint64 attempt = 0;
    QString uid;
    quint64 ownWrites = 0;
    Owned<ECalClient> client;
};

SourceClient::SourceClient(
    const SourceDescription &description, Owned<ESource> source, ICalendar::ZoneRegistry &zones, QObject *parent)
    : QObject(parent)
    , m_description(description)
    , m_source(std::move(source))
    , m_zones(zones)
{
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &SourceClient::openLater);
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &SourceClient::open);
    m_grace.setSingleShot(true);
    connect(&m_grace, &QTimer::timeout, this, &SourceClient::readState);
    m_nextFetch.setSingleShot(true);
    connect(&m_nextFetch, &QTimer::timeout, this, &SourceClient::fetchSuspects);
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, &SourceClient::readState);
    m_endOfOldNews.setSingleShot(true);
    connect(&m_endOfOldNews, &QTimer::timeout, this, [this] { dropView(m_contents); });
    g_signal_connect_swapped(m_source.get(), "notify::connection-status",
        G_CALLBACK(+[](SourceClient *client) { client->readState(); }), this);
}

SourceClient::~SourceClient()
{
    g_signal_handlers_disconnect_by_data(m_source.get(), this);
    close();
}

void SourceClient::takeContents(const GSList *components)
{
    for (const GSList *node = components; node; node = node->next) {
        auto *const component = static_cast<ICalComponent *>(node->data);
        const QString uid = uidOf(component);
        if (m_isOpen) {
            suspect(uid);
            continue;
        }
        const ComponentText text = componentText(component);
        // Each comes once. Another time it is told as it was a moment ago.
        const bool isOld = m_seen.contains(uid)
            && (!isOfSeries(component) || !m_series.contains(uid)
                || std::ranges::any_of(m_series.value(uid),
                    [&](const ComponentText &each) { return each.recurrenceId == text.recurrenceId; }));
        m_seen.insert(uid);
        if (isOld || m_ownWrites.contains(uid))
            suspect(uid);
        else if (isOfSeries(component))
            m_series[uid] << text;
        else
            take(uid, { text }, Author::Others);
    }
}

void SourceClient::changed(const GSList *components)
{
    for (const GSList *node = components; node; node = node->next) {
        auto *const component = static_cast<ICalComponent *>(node->data);
        const QString uid = uidOf(component);
        const bool wasOfSeries = m_sets.contains(uid) && m_sets.value(uid)->document().items.size() > 1;
        // What is still on its way may be older than this.
        if (!m_isOpen)
            m_seen.insert(uid);
        if (!m_isOpen || m_endOfOldNews.isActive() || isOfSeries(component) || wasOfSeries || m_ownWrites.contains(uid))
            suspect(uid);
        else
            take(uid, { componentText(component) }, Author::Others);
    }
}

void SourceClient::removed(const GSList *ids)
{
    for (const GSList *node = ids; node; node = node->next) {
        auto *const id = static_cast<ECalComponentId *>(node->data);
        // It may be there again already, and the rest of a series is.
        suspect(QString::fromUtf8(e_cal_component_id_get_uid(id)));
    }
}

void SourceClient::contentsAreComplete()
{
    if (m_isOpen)
        return;
    // What it brought may have been on its way out. A view tells the end only of what it has told of itself.
    m_endOfOldNews.start(oldNews);
    m_isOpen = true;
    for (auto series = m_series.cbegin(); series != m_series.cend(); ++series) {
        if (m_ownWrites.contains(series.key()))
            suspect(series.key());
        else
            take(series.key(), series.value(), Author::Others);
    }
    m_series = {};
    const QStringList known = m_sets.keys();
    for (const QString &uid : known) {
        if (!m_seen.contains(uid))
            drop(uid, Author::Others);
    }
    m_seen = {};
    // What came twice is asked for anew, and belongs to what there is.
    m_awaitsItems = true;
    if (m_suspects.isEmpty())
        itemsAreComplete();
    else
        m_nextFetch.start(0);
}

void SourceClient::itemsAreComplete()
{
    m_patience.stop();
    m_failures = 0;
    m_awaitsItems = false;
    m_isComplete = true;
    readState();
    tellState();
}

QByteArray SourceClient::textFor(const QList<ComponentText> &components) const
{
    QByteArrayList zones;
    for (const ComponentText &each : components) {
        for (const QByteArray &name : zonesOf(each.text)) {
            const QByteArray zone = m_zoneTexts.value(name);
            if (!zone.isEmpty() && !zones.contains(zone))
                zones << zone;
        }
    }
    std::ranges::sort(zones);
    return calendarText(components, zones);
}

// Definitions of zones come later than the items in them, and do not make another version of an item.
Items::ItemSetPtr SourceClient::setOf(const QString &uid, const QList<ComponentText> &components) const
{
    return std::make_shared<const Items::ItemSet>(uid, textFor(components), m_zones, versionOf(components));
}

void SourceClient::take(const QString &uid, const QList<ComponentText> &components, Author author)
{
    learnZones(uid, components);
    auto set = setOf(uid, components);
    const Items::ItemSetPtr known = m_sets.value(uid);
    const bool isInOtherZone = m_rezoned.remove(uid);
    if (known && known->version() == set->version() && !isInOtherZone)
        return;
    if (known)
        m_index.remove(*known);
    m_index.add(*set);
    m_sets.insert(uid, set);
    Q_EMIT itemsChanged(author);
}

void SourceClient::drop(const QString &uid, Author author)
{
    const Items::ItemSetPtr known = m_sets.take(uid);
    if (!known)
        return;
    m_index.remove(*known);
    Q_EMIT itemsChanged(author);
}

Items::ItemSetPtr SourceClient::takeOwn(const QString &uid, const QList<ComponentText> &components)
{
    ++m_ownWrites[uid];
    if (!m_isOpen)
        m_seen.insert(uid);
    if (components.isEmpty())
        drop(uid, Author::Ourselves);
    else
        take(uid, components, Author::Ourselves);
    // A server's calendar has a tag for what it holds. The service looks at it only when it refreshes: without that, a
    // calendar that another machine makes what it was before this change looks unchanged.
    if (m_description.isRemote)
        refresh();
    return m_sets.value(uid);
}

void SourceClient::suspect(const QString &uid)
{
    m_suspects.insert(uid);
    if (m_isOpen && !m_nextFetch.isActive())
        m_nextFetch.start(0);
}

void SourceClient::fetchSuspects()
{
    while (m_isOpen && m_fetching < mostFetchesAtOnce && !m_suspects.isEmpty()) {
        auto *const fetch = new Fetch;
        fetch->asker = this;
        fetch->attempt = m_attempt;
        fetch->uid = *m_suspects.cbegin();
        fetch->ownWrites = m_ownWrites.value(fetch->uid);
        fetch->client = referenced(m_client.get());
        m_suspects.remove(fetch->uid);
        ++m_fetching;
        e_cal_client_get_objects_for_uid(
            m_client.get(), fetch->uid.toUtf8().constData(), m_cancellable.get(),
            [](GObject * /*client*/, GAsyncResult *answer, gpointer data) {
                const std::unique_ptr<Fetch> done(static_cast<Fetch *>(data));
                if (done->asker && done->asker->m_attempt == done->attempt)
                    done->asker->takeFetched(*done, answer);
            },
            fetch);
    }
}

void SourceClient::takeFetched(const Fetch &fetch, GAsyncResult *answer)
{
    --m_fetching;
    GSList *found = nullptr;
    Failure failure;
    const bool isFound = e_cal_client_get_objects_for_uid_finish(m_client.get(), answer, &found, failure);
    QList<ComponentText> components;
    for (const GSList *node = found; node; node = node->next)
        components << componentText(e_cal_component_get_icalcomponent(E_CAL_COMPONENT(node->data)));
    g_slist_free_full(found, g_object_unref);

    auto pause = std::chrono::milliseconds::zero();
    if (fetch.ownWrites != m_ownWrites.value(fetch.uid)) {
        // What came may be older than what was written here meanwhile.
        m_suspects.insert(fetch.uid);
    } else if (isFound && !components.isEmpty()) {
        take(fetch.uid, components, Author::Others);
    } else if (isFound || failure.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND)) {
        drop(fetch.uid, Author::Others);
    } else {
        m_suspects.insert(fetch.uid);
        pause = pauseAfterFailedFetch;
    }
    const bool isTried = m_suspects.isEmpty() || pause > std::chrono::milliseconds::zero();
    if (m_awaitsItems && m_fetching == 0 && isTried)
        itemsAreComplete();
    if (!m_suspects.isEmpty() && !m_nextFetch.isActive())
        m_nextFetch.start(pause);
}

void SourceClient::refresh()
{
    if (!m_isOpen || !e_client_check_refresh_supported(E_CLIENT(m_client.get())))
        return;
    e_client_refresh(
        E_CLIENT(m_client.get()), m_cancellable.get(),
        [](GObject *client, GAsyncResult *answer, gpointer /*nothing*/) {
            // What cannot be reached is told by the state of the source.
            e_client_refresh_finish(E_CLIENT(client), answer, nullptr);
        },
        nullptr);
}

void SourceClient::setUnanswering(bool isUnanswering)
{
    if (m_isUnanswering == isUnanswering)
        return;
    m_isUnanswering = isUnanswering;
    tellState();
}

void SourceClient::readState()
{
    using Availability = CalCalendar::Availability;

    const bool isSaidReadOnly = m_client && e_client_is_readonly(E_CLIENT(m_client.get()));
    const bool isBelieved = m_client && (!isSaidReadOnly || !m_settling.isActive());
    const bool isReadOnly = isBelieved ? isSaidReadOnly : m_isReadOnly;
    Availability availability = Availability::Available;
    if (m_description.isRemote) {
        switch (e_source_get_connection_status(m_source.get())) {
        case E_SOURCE_CONNECTION_STATUS_AWAITING_CREDENTIALS:
        case E_SOURCE_CONNECTION_STATUS_SSL_FAILED:
            availability = Availability::CredentialsRequired;
            break;
        case E_SOURCE_CONNECTION_STATUS_DISCONNECTED:
            // Not at once: so is every account before it is connected for the first time.
            if (sender() == &m_grace || m_availability == Availability::Offline)
                availability = Availability::Offline;
            else
                m_grace.start(graceOfConnecting);
            break;
        case E_SOURCE_CONNECTION_STATUS_CONNECTING:
            availability = m_availability;
            break;
        case E_SOURCE_CONNECTION_STATUS_CONNECTED:
            m_grace.stop();
            break;
        }
    }
    if (isReadOnly == m_isReadOnly && availability == m_availability)
        return;
    m_isReadOnly = isReadOnly;
    m_availability = availability;
    tellState();
}

void SourceClient::tellState()
{
    Q_EMIT stateChanged();
}

} // namespace Service
