// SPDX-License-Identifier: MIT
#include "FolderSynchronizer.h"

#include "DefaultCalendars.h"
#include "Limits.h"

#include <CalCalendar.h>

#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace FolderStore
{

namespace
{

// What a change from outside may take of the window's time before the worker takes over.
constexpr auto budgetForChanges = 15ms;

// How long a file that looks unfinished is left alone, again and again, before it is taken as it is.
constexpr std::array waitsForUnfinished { 300ms, 1000ms };

bool holds(const FileSnapshot *file, ICalendar::Item::Kind kind)
{
    return file && std::ranges::any_of(file->groups(), [&](const ItemGroup &group) { return group.kind == kind; });
}

bool looksTheSame(const CalCalendar &left, const CalCalendar &right)
{
    return left.title() == right.title() && left.color() == right.color() && left.isEditable() == right.isEditable();
}

QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/'));
}

} // namespace

FolderSynchronizer::FolderSynchronizer(FolderCalendarStore::Options options, QObject *parent)
    : QObject(parent)
    , m_options(std::move(options))
{
    m_options.root = QDir::cleanPath(m_options.root);
    connect(&m_announcer, &ChangeAnnouncer::changed, this, &FolderSynchronizer::changed);
}

FolderSynchronizer::~FolderSynchronizer() = default;

void FolderSynchronizer::open()
{
    m_isOpening = true;
    if (m_options.createsDefaultCalendars && rootHoldsNothing(m_options.root))
        makeDefaultCalendars(m_options.root, m_log);
    if (m_options.watchesForChanges) {
        m_watcher = std::make_unique<FolderWatcher>();
        connect(m_watcher.get(), &FolderWatcher::namesChanged, this, &FolderSynchronizer::namesChanged);
        connect(m_watcher.get(), &FolderWatcher::folderWent, this, &FolderSynchronizer::lookThroughEverything);
        connect(m_watcher.get(), &FolderWatcher::changesLost, this, &FolderSynchronizer::lookThroughEverything);
        watchRoot();
    }
    lookThroughRoot();
    carryOutOrders(m_options.readingBudget);
    sortCollections();
    m_isOpening = false;
}

Collection *FolderSynchronizer::collection(const QString &uid) const
{
    const auto found = std::ranges::find(m_collections, uid, [](const auto &each) { return each->uid(); });
    return found == m_collections.end() ? nullptr : found->get();
}

void FolderSynchronizer::takeOwn(Collection &collection, const FileSnapshotPtr &snapshot)
{
    // An answer that is still on its way was read before this.
    m_latestTickets.remove(collection.pathOf(snapshot->fileName()));
    takeSnapshot(collection, snapshot, CalBackendChange::Author::Ourselves);
}

void FolderSynchronizer::readAgain(Collection &collection, const QString &fileName)
{
    order(collection, fileName);
    carryOutOrders(budgetForChanges);
}

void FolderSynchronizer::watchRoot()
{
    if (!m_watcher)
        return;
    // Asked once more after each step up: the root may appear meanwhile.
    QString ancestor = m_options.root;
    while (!m_watcher->watch(m_options.root)) {
        if (ancestor == u"/")
            return;
        ancestor = QFileInfo(ancestor).path();
        if (m_watcher->watch(ancestor) && !QFileInfo(m_options.root).isDir()) {
            if (m_watchedAncestor != ancestor)
                m_watcher->unwatch(m_watchedAncestor);
            m_watchedAncestor = ancestor;
            return;
        }
    }
    m_watcher->unwatch(m_watchedAncestor);
    m_watchedAncestor.clear();
}

void FolderSynchronizer::watchPlace(const FoundCollection &place)
{
    if (!m_watcher)
        return;
    if (place.kind == FoundCollection::Kind::Folder)
        m_watcher->watch(place.path);
    else if (place.realPath != place.path)
        m_watcher->watch(folderOf(place.realPath)); // the link in the root stays as it is when its target changes
}

void FolderSynchronizer::unwatchPlace(const FoundCollection &place)
{
    if (m_watcher && place.kind == FoundCollection::Kind::Folder)
        m_watcher->unwatch(place.path);
}

void FolderSynchronizer::lookThroughEverything()
{
    watchRoot();
    lookThroughRoot();
    for (const auto &each : m_collections) {
        watchPlace(each->place());
        updateDescription(*each);
        lookThroughFiles(*each);
    }
    sortCollections();
    carryOutOrders(budgetForChanges);
}

