// SPDX-License-Identifier: MIT
#include "Operations.h"

#include <CalendarFolder.h>

#include <QDir>
#include <QMap>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace Operations
{

namespace
{

const QDate firstDay(2026, 3, 9);
const QDate changedDay(2026, 3, 11);
const QByteArray kept = "X-KEEP;A=b:c\\, d\r\n";
const QString prefix = u"DUMBY "_s; // of the first step of a save of all

QString title(int number)
{
    return u"Number %1"_s.arg(number);
}

QString notes(int number)
{
    constexpr int repetitions = 5000; // more than one page of a disk
    return u"%1 "_s.arg(number).repeated(repetitions).trimmed();
}

// The number that an item was given last; nothing when it is of two minds.
template <typename Record> std::optional<int> numberIn(const Record &record)
{
    const QString text = record.title().value_or(QString());
    bool isNumber = false;
    const int number = text.mid(7).toInt(&isNumber);
    if (!isNumber || text != title(number) || record.notes() != notes(number))
        return std::nullopt;
    return number;
}

QByteArray numberZero()
{
    return "DESCRIPTION:" + notes(0).toUtf8() + "\r\n" + kept;
}

CalTaskPtr taskOf(const CalCalendarStore &store, const QString &uid)
{
    for (const CalTaskPtr &task :
        store.tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store.calendars()))) {
        if (task->origin().plainUid == uid)
            return task;
    }
    return nullptr;
}

CalEventList eventsOf(const CalCalendarStore &store, const QString &uid, QDate day)
{
    CalEventList events = store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
        day.startOfDay(), day.addDays(1).startOfDay().addSecs(-1), store.calendars()));
    events.removeIf([&uid](const CalEventPtr &event) { return event->origin().plainUid != uid; });
    return events;
}

StoreError missing(const QString &uid)
{
    return { .code = StoreError::Code::NotFound, .item = uid, .calendar = {}, .reason = u"It is not there."_s };
}

template <typename Record> void setNumber(const std::shared_ptr<Record> &record, int number)
{
    record->setTitle(title(number));
    record->setNotes(notes(number));
}

std::optional<StoreError> saved(CalCalendarStore &store, const CalTaskPtr &task)
{
    StoreError error;
    return store.saveTask_error(task, &error) ? std::nullopt : std::optional(error);
}

std::optional<StoreError> saved(CalCalendarStore &store, const CalEventPtr &event, CalSpan span)
{
    StoreError error;
    return store.saveEvent_span_error(event, span, &error) ? std::nullopt : std::optional(error);
}

std::optional<StoreError> changeTask(CalCalendarStore &store, int number)
{
    const CalTaskPtr task = taskOf(store, u"task"_s);
    if (!task)
        return missing(u"task"_s);
    setNumber(task, number);
    return saved(store, task);
}

std::optional<StoreError> changeEvent(CalCalendarStore &store, int number)
{
    const CalEventPtr event = eventsOf(store, u"event"_s, changedDay).value(0);
    if (!event)
        return missing(u"event"_s);
    setNumber(event, number);
    return saved(store, event, CalSpanAllEvents);
}

std::optional<StoreError> changeOccurrence(CalCalendarStore &store, int number)
{
    const CalEventPtr event = eventsOf(store, u"occurrence"_s, changedDay).value(0);
    if (!event)
        return missing(u"occurrence"_s);
    setNumber(event, number);
    return saved(store, event, CalSpanThisEvent);
}

// In the two steps of the event sheet.
std::optional<StoreError> changeSeries(CalCalendarStore &store, int number)
{
    const CalEventPtr event = eventsOf(store, u"series"_s, changedDay).value(0);
    if (!event)
        return missing(u"series"_s);
    setNumber(event, number);
    event->setTitle(prefix + title(number));
    if (const auto refusal = saved(store, event, CalSpanThisEvent))
        return refusal;
    event->setTitle(title(number));
    return saved(store, event, CalSpanAllEvents);
}

std::optional<StoreError> create(CalCalendarStore &store, int number)
{
    const auto task = std::make_shared<CalTask>();
    task->setCalendar(store.calendarWithUID(u"Home"_s));
    setNumber(task, number);
    return saved(store, task);
}

