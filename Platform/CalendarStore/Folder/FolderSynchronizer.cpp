// SPDX-License-Identifier: MIT
#include "FolderSynchronizer.h"

#include "DefaultCalendars.h"
#include "Limits.h"

#include <CalCalendar.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

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
constexpr auto budgetForChanges = 5ms;
// Whoever asks for a single file shows it next: it is read at once, however busy the machine is.
constexpr auto budgetForOneFile = std::chrono::milliseconds::max();

// So many files are looked into in a turn of the event loop that there is room for something else.
constexpr qsizetype suspectsPerTurn = 200;

// A folder with more in it is looked through by the worker.
constexpr int entriesLookedThroughAtOnce = 500;

// How long a file that looks unfinished is left alone, again and again, before it is taken as it is.
constexpr std::array waitsForUnfinished { 300ms, 1000ms };

bool holds(const FileSnapshot *file, ICalendar::Item::Kind kind)
{
    return file
        && std::ranges::any_of(file->groups(), [&](const Items::ItemGroup &group) { return group.kind == kind; });
}

bool looksTheSame(const CalCalendar &left, const CalCalendar &right)
{
    return left.title() == right.title() && left.color() == right.color() && left.isEditable() == right.isEditable();
}

bool isLarge(const QString &path)
{
    const auto state = stateOfRegularFile(path);
    return state && state.value().size > Limits::bytesReadWhileWaiting;
}

QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/'));
}

} // namespace

FolderSynchronizer::FolderSynchronizer(FolderCalendarStore::Options options, std::unique_ptr<FolderWatcher> watching)
    : m_options(std::move(options))
    , m_watcher(std::move(watching))
{
    m_options.root = QDir::cleanPath(m_options.root);
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setInterval(0);
    connect(&m_nextTurn, &QTimer::timeout, this, &FolderSynchronizer::lookIntoSuspects);
    connect(&m_announcer, &Items::ChangeAnnouncer::changed, this, &FolderSynchronizer::changed);
}

FolderSynchronizer::~FolderSynchronizer() = default;

void FolderSynchronizer::open()
{
    m_isOpening = true;
    if (m_options.createsDefaultCalendars && rootHoldsNothing(m_options.root))
        makeDefaultCalendars(m_options.root, m_log);
    if (m_options.watchesForChanges) {
        if (!m_watcher)
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

void FolderSynchronizer::createDefaultCalendars()
{
    if (!rootHoldsNothing(m_options.root))
        return;
    makeDefaultCalendars(m_options.root, m_log);
    lookThroughEverything();
}

Collection *FolderSynchronizer::collection(const QString &uid) const
{
    // Nearly always asked with the very text that the calendar's record carries; comparing texts takes longer.
    auto found
        = std::ranges::find(m_collections, uid.constData(), [](const auto &each) { return each->uid().constData(); });
    if (found == m_collections.end())
        found = std::ranges::find(m_collections, uid, [](const auto &each) -> const QString & { return each->uid(); });
    return found == m_collections.end() ? nullptr : found->get();
}

void FolderSynchronizer::takeOwn(Collection &collection, const FileSnapshotPtr &snapshot)
{
    // An answer that is still on its way was read before this.
    m_latestTickets.remove(collection.pathOf(snapshot->name()));
    takeSnapshot(collection, snapshot, CalBackendChange::Author::Ourselves);
}

void FolderSynchronizer::dropOwn(Collection &collection, const QString &fileName)
{
    m_latestTickets.remove(collection.pathOf(fileName));
    dropFile(collection, fileName, CalBackendChange::Author::Ourselves);
}

void FolderSynchronizer::readAgain(Collection &collection, const QString &fileName)
{
    order(collection, fileName);
    carryOutOrders(budgetForOneFile);
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
    for (auto folder = m_links.keyBegin(); m_watcher && folder != m_links.keyEnd(); ++folder)
        m_watcher->watch(*folder);
    sortCollections();
    lookIntoSuspects();
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
    const FoundCollection &place = collection.place();
    if (place.kind == FoundCollection::Kind::SingleFile) {
        const auto state = stateOfRegularFile(place.path);
        const FileSnapshotPtr known = collection.file(place.name);
        if (!known || !state || known->state() != state.value())
            suspect(collection, place.name);
        return;
    }
    if (m_isOpening || !holdsMoreThan(place.path, entriesLookedThroughAtOnce)) {
        takeDifferences(collection, differencesIn(place.path, collection.files()));
        return;
    }
    if (const auto underWay = m_lookingThrough.find(place.name); underWay != m_lookingThrough.end()) {
        *underWay = true;
        return;
    }
    m_lookingThrough.insert(place.name, false);
    worker().lookThrough(place.name, place.path, collection.files());
}

void FolderSynchronizer::takeDifferences(Collection &collection, const FolderDifferences &differences)
{
    for (const FolderDifferences::Fault &fault : differences.faults)
        m_log.note(fault.path, 0, fault.reason);
    for (const QString &name : differences.names)
        suspect(collection, name);
    if (!differences.isClosed)
        return;
    const QStringList names = collection.files().keys();
    for (const QString &name : names)
        dropFile(collection, name);
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
            suspect(*each, place.name);
    }
    targetsChanged(namesByFolder);
    lookIntoSuspects();
    sortCollections();
}

void FolderSynchronizer::namesChangedIn(Collection &collection, const QSet<QString> &names)
{
    if (std::ranges::any_of(names, CollectionDescription::isDescriptionFile))
        updateDescription(collection);
    for (const QString &name : names) {
        if (isItemFileName(name))
            suspect(collection, name);
    }
}

void FolderSynchronizer::targetsChanged(const QHash<QString, QSet<QString>> &namesByFolder)
{
    for (auto links = m_links.cbegin(); links != m_links.cend(); ++links) {
        const QSet<QString> names = namesByFolder.value(links.key());
        for (const QString &name : names) {
            const QSet<FileKey> leadingThere = links->value(name);
            m_suspects.insert(m_suspects.end(), leadingThere.cbegin(), leadingThere.cend());
        }
    }
}

void FolderSynchronizer::followLink(const Collection &collection, const FileSnapshot &snapshot)
{
    const QString &target = snapshot.linkTarget();
    // The calendar's own folder does not tell when what a link in it leads to changes.
    if (!m_watcher || target.isEmpty() || collection.place().kind != FoundCollection::Kind::Folder)
        return;
    const QString folder = folderOf(target);
    m_watcher->watch(folder);
    m_links[folder][target.mid(folder.size() + 1)].insert({ collection.uid(), snapshot.name() });
}

void FolderSynchronizer::suspect(const Collection &collection, const QString &fileName)
{
    if (m_isOpening)
        order(collection, fileName);
    else
        m_suspects.push_back({ collection.uid(), fileName });
}

void FolderSynchronizer::lookIntoSuspects()
{
    // A few are read here and now; behind many others nobody notices that the worker does it.
    const Budget budget = static_cast<qsizetype>(m_suspects.size()) > suspectsPerTurn ? 0ms : budgetForChanges;
    for (qsizetype count = 0; count < suspectsPerTurn && !m_suspects.empty(); ++count) {
        const FileKey key = std::move(m_suspects.front());
        m_suspects.pop_front();
        if (const Collection *known = collection(key.collection))
            order(*known, key.fileName);
    }
    carryOutOrders(budget);
    if (!m_suspects.empty())
        m_nextTurn.start();
}

void FolderSynchronizer::order(const Collection &collection, const QString &fileName)
{
    const QString path = collection.pathOf(fileName);
    const FileSnapshotPtr known = collection.file(fileName);
    m_latestTickets.insert(path, ++m_lastTicket);
    m_orders << ReadingOrder { m_lastTicket, collection.uid(), fileName, path, known ? known->version() : QByteArray(),
        known ? known->linkTarget() : QString() };
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
        const bool isLate = budget && timer.elapsed() >= budget->count();
        if (isLate || (budget && isLarge(each.path)))
            forWorker << each;
        else
            take(carryOut(each, m_zones));
    }
    if (!forWorker.isEmpty())
        worker().read(forWorker);
}

