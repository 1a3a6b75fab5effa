// SPDX-License-Identifier: MIT
#include "ItemTransfer.h"

#include "CalendarStoreBackend.h"

#include <QCoreApplication>

#include <vector>

using namespace Qt::StringLiterals;

namespace
{

using Entry = MergedCalendars::Entry;
using Outcome = Result<void, StoreError>;

// What tells a record where and as what it was read.
template <typename Record> class ReadState final
{
public:
    explicit ReadState(const Record &record)
        : m_origin(record.origin())
        , m_asRead(record.asRead())
    {
        for (const CalAlarmPtr &alarm : record.alarms())
            m_alarmPlaces.push_back(alarm->storedIndex());
    }

    void giveBackTo(Record &record) const
    {
        record.setOrigin(m_origin);
        record.setAsRead(m_asRead);
        for (std::size_t index = 0; index < m_alarmPlaces.size(); ++index)
            record.alarms().at(static_cast<qsizetype>(index))->setStoredIndex(m_alarmPlaces[index]);
    }

private:
    CalItemOrigin m_origin;
    std::shared_ptr<const Record> m_asRead;
    std::vector<int> m_alarmPlaces;
};

// The calls of a back end for a kind of item.
struct EventCalls {
    CalSpan span;

    auto send(CalendarStoreBackend &backend, CalEvent &event) const { return backend.sendEvent(event, span); }
    static auto takeIn(CalendarStoreBackend &backend, CalEvent &event, const QByteArray &text)
    {
        return backend.takeInEvent(event, text);
    }
    static auto remove(CalendarStoreBackend &backend, const CalEvent &event)
    {
        return backend.removeEvent(event, CalSpanAllEvents);
    }
};

struct TaskCalls {
    static auto send(CalendarStoreBackend &backend, CalTask &task) { return backend.sendTask(task); }
    static auto takeIn(CalendarStoreBackend &backend, CalTask &task, const QByteArray &text)
    {
        return backend.takeInTask(task, text);
    }
    static auto remove(CalendarStoreBackend &backend, const CalTask &task) { return backend.removeTask(task); }
};

template <typename Record, typename Calls>
Outcome moved(Record &item, CalDeparture &departure, const Entry &source, const Entry &target, const Calls &calls)
{
    if (Outcome arrived = calls.takeIn(*target.backend, item, departure.text()); !arrived)
        return arrived;
    const Outcome left = departure.leave();
    if (left)
        return {};
    // Both are whole. The new one goes, unless somebody has made something of it already.
    return calls.remove(*target.backend, item) ? left
                                               : Outcome(ItemTransfer::isInBoth(left.error(), source.shown->title()));
}

template <typename Record, typename Calls>
Result<ItemTransfer::Place, StoreError> saveInto(
    Record &item, const Entry &source, const Entry &target, const Calls &calls)
{
    auto sent = calls.send(*source.backend, item);
    if (!sent)
        return sent.error();
    const std::unique_ptr<CalDeparture> departure = std::move(sent).value();
    if (!departure)
        return ItemTransfer::Place::Source;

    const ReadState before(item);
    const CalCalendarPtr shown = item.calendar();
    item.setCalendar(target.own);
    const Outcome outcome = moved(item, *departure, source, target, calls);
    item.setCalendar(shown);
    if (!outcome) {
        before.giveBackTo(item);
        departure->stay();
        return outcome.error();
    }
    return ItemTransfer::Place::Target;
}

} // namespace

Result<ItemTransfer::Place, StoreError> ItemTransfer::save(
    CalEvent &event, CalSpan span, const Entry &source, const Entry &target)
{
    return saveInto(event, source, target, EventCalls { span });
}

Result<ItemTransfer::Place, StoreError> ItemTransfer::save(CalTask &task, const Entry &source, const Entry &target)
{
    return saveInto(task, source, target, TaskCalls());
}

StoreError ItemTransfer::isInBoth(const StoreError &refusal, const QString &oldCalendar)
{
    StoreError error = refusal;
    error.reason
        = QCoreApplication::translate("Vantle", "It is in both calendars now: it could not be taken out of “%1”.")
              .arg(oldCalendar)
        + u' ' + refusal.reason;
    return error;
}
