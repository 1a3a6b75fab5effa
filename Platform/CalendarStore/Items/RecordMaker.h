// SPDX-License-Identifier: MIT
#pragma once

#include "EventIndex.h"
#include "ItemTimes.h"

#include <CalTypes.h>

#include <ICalendarItem.h>

namespace Items
{

class ItemIndex;

// Makes the records that queries hand out, marked as read.
class RecordMaker final
{
public:
    RecordMaker(const ItemIndex &index, CalCalendarPtr calendar, ICalendar::ZonePtr local);

    // `item` holds the values: the series' own, or an override's. `recurrenceId` is the text that names
    // the occurrence, empty for an event that happens once.
    CalEventPtr event(
        const GroupRef &ref, const ICalendar::Item &item, const ItemTimes &times, const QString &recurrenceId) const;
    CalTaskPtr task(const GroupRef &ref) const;

private:
    void fill(
        CalCalendarItem &record, const GroupRef &ref, const ICalendar::Item &item, const QString &recurrenceId) const;
    CalAlarmPtr alarm(const ICalendar::Alarm &alarm, int index) const;
    QDateTime localTime(ICalendar::UtcSeconds instant) const;

    const ItemIndex &m_index;
    CalCalendarPtr m_calendar;
    ICalendar::ZonePtr m_local;
};

// The text by which an occurrence is known: the same in whichever zone the process stands.
QString recurrenceIdText(const ICalendar::CivilTime &instant);
// Empty for what is no occurrence of a series.
QString recurrenceIdText(const std::optional<ICalendar::CivilTime> &instant);

} // namespace Items