ReadingWorker &FolderSynchronizer::worker()
{
    if (m_worker)
        return *m_worker;
    m_worker = std::make_unique<ReadingWorker>();
    connect(m_worker.get(), &ReadingWorker::haveRead, this, &FolderSynchronizer::take);
    connect(m_worker.get(), &ReadingWorker::haveLookedThrough, this,
        [this](const QString &uid, const FolderDifferences &differences) {
            const bool changedMeanwhile = m_lookingThrough.take(uid);
            Collection *const lookedThrough = collection(uid);
            if (!lookedThrough)
                return;
            takeDifferences(*lookedThrough, differences);
            if (changedMeanwhile)
                lookThroughFiles(*lookedThrough);
            lookIntoSuspects();
        });
    return *m_worker;
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
    const QString path = collection.pathOf(snapshot->name());
    m_waits.remove(path);
    const CalCalendarPtr recordBefore = collection.record();
    const FileSnapshotPtr before = collection.file(snapshot->name());
    collection.setFile(snapshot);
    followLink(collection, *snapshot);
    noteProblems(path, *snapshot);
    announce(collection, !looksTheSame(*recordBefore, *collection.record()), before.get(), snapshot.get(), author);
    if (before && author == CalBackendChange::Author::Others)
        Q_EMIT writtenByOthers(path);
}

bool FolderSynchronizer::isAwaited(const Collection &collection, const FileSnapshotPtr &snapshot)
{
    const FileSnapshotPtr known = collection.file(snapshot->name());
    if (!m_watcher || !snapshot->looksUnfinished() || !known || known->looksUnfinished())
        return false;
    const QString path = collection.pathOf(snapshot->name());
    int &waits = m_waits[path];
    if (waits >= static_cast<int>(waitsForUnfinished.size()))
        return false;
    const auto wait = waitsForUnfinished.at(static_cast<size_t>(waits));
    ++waits;
    QTimer::singleShot(wait, this, [this, uid = collection.uid(), name = snapshot->name()] {
        if (Collection *still = this->collection(uid))
            readAgain(*still, name);
    });
    return true;
}

void FolderSynchronizer::dropFile(Collection &collection, const QString &fileName, CalBackendChange::Author author)
{
    m_waits.remove(collection.pathOf(fileName));
    const FileSnapshotPtr before = collection.file(fileName);
    if (!before)
        return;
    collection.removeFile(fileName);
    announce(collection, false, before.get(), nullptr, author);
}

void FolderSynchronizer::noteProblems(const QString &path, const FileSnapshot &snapshot)
{
    for (const ICalendar::Problem &problem : *snapshot.document().problems)
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