void FolderSynchronizer::lookThroughRoot()
{
    const QList<FoundCollection> found = scanRoot(m_options.root, m_log);
    QStringList vanished;
    for (const auto &each : m_collections) {
        const auto same = std::ranges::find(found, each->uid(), &FoundCollection::name);
        if (same == found.end() || same->kind != each->place().kind || same->realPath != each->place().realPath)
            vanished << each->uid();
    }
    for (const QString &uid : vanished)
        remove(uid);

    for (const FoundCollection &place : found) {
        if (Collection *known = collection(place.name)) {
            updatePlace(*known, place);
            continue;
        }
        // Watched before it is listed, so that nothing slips through between the two.
        watchPlace(place);
        Collection &added = *m_collections.emplace_back(std::make_unique<Collection>(place));
        updateDescription(added);
        lookThroughFiles(added);
        announce(added, true, nullptr, nullptr);
    }
    sortCollections();
}

void FolderSynchronizer::lookThroughFiles(Collection &collection)
{
    if (collection.place().kind == FoundCollection::Kind::SingleFile) {
        const auto state = stateOfRegularFile(collection.place().path);
        const FileSnapshotPtr known = collection.file(collection.place().name);
        if (!known || !state || known->state() != state.value())
            order(collection, collection.place().name);
        return;
    }
    const QHash<QString, FileState> found = scanCollection(collection.place().path, m_log);
    const QStringList knownNames = collection.files().keys();
    for (const QString &name : knownNames) {
        if (!found.contains(name))
            dropFile(collection, name);
    }
    QStringList names = found.keys();
    names.sort();
    for (const QString &name : std::as_const(names)) {
        const FileSnapshotPtr known = collection.file(name);
        if (!known || known->state() != found.value(name))
            order(collection, name);
    }
}

void FolderSynchronizer::updateDescription(Collection &collection)
{
    if (collection.place().kind != FoundCollection::Kind::Folder)
        return;
    const CollectionDescription description = CollectionDescription::readFrom(collection.place().path, m_log);
    if (description == collection.description())
        return;
    collection.setDescription(description);
    announce(collection, true, nullptr, nullptr);
}

void FolderSynchronizer::updatePlace(Collection &collection, const FoundCollection &found)
{
    const bool isOther = collection.place().isWritable != found.isWritable;
    collection.setPlace(found);
    if (isOther)
        announce(collection, true, nullptr, nullptr);
    // It may have been replaced by another folder of the same name.
    watchPlace(found);
}

void FolderSynchronizer::remove(const QString &uid)
{
    const auto found = std::ranges::find(m_collections, uid, [](const auto &each) { return each->uid(); });
    CalBackendChange change;
    change.calendars = change.events = change.tasks = true;
    change.calendarUids = { uid };
    unwatchPlace((*found)->place());
    m_collections.erase(found);
    if (!m_isOpening)
        m_announcer.add(change);
}

void FolderSynchronizer::sortCollections()
{
    const auto orderOf
        = [](const Collection &each) { return each.description().order.value_or(std::numeric_limits<int>::max()); };
    std::ranges::stable_sort(m_collections, [&](const auto &left, const auto &right) {
        if (orderOf(*left) != orderOf(*right))
            return orderOf(*left) < orderOf(*right);
        const int byTitle = left->record()->title().compare(right->record()->title(), Qt::CaseInsensitive);
        return byTitle != 0 ? byTitle < 0 : left->uid() < right->uid();
    });
}

void FolderSynchronizer::namesChanged(const QHash<QString, QSet<QString>> &namesByFolder)
{
    if (!m_watchedAncestor.isEmpty() && namesByFolder.contains(m_watchedAncestor)) {
        watchRoot();
        lookThroughRoot();
    }
    bool concernsRoot = namesByFolder.contains(m_options.root);
    for (const QSet<QString> &names : namesByFolder)
        concernsRoot = concernsRoot || names.contains(QString()); // permissions of a folder
    if (concernsRoot)
        lookThroughRoot();
    for (const auto &each : m_collections) {
        const FoundCollection &place = each->place();
        if (place.kind == FoundCollection::Kind::Folder) {
            namesChangedIn(*each, namesByFolder.value(place.path));
            continue;
        }
        const bool isNamed = namesByFolder.value(m_options.root).contains(place.name)
            || namesByFolder.value(folderOf(place.realPath)).contains(QFileInfo(place.realPath).fileName());
        if (isNamed)
            order(*each, place.name);
    }
    carryOutOrders(budgetForChanges);
    sortCollections();
}

void FolderSynchronizer::namesChangedIn(Collection &collection, const QSet<QString> &names)
{
    if (std::ranges::any_of(names, CollectionDescription::isDescriptionFile))
        updateDescription(collection);
    for (const QString &name : names) {
        if (isItemFileName(name))
            order(collection, name);
    }
}

