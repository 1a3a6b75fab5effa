// SPDX-License-Identifier: MIT
#include "ServiceSaver.h"

#include <RecordPlace.h>
#include <Refusal.h>

#include <QCoreApplication>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace Service
{

namespace
{

// Longer than the service itself waits for any server.
constexpr std::chrono::minutes longestDelay { 5 };

// Below it: the source, the uid and, where the service keeps that, too, the source that the item went into.
const QString rootOfDepartures = u"/leaving"_s;
constexpr int indexOfSource = 2;
constexpr int indexOfUid = 3;
constexpr int indexOfTarget = 4;

QString encoded(const QString &name)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(name));
}

QString decoded(const QString &part)
{
    return QUrl::fromPercentEncoding(part.toLatin1());
}

StoreError noAnswer(const CalCalendarItem &record)
{
    return Items::refusal(
        record, StoreError::Code::Io, QCoreApplication::translate("Vantle", "The calendar service does not answer."));
}

} // namespace

// The item is whole in the new calendar before it leaves the old one.
template <typename Record>
Result<void, ServiceSaver::LeavingFault> ServiceSaver::move(
    Record &record, const Stored &stored, const QByteArray &text, SourceClient &target)
{
    const QString &uid = stored.uid;
    const auto arrived = arrive(target, uid, text, record);
    if (!arrived)
        return LeavingFault { arrived.error() };
    const auto left = leave(stored, {}, record, target.description().uid);
    if (left) {
        Items::countAsRead(record, target.items(), *arrived.value());
        return {};
    }
    if (left.error().isPending) {
        // Nobody shall see it twice until the service tells where it is.
        target.takeOwn(uid, {});
        target.suspect(uid);
        return left.error();
    }
    const auto removed = write(target, uid, text, {}, record);
    return removed ? left.error() : LeavingFault { removed.error() };
}

template Result<void, ServiceSaver::LeavingFault> ServiceSaver::move(
    CalTask &record, const Stored &stored, const QByteArray &text, SourceClient &target);
template Result<void, ServiceSaver::LeavingFault> ServiceSaver::move(
    CalEvent &record, const Stored &stored, const QByteArray &text, SourceClient &target);

// A copy that may come later, and of which nobody is told, is taken back: the item has not left where it was.
Result<Items::ItemSetPtr, StoreError> ServiceSaver::arrive(
    SourceClient &target, const QString &uid, const QByteArray &text, const CalCalendarItem &record)
{
    const QString place = placeOf(target.description().uid, uid);
    if (m_departures.contains(place)) {
        const LeftOver left = m_departures.value(place);
        if (!endDeparture(left.save, record.kind()))
            return noAnswer(record);
        m_moving.forget(left.entry);
    }
    if (!endArrival(target, uid))
        return noAnswer(record);
    if (target.items().holdsUid(uid))
        return Items::identifierTaken(record);
    const FolderStore::JournaledSave save { place, std::nullopt, text, {} };
    if (const auto begun = m_moving.begin(save); !begun)
        return Items::refusal(record, StoreError::Code::Io, begun.error().reason);
    auto written = tryToWrite(target, uid, {}, text, record, {});
    // The service answers before it has stored anything. When it is gone a moment later, it may not have done so.
    if (written) {
        const auto held = StoredObjects(target).read(uid);
        if (!held && held.error().mayHappen()) {
            target.takeOwn(uid, {});
            target.suspect(uid);
            written = held.error();
        }
    }
    if (!written && written.error().mayHappen())
        m_arrivals.insert(place, { save, m_moving.abandon(), QDeadlineTimer(longestDelay) });
    else
        m_moving.end();
    return written ? Result<Items::ItemSetPtr, StoreError>(written.value()) : refusalOf(record, written.error());
}

