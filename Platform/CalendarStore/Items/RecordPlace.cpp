// SPDX-License-Identifier: MIT
#include "RecordPlace.h"

#include "AlarmPatch.h"
#include "ItemExtract.h"
#include "ItemPatch.h"
#include "RecordMaker.h"

#include <CalEvent.h>
#include <CalTask.h>
#include <TextPatcher.h>

#include <QUuid>

namespace Items
{

namespace
{

// How many groups of the same UID the set has before the record's own.
int ordinalOf(const CalItemOrigin &origin)
{
    const QString numbered = origin.resource + u'#';
    return origin.distinction.startsWith(numbered) ? origin.distinction.mid(numbered.size()).toInt() - 1 : 0;
}

ICalendar::Item::Kind kindOf(const CalCalendarItem &record)
{
    return record.kind() == CalItemKind::Event ? ICalendar::Item::Kind::Event : ICalendar::Item::Kind::Task;
}

// What a save makes of some values of a to-do.
void takeStoredValues(CalTask &task, const ICalendar::Item &item)
{
    const std::optional<ICalendar::UtcSeconds> completed = item.toDo->completed;
    task.setCompletedDate(completed ? std::optional(QDateTime::fromSecsSinceEpoch(*completed)) : std::nullopt);
    task.setIsDueDateOnly(item.toDo->due && item.toDo->due->isDate());
}

void takeStoredValues(CalEvent & /*event*/, const ICalendar::Item & /*item*/) { }

template <typename Record> void countRecordAsRead(Record &record, const ItemIndex &index, const ItemSet &set)
{
    if (const auto origin = originIn(index, set, record))
        record.setOrigin(*origin);
    if (const auto group = groupIn(set, record))
        takeStoredValues(record, set.representative(set.groups().at(static_cast<size_t>(*group))));
    renumberAlarms(record);
    record.markAsRead();
}

template <typename Record>
QByteArray textOfNewRecord(
    const Record &record, const QString &uid, const QDateTime &now, ICalendar::ZoneRegistry &zones)
{
    const QByteArray text = newItemText(record, uid, now);
    const ItemSet empty(uid, text, zones);
    return patchedText(text, empty.item(0), record, now);
}

} // namespace

std::optional<int> groupIn(const ItemSet &set, const CalCalendarItem &record)
{
    const CalItemOrigin &origin = record.origin();
    for (int index = 0; index < static_cast<int>(set.groups().size()); ++index) {
        const ItemGroup &group = set.groups().at(static_cast<size_t>(index));
        const ICalendar::Item &item = set.representative(group);
        if (group.kind != kindOf(record) || item.uid != origin.plainUid || group.ordinal != ordinalOf(origin))
            continue;
        // A series is one group, whichever of its occurrences the record is.
        const QString recurrenceId = recurrenceIdText(item.repetition->recurrenceId);
        if (group.needsExpansion || recurrenceId == origin.recurrenceId)
            return index;
    }
    return std::nullopt;
}

std::optional<CalItemOrigin> originIn(const ItemIndex &index, const ItemSet &set, const CalCalendarItem &record)
{
    const auto group = groupIn(set, record);
    if (!group)
        return std::nullopt;
    CalItemOrigin origin = record.origin();
    origin.resource = set.name();
    origin.distinction = index.distinctionOf({ &set, *group });
    origin.version = set.version();
    return origin;
}

QByteArray textWithUids(const ItemSet &set, int index, const QByteArray &text)
{
    const ItemGroup &group = set.groups().at(static_cast<size_t>(index));
    ICalendar::TextPatcher patcher(text);
    for (const int member : (group.master >= 0 ? QList<int> { group.master } : QList<int>()) + *group.overrides) {
        const ICalendar::Item &item = set.item(member);
        if (patcher.property(item.component, "UID").value_or(QByteArray()).trimmed().isEmpty())
            patcher.setProperty(item.component, "UID", ICalendar::escapedText(item.uid));
    }
    return patcher.patchedText();
}

std::optional<QByteArray> textToSend(const ItemSet &set, const CalCalendarItem &record, const QByteArray &text)
{
    const auto index = groupIn(set, record);
    if (!index)
        return std::nullopt;
    // Components keep their places: only lines of theirs have changed.
    return textOfGroupAlone(set, *index, textWithUids(set, *index, text));
}

std::optional<CalItemOrigin> originOfSent(
    const QString &name, const CalCalendarItem &record, const QByteArray &text, ICalendar::ZoneRegistry &zones)
{
    CalItemOrigin origin = record.origin();
    origin.resource = name;
    origin.distinction.clear();
    const ItemSet set(name, text, zones);
    if (!set.document().canBeChanged() || set.groups().size() != 1)
        return std::nullopt;
    origin.plainUid = set.uidOf(set.groups().front());
    return origin;
}

void countAsRead(CalTask &task, const ItemIndex &index, const ItemSet &set)
{
    countRecordAsRead(task, index, set);
}

void countAsRead(CalEvent &event, const ItemIndex &index, const ItemSet &set)
{
    countRecordAsRead(event, index, set);
}

QByteArray textOfNew(const CalTask &task, const QString &uid, const QDateTime &now, ICalendar::ZoneRegistry &zones)
{
    return textOfNewRecord(task, uid, now, zones);
}

QByteArray textOfNew(const CalEvent &event, const QString &uid, const QDateTime &now, ICalendar::ZoneRegistry &zones)
{
    return textOfNewRecord(event, uid, now, zones);
}

QString newIdentifier()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace Items
