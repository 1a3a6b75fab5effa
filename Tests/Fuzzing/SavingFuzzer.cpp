// SPDX-License-Identifier: MIT
#include "Fuzzing.h"

#include <Answers.h>
#include <CalEvent.h>
#include <CalTask.h>
#include <ItemIndex.h>
#include <ItemPatch.h>
#include <ItemSet.h>
#include <RecordPlace.h>
#include <SeriesPatch.h>
#include <StoredText.h>
#include <ZoneRegistry.h>

#include <ContentLines.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using Fuzzing::require;

namespace
{

const QString setName = u"input.ics"_s;
const QDateTime now { QDate(2026, 3, 11), QTime(12, 0) };

CalCalendarPtr calendar()
{
    static const CalCalendarPtr record
        = std::make_shared<CalCalendar>(CalCalendar::Values { .uid = u"c"_s, .title = u"C"_s, .color = {} });
    return record;
}

// A text and what is shown of it.
class Shown final
{
public:
    Shown(const QByteArray &text, ICalendar::ZoneRegistry &zones)
        : m_set(std::make_shared<const Items::ItemSet>(setName, text, zones))
    {
        m_index.add(*m_set);
    }
    ~Shown() { m_index.remove(*m_set); }
    Shown(const Shown &) = delete;
    Shown &operator=(const Shown &) = delete;

