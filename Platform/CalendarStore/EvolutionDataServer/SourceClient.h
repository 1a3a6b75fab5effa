// SPDX-License-Identifier: MIT
#pragma once

#include "ComponentTexts.h"
#include "GLibTypes.h"
#include "SourceDescription.h"

#include <CalendarStoreBackend.h>
#include <ItemIndex.h>
#include <ZoneRegistry.h>

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>

namespace Service
{

// One source of the service, opened, and what is known of its items.
//
// Opens without waiting, and opens again by itself whenever the service has gone.
// One view brings every item, another one every later change; what is kept of them
// are compact values, no objects of the library. While the source cannot be
// reached, what was known last stays.
//
// Two views, because the service holds back for two seconds what changes after a
// view has begun to bring items; one that brings none tells changes at once.
//
// Components of a series come one by one and in any order, so whatever belongs to
// a series is asked for anew by its uid. Whether something has changed is decided
// by what it says: the echo of a change of our own is silent.
class SourceClient final : public QObject
{
    Q_OBJECT

public:
    SourceClient(const SourceDescription &description, Owned<ESource> source, ICalendar::ZoneRegistry &zones,
        QObject *parent = nullptr);
    ~SourceClient() override;

    void open();

    const SourceDescription &description() const { return m_description; }
    void setDescription(const SourceDescription &description) { m_description = description; }

    // Null while the source is not open.
    ECalClient *client() const { return m_isOpen ? m_client.get() : nullptr; }
    // Who answers for it on the bus; empty while nobody does.
    QString busName() const { return m_busName; }
    // Whether all of its items have come once, or it was tried in vain to have them.
    bool isComplete() const { return m_isComplete; }
    // As long as it has never been open, it counts as one that can not be changed.
    bool isReadOnly() const { return m_isReadOnly; }
    CalCalendar::Availability availability() const { return m_availability; }

    // Whether the service does not answer for it.
    bool isSilent() const { return !m_isOpen || m_isUnanswering; }
    void setUnanswering(bool isUnanswering);

    const Items::ItemIndex &items() const { return m_index; }
    bool isEmpty() const { return m_sets.isEmpty(); }
    Items::ItemSetPtr set(const QString &uid) const { return m_sets.value(uid); }
    // What such components would be as an item of this source.
    Items::ItemSetPtr setOf(const QString &uid, const QList<ComponentText> &components) const;

    // What one uid holds, as a text that can be read and patched.
    QByteArray textFor(const QList<ComponentText> &components) const;
    // Takes in what was just read.
    void takeRead(const QString &uid, const QList<ComponentText> &components)
    {
        take(uid, components, CalBackendChange::Author::Others);
    }
    // Takes in what was just written: at once, whatever comes later of what was before. No components: it is gone.
    Items::ItemSetPtr takeOwn(const QString &uid, const QList<ComponentText> &components);
    // Has the item looked at again, for it turned out to be another one than was known.
    void suspect(const QString &uid);
    // Whether a zone of that name was made known to the service by us.
    bool isZoneTold(const QByteArray &zone) const { return m_toldZones.contains(zone); }
    void zoneIsTold(const QByteArray &zone) { m_toldZones.insert(zone); }

    // Has the server looked at.
    void refresh();

Q_SIGNALS:
    void itemsChanged(CalBackendChange::Author author);
    // What describes it, or whether it answers.
    void stateChanged();

private:
    class Fetch;

    // Opening.
    void takeClient(GAsyncResult *answer);
    void listen();
    void startViews();
    void close();
    void openLater();

    void dropView(Owned<ECalClientView> &view);

    // What the views tell.
    void takeContents(const GSList *components);
    void contentsAreComplete();
    void itemsAreComplete();
    void changed(const GSList *components);
    void removed(const GSList *ids);

    // Items.
    void take(const QString &uid, const QList<ComponentText> &components, CalBackendChange::Author author);
    void drop(const QString &uid, CalBackendChange::Author author);
    void fetchSuspects();
    void takeFetched(const Fetch &fetch, GAsyncResult *answer);

    // Zones.
    void learnZones(const QString &uid, const QList<ComponentText> &components);
    void takeZone(const QByteArray &name, const QByteArray &text);

    void readState();
    void tellState();

    SourceDescription m_description;
    Owned<ESource> m_source;
    ICalendar::ZoneRegistry &m_zones;

    Owned<GCancellable> m_cancellable; // of whatever is under way
    Owned<ECalClient> m_client;
    Owned<ECalClientView> m_contents; // until all items have come, and what became of them meanwhile
    Owned<ECalClientView> m_changes;
    QString m_busName;
    quint64 m_attempt = 0; // answers of earlier ones are dropped
    int m_failures = 0; // since it was open last
    QTimer m_patience; // with one attempt
    QTimer m_again;
    QTimer m_grace; // until a source that is not connected counts as offline
    bool m_isOpen = false; // all items have come since it was opened
    QTimer m_settling; // while it counts as what it was before, if it could be changed
    QTimer m_endOfOldNews;
    bool m_awaitsItems = false; // the rest of them, before they are told as complete
    bool m_isComplete = false;
    bool m_isUnanswering = false;
    bool m_isReadOnly = true;
    CalCalendar::Availability m_availability = CalCalendar::Availability::Available;

    QHash<QString, Items::ItemSetPtr> m_sets; // by uid
    Items::ItemIndex m_index;
    QSet<QString> m_seen; // uids that came since the views were started
    QHash<QString, QList<ComponentText>> m_series; // that came so far, until all have

    QSet<QString> m_suspects;
    int m_fetching = 0;
    QTimer m_nextFetch;
    QHash<QString, quint64> m_ownWrites; // how often each uid was written here

    QHash<QByteArray, QByteArray> m_zoneTexts; // by name; empty for those that the system knows
    QHash<QByteArray, QSet<QString>> m_zoneUsers; // uids, while a zone is asked for
    QSet<QString> m_rezoned; // uids whose zone has become another one since they were taken in
    QSet<QByteArray> m_toldZones;
};

} // namespace Service