std::optional<StoreError> move(CalCalendarStore &store, int number)
{
    const CalTaskPtr task = taskOf(store, u"move"_s);
    if (!task)
        return missing(u"move"_s);
    setNumber(task, number);
    const bool isAtHome = task->calendar()->uid() == u"Home"_s;
    task->setCalendar(store.calendarWithUID(isAtHome ? u"Work"_s : u"Home"_s));
    return saved(store, task);
}

std::optional<StoreError> removeAndRestore(CalCalendarStore &store, int)
{
    const CalTaskPtr task = taskOf(store, u"remove"_s);
    if (!task)
        return missing(u"remove"_s);
    StoreError error;
    if (!store.removeTask_error(task, &error) || !store.undoRemoval_error(&error))
        return error;
    return std::nullopt;
}

struct Named {
    QString name;
    Operation operation;
};

const std::vector<Named> &all()
{
    static const std::vector<Named> operations {
        { u"task"_s, changeTask },
        { u"event"_s, changeEvent },
        { u"occurrence"_s, changeOccurrence },
        { u"series"_s, changeSeries },
        { u"create"_s, create },
        { u"move"_s, move },
        { u"remove"_s, removeAndRestore },
    };
    return operations;
}

QByteArray removedText()
{
    return calendarText(taskText("remove", "Number 0", numberZero()));
}

// Names that a reader could take for an item, and that nobody expects.
QString strayNameIn(const CalendarFolder &folder, const QString &operation)
{
    for (const QString &calendar : { u"Home"_s, u"Work"_s }) {
        const QStringList names
            = QDir(folder.path(calendar)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        for (const QString &name : names) {
            const bool isItem = name.endsWith(u".ics"_s);
            const bool isHidden = name.startsWith(u'.');
            if (isItem == isHidden)
                return calendar + u'/' + name;
            const bool isKnown = Operations::names().contains(name.chopped(4));
            if (isItem && !isKnown && operation != u"create"_s && operation != u"move"_s)
                return calendar + u'/' + name;
        }
    }
    return {};
}

bool isOneOf(const std::optional<int> &number, int done)
{
    return number == done || number == done + 1;
}

QString faultInTask(const CalCalendarStore &store, const CalendarFolder &folder, int done)
{
    const CalTaskPtr task = taskOf(store, u"task"_s);
    if (!task || !isOneOf(numberIn(*task), done))
        return u"the to-do is neither old nor new"_s;
    return folder.read(u"Home/task.ics"_s).contains(kept) ? QString() : u"the to-do has lost a line"_s;
}

QString faultInEvent(const CalCalendarStore &store, const CalendarFolder &folder, int done)
{
    const CalEventPtr event = eventsOf(store, u"event"_s, changedDay).value(0);
    if (!event || !isOneOf(numberIn(*event), done))
        return u"the event is neither old nor new"_s;
    return folder.read(u"Home/event.ics"_s).contains(kept) ? QString() : u"the event has lost a line"_s;
}

QString faultInOccurrence(const CalCalendarStore &store, const CalendarFolder &folder, int done)
{
    for (int index = 0; index < 4; ++index) {
        const QDate day = firstDay.addDays(index);
        const CalEventList events = eventsOf(store, u"occurrence"_s, day);
        if (events.size() != 1)
            return u"a day has %1 occurrences"_s.arg(events.size());
        const auto number = numberIn(*events.first());
        if (day == changedDay ? !isOneOf(number, done) : number != 0)
            return u"an occurrence is neither old nor new"_s;
    }
    return folder.read(u"Home/occurrence.ics"_s).contains(kept) ? QString() : u"the series has lost a line"_s;
}

QString faultInSeries(const CalCalendarStore &store, const CalendarFolder &folder, int done)
{
    std::optional<int> common;
    for (int index = 0; index < 4; ++index) {
        const CalEventList events = eventsOf(store, u"series"_s, firstDay.addDays(index));
        if (events.size() != 1)
            return u"a day has %1 occurrences"_s.arg(events.size());
        const auto number = numberIn(*events.first());
        if (!isOneOf(number, done) || (common && number != common))
            return u"the series is neither old nor new"_s;
        common = number;
    }
    const QByteArray text = folder.read(u"Home/series.ics"_s);
    if (text.contains("DUMBY") || text.contains("RECURRENCE-ID"))
        return u"the first step of the save was left behind"_s;
    return text.contains(kept) ? QString() : u"the series has lost a line"_s;
}

QString faultInCreated(const CalCalendarStore &store, const CalendarFolder &, int done)
{
    QMap<int, int> found;
    for (const CalTaskPtr &task :
        store.tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store.calendars()))) {
        if (Operations::names().contains(task->origin().plainUid))
            continue;
        const auto number = numberIn(*task);
        if (!number || *number > done + 1 || ++found[*number] > 1)
            return u"a new to-do is not what was made"_s;
    }
    const bool hasAll = found.size() == done || (found.size() == done + 1 && found.contains(done + 1));
    return hasAll ? QString() : u"%1 of %2 new to-dos are there"_s.arg(found.size()).arg(done);
}

