// SPDX-License-Identifier: MIT
#include "SeriesPatch.h"

#include "ItemPatch.h"
#include "LocalTimes.h"
#include "RecordPlace.h"
#include "Refusal.h"
#include "StoredText.h"

#include <CalEvent.h>

#include <CivilDate.h>
#include <ICalendarReader.h>
#include <SeriesEdit.h>
#include <SeriesOccurrence.h>
#include <TextPatcher.h>
#include <ZoneRegistry.h>

#include <QCoreApplication>

namespace Items
{

namespace
{

using ICalendar::SeriesFault;

ICalendar::EventTimes timesOf(const CalEvent &event)
{
    if (!event.isAllDay())
        return { false, event.startDate().toSecsSinceEpoch(), event.endDate().toSecsSinceEpoch() };
    const auto midnight
        = [](QDate day) { return ICalendar::dayNumber(day.year(), day.month(), day.day()) * ICalendar::secondsPerDay; };
    return { true, midnight(event.startDate().toLocalTime().date()),
        midnight(event.endDate().toLocalTime().date().addDays(1)) };
}

ICalendar::SeriesItems itemsOf(const StoredText &stored)
{
    const ItemGroup &group = stored.groupInSet();
    return { group.master, *group.overrides };
}

StoreError refusalOf(const CalEvent &event, SeriesFault fault)
{
    if (fault == SeriesFault::NoSuchOccurrence) {
        return refusal(event, StoreError::Code::NotFound,
            QCoreApplication::translate("Vantle", "The event does not repeat on that day any more."));
    }
    return refusal(event, StoreError::Code::Invalid,
        QCoreApplication::translate(
            "Vantle", "It repeats by a pattern that cannot follow there, such as the last working day of a month."));
}

// A series of days is given times of day: those of the clock here. The text gets what its times need.
ICalendar::TimeForm addLocalForm(
    QByteArray &text, const StoredText &stored, ICalendar::UtcSeconds instant, ICalendar::ZoneRegistry &zones)
{
    const int component = stored.set->item(stored.groupInSet().master).component;
    ICalendar::TextPatcher patcher(text);
    const TimeValue value = localTimeValue(patcher, component, instant);
    text = patcher.patchedText();
    // What the name means is for the reader to say.
    patcher.setProperty(component, "DTSTART", value.value, value.parameters);
    const ICalendar::Document document = ICalendar::readDocument(patcher.patchedText(), zones);
    const auto &start = document.items.at(stored.groupInSet().master).start;
    return start ? ICalendar::TimeForm { start->form, start->zone, value.parameters } : ICalendar::TimeForm::utc();
}

// The rule is the person's own, so it does not move with the times.
QByteArray withRule(const QByteArray &text, const StoredText &stored, const CalEvent &event, const QDateTime &now,
    ICalendar::ZoneRegistry &zones)
{
    const ItemSet set(stored.set->name(), text, zones);
    const auto group = groupIn(set, event);
    const int master = group ? set.groups().at(static_cast<size_t>(*group)).master : -1;
    if (master < 0)
        return text;
    // Noted as one change with the others.
    ICalendar::Item noted = set.item(master);
    noted.sequence = stored.set->item(stored.groupInSet().master).sequence;
    return ICalendar::stamped(
        textWithRule(text, noted.component, event.recurrenceRule()), noted, now.toSecsSinceEpoch());
}

} // namespace

Result<QByteArray, StoreError> patchedSeriesText(
    const StoredText &stored, const CalEvent &event, CalSpan span, const QDateTime &now, ICalendar::ZoneRegistry &zones)
{
    const CalEvent &read = *event.asRead();
    // Times of a series move by rules of their own.
    CalEvent others(event);
    others.setIsAllDay(read.isAllDay());
    others.setStartDate(read.startDate());
    others.setEndDate(read.endDate());
    others.setRecurrenceRule(read.recurrenceRule());

    // An exception belongs to its series by the UID alone.
    if (span == CalSpanThisEvent && stored.groupInSet().ordinal > 0)
        return damaged(event);
    const QByteArray named
        = span == CalSpanThisEvent ? textWithUids(*stored.set, stored.group, stored.text) : stored.text;
    QByteArray text = named;
    ICalendar::SeriesChange change;
    change.recurrenceId = event.origin().recurrenceId.toLatin1();
    change.read = timesOf(read);
    change.changed = timesOf(event);
    change.timedForm = ICalendar::TimeForm::utc();
    if (read.isAllDay() && !event.isAllDay())
        change.timedForm = addLocalForm(text, stored, event.startDate().toSecsSinceEpoch(), zones);
    change.stamp = now.toSecsSinceEpoch();
    change.patch = [&](const QByteArray &present, const ICalendar::Item &item) {
        return differsFromRead(others) ? patchedText(present, item, others, now) : present;
    };
    const ICalendar::ZonePtr local = ICalendar::ZoneRegistry::localZone();
    const ICalendar::SeriesContext context { itemsOf(stored), zones, *local };
    const auto changed = span == CalSpanAllEvents ? ICalendar::textWithSeriesChanged(text, context, change)
                                                  : ICalendar::textWithOccurrenceChanged(text, context, change);
    if (!changed)
        return refusalOf(event, changed.error());
    // One occurrence has no rule. A text that would say nothing but UIDs stays as it is.
    if (span == CalSpanThisEvent)
        return changed.value() == named ? stored.text : changed.value();
    return hasOtherRule(event) ? withRule(changed.value(), stored, event, now, zones) : changed.value();
}

Result<QByteArray, StoreError> seriesTextWithoutOccurrence(
    const StoredText &stored, const CalEvent &event, const QDateTime &now, ICalendar::ZoneRegistry &zones)
{
    const ICalendar::ZonePtr local = ICalendar::ZoneRegistry::localZone();
    const ICalendar::SeriesContext context { itemsOf(stored), zones, *local };
    const auto without = ICalendar::textWithoutOccurrence(
        stored.text, context, event.origin().recurrenceId.toLatin1(), now.toSecsSinceEpoch());
    if (!without)
        return refusalOf(event, without.error());
    return without.value();
}

} // namespace Items
