// SPDX-License-Identifier: MIT
#include "AlarmPatch.h"

#include <CalAlarm.h>
#include <CalCalendarItem.h>

#include <TextPatcher.h>
#include <ValueTexts.h>

#include <QByteArrayList>
#include <QSet>

#include <algorithm>
#include <optional>

namespace Items
{

namespace
{

struct Line {
    QByteArray name;
    std::optional<QByteArray> value; // absent when the alarm shall not have the property
    QByteArray parameters;
};

bool hasSound(const CalAlarm &alarm)
{
    return alarm.sound() && !alarm.sound()->isEmpty();
}

// A sound makes a message alarm one that is heard.
QString actionOf(const CalAlarm &alarm)
{
    return alarm.action() == CalAlarmActionDisplay && hasSound(alarm) ? CalAlarmActionSound : alarm.action();
}

Line trigger(const CalAlarm &alarm)
{
    if (alarm.absoluteTrigger())
        return { "TRIGGER", ICalendar::utcText(alarm.absoluteTrigger()->toSecsSinceEpoch()), ";VALUE=DATE-TIME" };
    return { "TRIGGER", ICalendar::lengthText(qRound64(alarm.relativeTrigger())),
        alarm.isRelatedToEnd() ? ";RELATED=END" : "" };
}

// What the alarm plays or opens.
Line attachment(const CalAlarm &alarm)
{
    const QString action = actionOf(alarm);
    if (action == CalAlarmActionSound && hasSound(alarm))
        return { "ATTACH", alarm.sound()->toUtf8(), {} };
    if (action == CalAlarmActionProcedure && alarm.url())
        return { "ATTACH", alarm.url()->toEncoded(), {} };
    return { "ATTACH", std::nullopt, {} };
}

Line recipient(const CalAlarm &alarm)
{
    const QByteArray address = alarm.emailAddress().value_or(QString()).trimmed().toUtf8();
    if (actionOf(alarm) != CalAlarmActionEmail || address.isEmpty())
        return { "ATTENDEE", std::nullopt, {} };
    return { "ATTENDEE", "mailto:" + address, {} };
}

// What RFC 5545, section 3.6.6, wants of each kind of alarm besides.
QList<Line> requiredTexts(const CalAlarm &alarm, const CalCalendarItem &item)
{
    const QString action = actionOf(alarm);
    const QByteArray title = ICalendar::escapedText(item.title().value_or(QString()));
    QList<Line> lines;
    if (action == CalAlarmActionEmail)
        lines << Line { "SUMMARY", title, {} };
    if (action == CalAlarmActionEmail || action == CalAlarmActionDisplay)
        lines << Line { "DESCRIPTION", title, {} };
    return lines;
}

// A control character in a name from elsewhere must not begin a line of its own.
QByteArray withoutLineEnds(QByteArray value)
{
    return value.replace('\r', "").replace('\n', "");
}

QByteArrayList linesOfNewAlarm(const CalAlarm &alarm, const CalCalendarItem &item)
{
    QByteArrayList lines { "BEGIN:VALARM", "ACTION:" + actionOf(alarm).toUtf8() };
    for (const Line &line :
        QList<Line> { trigger(alarm), attachment(alarm), recipient(alarm) } + requiredTexts(alarm, item)) {
        if (line.value)
            lines << line.name + line.parameters + ':' + withoutLineEnds(*line.value);
    }
    return lines << "END:VALARM";
}

void setFirst(ICalendar::TextPatcher &patcher, int component, const Line &line)
{
    if (line.value)
        patcher.setFirstProperty(component, line.name, withoutLineEnds(*line.value), line.parameters);
    else
        patcher.removeFirstProperty(component, line.name);
}

bool hasSameTrigger(const CalAlarm &left, const CalAlarm &right)
{
    if (left.absoluteTrigger() || right.absoluteTrigger())
        return left.absoluteTrigger() == right.absoluteTrigger();
    return left.relativeTrigger() == right.relativeTrigger() && left.isRelatedToEnd() == right.isRelatedToEnd();
}

void patchAlarm(ICalendar::TextPatcher &patcher, int component, const CalAlarm &alarm, const CalAlarm &read,
    const CalCalendarItem &item)
{
    const bool isOtherAction = actionOf(alarm) != read.action();
    if (isOtherAction)
        patcher.setProperty(component, "ACTION", actionOf(alarm).toUtf8());
    if (!hasSameTrigger(alarm, read)) {
        const auto present = patcher.propertyLine(component, "TRIGGER");
        const QByteArray others = present ? present->parametersWithout({ "VALUE", "RELATED", "TZID" }) : QByteArray();
        patcher.setProperty(component, "TRIGGER", *trigger(alarm).value, trigger(alarm).parameters + others);
    }
    // An attachment that the record does not expose (of an e-mail, for instance) is none of ours.
    if (attachment(alarm).value != attachment(read).value)
        setFirst(patcher, component, attachment(alarm));
    if (recipient(alarm).value != recipient(read).value)
        setFirst(patcher, component, recipient(alarm));
    if (!isOtherAction)
        return;
    for (const Line &line : requiredTexts(alarm, item)) {
        if (!patcher.property(component, line.name))
            patcher.setProperty(component, line.name, *line.value);
    }
}

CalAlarmPtr alarmStoredAt(const CalCalendarItem &item, int index)
{
    const auto found = std::ranges::find_if(
        item.alarms(), [index](const CalAlarmPtr &alarm) { return alarm->storedIndex() == index; });
    return found == item.alarms().end() ? nullptr : *found;
}

bool isSame(const CalAlarm &left, const CalAlarm &right)
{
    return actionOf(left) == actionOf(right) && hasSameTrigger(left, right)
        && attachment(left).value == attachment(right).value && recipient(left).value == recipient(right).value;
}

// Those that the text does not have yet; of two that were read from one place, the second.
CalAlarmList newAlarms(const CalCalendarItem &record, const CalCalendarItem &read)
{
    CalAlarmList added;
    QSet<int> seen;
    for (const CalAlarmPtr &alarm : record.alarms()) {
        const int index = alarm->storedIndex();
        if (index < 0 || seen.contains(index) || !alarmStoredAt(read, index))
            added << alarm;
        seen.insert(index);
    }
    return added;
}

} // namespace

void patchAlarms(
    ICalendar::TextPatcher &patcher, int component, const CalCalendarItem &record, const CalCalendarItem &read)
{
    const std::vector<int> places = patcher.componentsWithin(component, "VALARM");
    for (const CalAlarmPtr &before : read.alarms()) {
        if (before->storedIndex() < 0 || before->storedIndex() >= static_cast<int>(places.size()))
            continue;
        const int place = places[static_cast<std::size_t>(before->storedIndex())];
        if (const CalAlarmPtr alarm = alarmStoredAt(record, before->storedIndex()))
            patchAlarm(patcher, place, *alarm, *before, record);
        else
            patcher.removeComponent(place);
    }
    for (const CalAlarmPtr &alarm : newAlarms(record, read))
        patcher.appendComponent(component, linesOfNewAlarm(*alarm, record));
}

bool hasOtherAlarms(const CalCalendarItem &record, const CalCalendarItem &read)
{
    if (record.alarms().size() != read.alarms().size() || !newAlarms(record, read).isEmpty())
        return true;
    return std::ranges::any_of(record.alarms(),
        [&read](const CalAlarmPtr &alarm) { return !isSame(*alarm, *alarmStoredAt(read, alarm->storedIndex())); });
}

void renumberAlarms(const CalCalendarItem &record)
{
    CalAlarmList inOrderOfText = record.alarms();
    std::ranges::stable_sort(inOrderOfText, [](const CalAlarmPtr &left, const CalAlarmPtr &right) {
        // New ones, of index -1, come last.
        return static_cast<unsigned>(left->storedIndex()) < static_cast<unsigned>(right->storedIndex());
    });
    int index = 0;
    for (const CalAlarmPtr &alarm : inOrderOfText) {
        alarm->setAction(actionOf(*alarm));
        alarm->setStoredIndex(index++);
    }
}

} // namespace Items