void FolderSynchronizer::order(const Collection &collection, const QString &fileName)
{
    const QString path = collection.pathOf(fileName);
    const FileSnapshotPtr known = collection.file(fileName);
    m_latestTickets.insert(path, ++m_lastTicket);
    m_orders << ReadingOrder { m_lastTicket, collection.uid(), fileName, path, known ? known->hash() : QByteArray() };
    if (m_isOpening)
        m_firstReading.insert(m_lastTicket);
}

void FolderSynchronizer::carryOutOrders(Budget budget)
{
    QElapsedTimer timer;
    timer.start();
    QList<ReadingOrder> forWorker;
    const QList<ReadingOrder> orders = std::exchange(m_orders, {});
    for (const ReadingOrder &each : orders) {
        if (budget) {
            const auto state = stateOfRegularFile(each.path);
            const bool isLarge = state && state.value().size > Limits::bytesReadWhileWaiting;
            if (isLarge || timer.elapsed() >= budget->count()) {
                forWorker << each;
                continue;
            }
        }
        take(carryOut(each, m_zones));
    }
    if (forWorker.isEmpty())
        return;
    if (!m_worker) {
        m_worker = std::make_unique<ReadingWorker>();
        connect(m_worker.get(), &ReadingWorker::haveRead, this, [this](const QList<ReadingAnswer> &answers) {
            std::ranges::for_each(answers, [this](const ReadingAnswer &answer) { take(answer); });
            carryOutOrders(budgetForChanges);
        });
    }
    m_worker->read(forWorker);
}

void FolderSynchronizer::take(const ReadingAnswer &answer)
{
    const ReadingOrder &order = answer.order;
    const bool isLastOfFirst = m_firstReading.remove(order.ticket) && m_firstReading.isEmpty() && !m_isOpening;
    Collection *into = collection(order.collection);
    if (into && m_latestTickets.value(order.path) == order.ticket) {
        m_latestTickets.remove(order.path);
        if (answer.fault) {
            if (answer.fault->kind != FileFault::Kind::Missing)
                m_log.note(order.path, 0, answer.fault->reason);
            dropFile(*into, order.fileName);
        } else if (!answer.snapshot) {
            m_waits.remove(order.path); // as it was
        } else if (!isAwaited(*into, answer.snapshot)) {
            takeSnapshot(*into, answer.snapshot, CalBackendChange::Author::Others);
        }
    }
    if (isLastOfFirst) {
        sortCollections();
        Q_EMIT loaded();
    }
}

void FolderSynchronizer::takeSnapshot(
    Collection &collection, const FileSnapshotPtr &snapshot, CalBackendChange::Author author)
{
    const QString path = collection.pathOf(snapshot->fileName());
    m_waits.remove(path);
    const CalCalendarPtr recordBefore = collection.record();
    const FileSnapshotPtr before = collection.file(snapshot->fileName());
    collection.setFile(snapshot);
    noteProblems(path, *snapshot);
    announce(collection, !looksTheSame(*recordBefore, *collection.record()), before.get(), snapshot.get(), author);
}

bool FolderSynchronizer::isAwaited(const Collection &collection, const FileSnapshotPtr &snapshot)
{
    const FileSnapshotPtr known = collection.file(snapshot->fileName());
    if (!m_watcher || !snapshot->looksUnfinished() || !known || known->looksUnfinished())
        return false;
    const QString path = collection.pathOf(snapshot->fileName());
    int &waits = m_waits[path];
    if (waits >= static_cast<int>(waitsForUnfinished.size()))
        return false;
    const auto wait = waitsForUnfinished.at(static_cast<size_t>(waits));
    ++waits;
    QTimer::singleShot(wait, this, [this, uid = collection.uid(), name = snapshot->fileName()] {
        if (Collection *still = this->collection(uid))
            readAgain(*still, name);
    });
    return true;
}

void FolderSynchronizer::dropFile(Collection &collection, const QString &fileName)
{
    m_waits.remove(collection.pathOf(fileName));
    const FileSnapshotPtr before = collection.file(fileName);
    if (!before)
        return;
    collection.removeFile(fileName);
    announce(collection, false, before.get(), nullptr);
}

void FolderSynchronizer::noteProblems(const QString &path, const FileSnapshot &snapshot)
{
    for (const ICalendar::Problem &problem : snapshot.document().problems)
        m_log.note(path, problem.line, problem.text);
}

void FolderSynchronizer::announce(const Collection &collection, bool calendars, const FileSnapshot *before,
    const FileSnapshot *after, CalBackendChange::Author author)
{
    if (m_isOpening)
        return;
    using Kind = ICalendar::Item::Kind;
    CalBackendChange change;
    change.author = author;
    change.calendars = calendars;
    change.events = holds(before, Kind::Event) || holds(after, Kind::Event);
    change.tasks = holds(before, Kind::Task) || holds(after, Kind::Task);
    change.calendarUids = { collection.uid() };
    m_announcer.add(change);
}

} // namespace FolderStore
