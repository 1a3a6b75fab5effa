// SPDX-License-Identifier: MIT
#pragma once

#include "StoredObjects.h"

#include <CalDeparture.h>
#include <CalEvent.h>
#include <CalRemoval.h>
#include <CalTask.h>
#include <Clock.h>
#include <SaveJournal.h>
#include <StoredText.h>

#include <QDeadlineTimer>
#include <QHash>

#include <functional>
#include <memory>
#include <optional>

namespace Service
{

// Writes what was changed in a record, makes new items, moves and removes them: what
// the service holds by now is fetched, must be as it was read, takes over the changes
// and goes back. A save whose answer did not come in time may still be done: the next one of the same record knows it.
// What takes several calls is noted in a journal meanwhile, and put right when the service has ended in between.
//
// The event sheet's two steps are one change: the second is made on the item as it
// was before the first, which a journal keeps until then.
class ServiceSaver final
{
public:
    // The source that holds items of that kind for a calendar; null when there is none.
    using FindSource = std::function<SourceClient *(const QString &calendar, CalItemKind kind)>;
    using FindByUid = std::function<SourceClient *(const QString &source, CalItemKind kind)>;

    ServiceSaver(FindSource sourceOf, FindByUid sourceNamed, ICalendar::ZoneRegistry &zones, const Clock &clock);

    Result<void, StoreError> save(CalTask &task);
    Result<void, StoreError> save(CalEvent &event, CalSpan span);
    Result<std::unique_ptr<CalRemoval>, StoreError> remove(const CalTask &task);
    Result<std::unique_ptr<CalRemoval>, StoreError> remove(const CalEvent &event, CalSpan span);

    // Ends or takes back what was begun in that source and not ended: moves, first steps without their second, and some
    // of several calls.
    void mendLeftOvers(SourceClient &source);
    // Takes back copies whose save was given up and which came nevertheless.
    bool awaitsArrivals() const { return !m_arrivals.isEmpty(); }
    void takeBackLateArrivals(SourceClient &source);

    // For moves from one back end into another, as CalendarStoreBackend has them.
    using Sent = Result<std::unique_ptr<CalDeparture>, StoreError>;
    Sent send(CalTask &task);
    Sent send(CalEvent &event, CalSpan span);
    Result<void, StoreError> takeIn(CalTask &task, const QByteArray &text);
    Result<void, StoreError> takeIn(CalEvent &event, const QByteArray &text);

private:
    class Restoration;
    class Departure;

    struct Stored : Items::StoredText {
        SourceClient *source = nullptr;
        QString uid;
        // What the service holds: the text, or what an unanswered save made of it.
        QByteArray present;
    };
    // A save that was given up before its answer came: whether it was done, or still will be, is not known.
    struct Unanswered {
        QByteArray versionRead;
        QByteArray before;
        QByteArray after;
    };
    // Of a move whose item is whole where it goes, but did not leave where it was.
    struct LeavingFault {
        StoreError refusal;
        bool isPending = false; // it leaves as soon as the service answers again
    };
    // What is on the disk to be dealt with when the service answers again.
    struct LeftOver {
        FolderStore::JournaledSave save;
        QString entry;
        QDeadlineTimer end; // what comes even later comes from somebody else
    };
    // What the last save of one occurrence did.
    struct FirstStep {
        FolderStore::JournaledSave save;
        CalItemOrigin originBefore;
        QByteArray versionAfter;
        QString source;
        QString uid;
        bool isJournaled = false;
    };

    Result<SourceClient *, StoreError> writable(const CalCalendarItem &record, const CalCalendarPtr &calendar) const;
    Result<Stored, StoreError> find(SourceClient &source, const CalCalendarItem &record) const;
    static StoreError refusalOf(const CalCalendarItem &record, const ServiceFault &fault);
    Result<Items::ItemSetPtr, StoreError> write(SourceClient &source, const QString &uid, const QByteArray &before,
        const QByteArray &after, const CalCalendarItem &record);
    Result<Items::ItemSetPtr, ServiceFault> tryToWrite(SourceClient &source, const QString &uid,
        const QByteArray &before, const QByteArray &after, const CalCalendarItem &record, const QByteArray &original);
    const Unanswered *unanswered(
        const SourceClient &source, const CalCalendarItem &record, const QList<ComponentText> &present) const;

    template <typename Record> Result<void, StoreError> create(Record &record);
    template <typename Record, typename Text>
    Result<void, StoreError> change(Record &record, const CalCalendarPtr &target, Text text);
    template <typename Record>
    Result<void, LeavingFault> move(Record &record, const Stored &stored, const QByteArray &text, SourceClient &target);
    Result<Items::ItemSetPtr, StoreError> arrive(
        SourceClient &target, const QString &uid, const QByteArray &text, const CalCalendarItem &record);
    bool endArrival(SourceClient &target, const QString &uid);
    Result<void, LeavingFault> leave(
        const Stored &stored, const QByteArray &remaining, const CalCalendarItem &record, const QString &target);
    void endDepartures(const SourceClient &source);
    bool endDeparture(const FolderStore::JournaledSave &save, CalItemKind kind);
    Result<QByteArray, StoreError> changedText(
        const Items::StoredText &stored, const CalEvent &event, CalSpan span) const;
    Result<std::unique_ptr<CalRemoval>, StoreError> remove(const CalCalendarItemPtr &record, CalSpan span);

    template <typename Record> Result<void, StoreError> takeInRecord(Record &record, const QByteArray &text);
    Result<void, StoreError> stepBeforeSending(CalEvent &event);

    static QString placeOf(const QString &source);
    static QString placeOf(const QString &source, const QString &uid);
    static QString uidAt(const QString &place);

    Result<void, StoreError> saveOnce(CalEvent &event, CalSpan span);
    static bool isFirstStepOfSheet(const CalEvent &event);
    static bool isOneOfSeries(const CalEvent &event);
    bool isContinued(const CalEvent &event) const;
    Result<void, StoreError> begin(CalEvent &event);
    Result<void, StoreError> beginNew(CalEvent &event);
    Result<void, StoreError> take(CalEvent &event, FirstStep step, SourceClient &source);
    Result<void, StoreError> proceed(CalEvent &event, CalSpan span);
    Result<QByteArray, StoreError> textOfBoth(const Stored &stored, const CalEvent &event, CalSpan span) const;
    void takeBack(CalEvent &event);
    bool takeBack(const FolderStore::JournaledSave &save, SourceClient &source, const QString &uid);
    void forget();

    FindSource m_sourceOf;
    FindByUid m_sourceNamed;
    ICalendar::ZoneRegistry &m_zones;
    const Clock &m_clock;
    FolderStore::FileCalls m_calls;
    FolderStore::SaveJournal m_journal { m_calls };
    // Of what takes several calls.
    FolderStore::SaveJournal m_calling { m_calls };
    std::optional<FirstStep> m_first;
    // Of items that go into another calendar.
    FolderStore::SaveJournal m_moving { m_calls };
    QHash<QString, Unanswered> m_unanswered; // by place
    QHash<QString, LeftOver> m_arrivals; // that were not answered, by place
    QHash<QString, LeftOver> m_departures;
};

} // namespace Service