// Whether nothing is left of an attempt that was given up.
bool ServiceSaver::endArrival(SourceClient &target, const QString &uid)
{
    const QString place = placeOf(target.description().uid, uid);
    if (!m_arrivals.contains(place))
        return true;
    const LeftOver late = m_arrivals.value(place);
    if (!takeBack(late.save, target, uid))
        return false;
    m_moving.forget(late.entry);
    m_arrivals.remove(place);
    return true;
}

void ServiceSaver::takeBackLateArrivals(SourceClient &source)
{
    const QString begin = placeOf(source.description().uid) + u'/';
    m_arrivals.removeIf([](const auto &each) { return each.value().end.hasExpired(); });
    const QStringList places = m_arrivals.keys();
    for (const QString &place : places) {
        if (place.startsWith(begin) && source.items().holdsUid(uidAt(place)))
            endArrival(source, uidAt(place));
    }
}

// Once it is whole elsewhere. When it is not known whether it has left, it is not taken away there: it leaves later.
Result<void, ServiceSaver::LeavingFault> ServiceSaver::leave(
    const Stored &stored, const QByteArray &remaining, const CalCalendarItem &record, const QString &target)
{
    const QString source = stored.source->description().uid;
    QStringList parts { rootOfDepartures, encoded(source), encoded(stored.uid) };
    if (!target.isEmpty())
        parts << encoded(target);
    const FolderStore::JournaledSave save { parts.join(u'/'), stored.present, remaining, {} };
    if (const auto begun = m_moving.begin(save); !begun)
        return LeavingFault { Items::refusal(record, StoreError::Code::Io, begun.error().reason) };
    const auto written = tryToWrite(*stored.source, stored.uid, stored.present, remaining, record, stored.present);
    if (written || !written.error().mayHappen()) {
        m_moving.end();
        return written ? Result<void, LeavingFault>() : LeavingFault { refusalOf(record, written.error()) };
    }
    m_departures.insert(
        placeOf(source, stored.uid), { save, m_moving.abandon(), QDeadlineTimer(QDeadlineTimer::Forever) });
    return LeavingFault { refusalOf(record, written.error()), true };
}

void ServiceSaver::endDepartures(const SourceClient &source)
{
    const CalItemKind kind = source.description().holdsEvents ? CalItemKind::Event : CalItemKind::Task;
    const QString name = encoded(source.description().uid);
    m_moving.forEachLeftOver(rootOfDepartures, m_clock.now(), [&](const FolderStore::JournaledSave &save) {
        const QStringList parts = save.path.split(u'/');
        return (parts.value(indexOfSource) == name || parts.value(indexOfTarget) == name) && endDeparture(save, kind);
    });
}

// Whether it is dealt with. An item is taken out only of a calendar that holds it as it was, and when the other one
// holds it.
bool ServiceSaver::endDeparture(const FolderStore::JournaledSave &save, CalItemKind kind)
{
    const QStringList parts = save.path.split(u'/');
    const QString uid = decoded(parts.value(indexOfUid));
    const QString name = decoded(parts.value(indexOfSource));
    SourceClient *const source = m_sourceNamed(name, kind);
    if (!source)
        return false;
    const auto isEnded = [&] {
        m_departures.remove(placeOf(name, uid));
        return true;
    };
    if (parts.size() > indexOfTarget) {
        SourceClient *const target = m_sourceNamed(decoded(parts.at(indexOfTarget)), kind);
        if (!target)
            return false;
        if (const auto held = StoredObjects(*target).read(uid); !held)
            return held.error().kind == ServiceFault::Kind::NotFound && isEnded();
    }
    const auto present = StoredObjects(*source).read(uid);
    if (!present)
        return present.error().kind == ServiceFault::Kind::NotFound && isEnded();
    if (!isVersion(versionOf(CalendarParts(save.before.value_or(QByteArray())).components), present.value()))
        return isEnded();
    const auto written = StoredObjects(*source).write(uid, source->textFor(present.value()), save.after);
    if (!written)
        return false;
    source->takeOwn(uid, written.value());
    return isEnded();
}

} // namespace Service