    const Items::ItemSetPtr &set() const { return m_set; }
    CalTaskList tasks() const { return Items::tasksOf(m_index, calendar(), CalendarStoreBackend::TaskState::Any, {}); }
    CalEventList events(const QDateTime &start, const QDateTime &end) const
    {
        return Items::eventsOf(m_index, calendar(), Items::EventQuestion(start, end), [](const Items::GroupRef &) {});
    }

private:
    Items::ItemSetPtr m_set;
    Items::ItemIndex m_index;
};

// Each component of an event or to-do that is not of that group, to the byte.
QByteArrayList otherItems(const Items::ItemSet &set, int group, const QByteArray &text)
{
    const Items::ItemGroup &own = set.groups().at(static_cast<size_t>(group));
    const ICalendar::ContentLines lines(text);
    QByteArrayList others;
    for (int index = 0; index < set.document().items.size(); ++index) {
        if (index == own.master || own.overrides->contains(index))
            continue;
        const auto &component = lines.components()[static_cast<size_t>(set.item(index).component)];
        const qsizetype begin = lines.lines()[static_cast<size_t>(component.firstLine)].begin;
        others << text.sliced(begin, lines.lines()[static_cast<size_t>(component.lastLine)].end - begin).trimmed();
    }
    return others;
}

qsizetype sizeOf(const Items::ItemGroup &group)
{
    return group.overrides->size() + (group.master >= 0 ? 1 : 0);
}

void changeTexts(CalCalendarItem &record, Fuzzing::Input &input)
{
    const int which = input.choice(8);
    if (which & 1)
        record.setTitle(u"Other; \"title\", \\ with\nall of it"_s);
    if (which & 2)
        record.setNotes(std::nullopt);
    if (which & 4)
        record.setUrl(QUrl(u"https://example.org/a,b;c"_s));
}

void changeAlarms(CalCalendarItem &record, Fuzzing::Input &input)
{
    const auto fresh = std::make_shared<CalAlarm>();
    const CalAlarmPtr first = record.alarms().value(0);
    switch (input.choice(8)) {
    case 1:
        fresh->setRelativeTrigger(-900);
        fresh->setSound(u"bell\r\nEND:VALARM"_s);
        record.addAlarm(fresh);
        break;
    case 2:
        fresh->setAbsoluteTrigger(now);
        fresh->setAction(CalAlarmActionEmail);
        fresh->setEmailAddress(u"somebody@example.org"_s);
        record.addAlarm(fresh);
        break;
    case 3:
        if (first)
            record.removeAlarm(first);
        break;
    case 4:
        if (first)
            first->setRelativeTrigger(-86'400 * 7);
        break;
    case 5:
        if (first)
            first->setAction(CalAlarmActionProcedure);
        record.addAlarm(fresh);
        break;
    case 6:
        record.removeAlarms(record.alarms());
        break;
    default:
        break;
    }
}

// As a person moves an event: one of whole days by days of the calendar, of which some have another length.
QDateTime moved(const QDateTime &time, qint64 seconds, const CalEvent &event)
{
    return event.isAllDay() ? time.addDays(seconds / 86'400) : time.addSecs(seconds);
}

void changeTimes(CalEvent &event, Fuzzing::Input &input)
{
    constexpr std::array<qint64, 8> shifts { 1800, -3600, 86'400, -86'400 * 6, 86'400 * 31, -86'400 * 365, 1,
        86'400 / 2 };
    const qint64 shift = shifts.at(static_cast<size_t>(input.choice(static_cast<int>(shifts.size()))));
    switch (input.choice(8)) {
    case 1:
    case 2:
        event.setStartDate(moved(event.startDate(), shift, event));
        event.setEndDate(moved(event.endDate(), shift, event));
        break;
    case 3:
        event.setEndDate(event.endDate().addSecs(shift));
        break;
    case 4:
        event.setIsAllDay(!event.isAllDay());
        event.setStartDate(event.startDate().date().startOfDay());
        event.setEndDate(QDateTime(event.startDate().date(), QTime(23, 59, 59)));
        break;
    default:
        break;
    }
}

void changeTask(CalTask &task, Fuzzing::Input &input)
{
    switch (input.choice(6)) {
    case 1:
        task.setIsCompleted(!task.isCompleted());
        break;
    case 2:
        task.setDueDate(std::nullopt);
        break;
    case 3:
        task.setDueDate(now.addDays(input.choice(200)));
        break;
    case 4:
        task.setPriority(9);
        break;
    default:
        break;
    }
}

// What is read from the text after a change: the rest of it is as it was.
void requireOthersAsBefore(const Items::StoredText &before, const Shown &after, const CalCalendarItem &record,
    const QByteArray &text, qsizetype mostMore)
{
    require(after.set()->document().canBeChanged(), "a whole text stays whole");
    const auto group = Items::groupIn(*after.set(), record);
    require(group.has_value(), "the item is still there");
    const auto grown = sizeOf(after.set()->groups().at(static_cast<size_t>(*group))) - sizeOf(before.groupInSet());
    require(grown <= mostMore, "no more exceptions than were asked for");
    require(otherItems(*before.set, before.group, before.text) == otherItems(*after.set(), *group, text),
        "other items stay as they are, to the byte");
}

void saveTask(const Items::StoredText &stored, CalTask &task, Fuzzing::Input &input, ICalendar::ZoneRegistry &zones)
{
    changeTexts(task, input);
    changeTask(task, input);
    changeAlarms(task, input);
    const QByteArray text = Items::patchedText(stored.text, stored.item(), task, now);
    const Shown after(text, zones);
    requireOthersAsBefore(stored, after, task, text, 0);
    const ICalendar::Item &item = after.set()->representative(
        after.set()->groups().at(static_cast<size_t>(*Items::groupIn(*after.set(), task))));
    require(item.summary == task.title().value_or(QString()), "the title is what was set");
    require(item.toDo->isCompleted == task.isCompleted(), "done is what was set");
    require(item.toDo->priority == task.priority(), "the priority is what was set");
    require(item.alarms->size() == task.alarms().size(), "there are as many alarms as were set");
}

void saveSingleEvent(const Items::StoredText &stored, const CalEvent &event, ICalendar::ZoneRegistry &zones)
{
    const QByteArray text = Items::patchedText(stored.text, stored.item(), event, now);
    const Shown after(text, zones);
    requireOthersAsBefore(stored, after, event, text, 0);
    const auto group = Items::groupIn(*after.set(), event);
    const ICalendar::Item &item = after.set()->representative(after.set()->groups().at(static_cast<size_t>(*group)));
    require(item.summary == event.title().value_or(QString()), "the title is what was set");
    require(item.alarms->size() == event.alarms().size(), "there are as many alarms as were set");
    const QDateTime end = std::max(event.startDate(), event.endDate());
    const bool hasOtherTimes
        = event.startDate() != event.asRead()->startDate() || event.endDate() != event.asRead()->endDate();
    const auto isThere = [&](const CalEventPtr &each) {
        return each->origin().plainUid == event.origin().plainUid && each->startDate() == event.startDate()
            && (each->endDate() == end || event.isAllDay());
    };
    // Dates have years of four digits (RFC 5545, 3.3.4), in whatever zone they are written.
    const auto canBeWritten = [](const QDateTime &time) {
        const int year = time.toUTC().date().year();
        return year > 1 && year < 9999;
    };
    if (hasOtherTimes && event.isAllDay() == event.asRead()->isAllDay() && canBeWritten(event.startDate())
        && canBeWritten(end))
        require(std::ranges::any_of(after.events(event.startDate(), end), isThere), "the times are what was set");
}

void saveEvent(const Items::StoredText &stored, CalEvent &event, Fuzzing::Input &input, ICalendar::ZoneRegistry &zones)
{
    const int operation = input.choice(3);
    const bool isOfSeries = stored.groupInSet().needsExpansion;
    changeTexts(event, input);
    changeTimes(event, input);
    changeAlarms(event, input);
    if (!isOfSeries) {
        saveSingleEvent(stored, event, zones);
        return;
    }
    const CalSpan span = operation == 0 ? CalSpanThisEvent : CalSpanAllEvents;
    const auto changed = operation == 2 ? Items::seriesTextWithoutOccurrence(stored, event, now, zones)
                                        : Items::patchedSeriesText(stored, event, span, now, zones);
    if (!changed || changed.value().isEmpty())
        return; // refused, or the last occurrence is gone with the series
    const Shown after(changed.value(), zones);
    requireOthersAsBefore(stored, after, event, changed.value(), operation == 0 ? 1 : 0);
    if (operation != 2)
        return;
    const QDateTime start = event.asRead()->startDate();
    for (const CalEventPtr &each : after.events(start, start)) {
        const bool isIt = each->origin().plainUid == event.origin().plainUid
            && each->origin().recurrenceId == event.origin().recurrenceId
            && each->origin().distinction == event.origin().distinction; // two can have the same UID
        require(!isIt, "a removed occurrence is gone");
    }
}

} // namespace

// Any change of any item that a record can express, of one occurrence or of a whole series, reaches the text, and
// nothing that it does not concern.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::silenceLog();
    Fuzzing::Input input(data, size);
    ICalendar::ZoneRegistry zones;
    const Shown before(input.text(), zones);
    const ICalendar::Document &document = before.set()->document();
    // Such texts are refused.
    if (document.items.isEmpty() || !document.canBeChanged())
        return 0;
    const ICalendar::Item &item
        = document.items.at(input.choice(static_cast<int>(std::min<qsizetype>(document.items.size(), 255))));

    CalCalendarItemPtr record;
    if (item.kind == ICalendar::Item::Kind::Task) {
        const CalTaskList tasks = before.tasks();
        if (tasks.isEmpty())
            return 0;
        record = tasks.at(input.choice(static_cast<int>(std::min<qsizetype>(tasks.size(), 255))));
    } else if (item.start) {
        const QDateTime start = QDateTime::fromSecsSinceEpoch(item.start->toUtc(*ICalendar::ZoneRegistry::localZone()));
        const CalEventList events = before.events(start.addDays(-1), start.addDays(40));
        if (events.isEmpty())
            return 0;
        record = events.at(input.choice(static_cast<int>(std::min<qsizetype>(events.size(), 255))));
    }
    const auto group = record ? Items::groupIn(*before.set(), *record) : std::nullopt;
    if (!group)
        return 0;
    const Items::StoredText stored { before.set(), *group, input.text() };
    if (const auto task = std::dynamic_pointer_cast<CalTask>(record))
        saveTask(stored, *task, input, zones);
    else
        saveEvent(stored, *std::dynamic_pointer_cast<CalEvent>(record), input, zones);
    return 0;
}