QString faultInMoved(const CalCalendarStore &store, const CalendarFolder &folder, int done)
{
    int newest = -1;
    int copies = 0;
    for (const CalTaskPtr &task :
        store.tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store.calendars()))) {
        if (task->origin().plainUid != u"move"_s)
            continue;
        const auto number = numberIn(*task);
        if (!isOneOf(number, done))
            return u"a copy of the moved to-do is neither old nor new"_s;
        if (!folder.read(task->calendar()->uid() + u'/' + task->origin().resource).contains(kept))
            return u"a copy of the moved to-do has lost a line"_s;
        newest = std::max(newest, *number);
        ++copies;
    }
    if (copies == 0)
        return u"the moved to-do is gone"_s;
    return copies == 1 || newest == done + 1 ? QString() : u"a finished move has left a second copy"_s;
}

QString faultInRemoved(const CalCalendarStore &, const CalendarFolder &folder, int)
{
    const QString name = u"Home/remove.ics"_s;
    const bool isWhole = !QFile::exists(folder.path(name)) || folder.read(name) == removedText();
    return isWhole ? QString() : u"the removed to-do is neither there as it was nor gone"_s;
}

} // namespace

std::optional<Operation> named(const QString &name)
{
    const auto found = std::ranges::find(all(), name, &Named::name);
    return found == all().end() ? std::nullopt : std::optional(found->operation);
}

const QStringList &names()
{
    static const QStringList names = [] {
        QStringList all;
        for (const Named &each : Operations::all())
            all << each.name;
        return all;
    }();
    return names;
}

void prepare(const CalendarFolder &folder)
{
    const QByteArray series = "DURATION:PT1H\r\nRRULE:FREQ=DAILY;COUNT=4\r\n" + numberZero();
    folder.write(u"Home/task.ics"_s, calendarText(taskText("task", "Number 0", numberZero())));
    folder.write(u"Home/event.ics"_s,
        calendarText(eventText("event", "Number 0", "20260311T090000", "DURATION:PT1H\r\n" + numberZero())));
    folder.write(
        u"Home/occurrence.ics"_s, calendarText(eventText("occurrence", "Number 0", "20260309T120000", series)));
    folder.write(u"Home/series.ics"_s, calendarText(eventText("series", "Number 0", "20260309T150000", series)));
    folder.write(u"Home/move.ics"_s, calendarText(taskText("move", "Number 0", numberZero())));
    folder.write(u"Home/remove.ics"_s, removedText());
    QDir().mkpath(folder.path(u"Work"_s));
}

QString faultIn(const CalendarFolder &folder, const QString &operation, int done)
{
    using Look = QString (*)(const CalCalendarStore &, const CalendarFolder &, int);
    static const QMap<QString, Look> looks {
        { u"task"_s, faultInTask },
        { u"event"_s, faultInEvent },
        { u"occurrence"_s, faultInOccurrence },
        { u"series"_s, faultInSeries },
        { u"create"_s, faultInCreated },
        { u"move"_s, faultInMoved },
        { u"remove"_s, faultInRemoved },
    };

    if (const QString stray = strayNameIn(folder, operation); !stray.isEmpty())
        return u"a file is left behind: "_s + stray;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(folder.openWithoutWatching());
    const CalCalendarStore store(std::move(backends));
    // Nothing happens to the items on which another operation works.
    for (const QString &each : names()) {
        if (each == u"create"_s && operation != each)
            continue;
        if (const QString fault = looks.value(each)(store, folder, each == operation ? done : 0); !fault.isEmpty())
            return fault;
    }
    return {};
}

} // namespace Operations
