// SPDX-License-Identifier: MIT
#pragma once

#include "ContentLines.h"
#include "ICalendarItem.h"
#include "RecurrenceExpander.h"
#include "TimeForm.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace ICalendar
{

class ZoneRegistry;

// Which items of a file make a series, by their place in Document::items. It stays
// the same while properties and alarms change.
struct SeriesItems {
    int master = -1;
    QList<int> overrides;
};

// The text of a file and one series in it, taken apart.
class SeriesText
{
public:
    // Where an occurrence is by the series itself, before any override moved it.
    struct Place {
        CivilTime start; // in the form of the series where the two can name the same instant
        CivilTime end;
        bool isMade = false; // by the start, a rule or an added date, and not excluded
    };

    // `items` must name items of this text.
    SeriesText(const QByteArray &text, const SeriesItems &items, ZoneRegistry &zones, const Zone &local);

    const ContentLines &lines() const { return m_lines; }
    const QByteArray &text() const { return m_lines.text(); }
    const SeriesItems &items() const { return m_items; }
    const Item &item(int index) const { return m_document.items.at(index); }
    const Item &master() const { return item(m_items.master); }
    const Zone &local() const { return m_local; }
    // That of the master's start.
    const TimeForm &form() const { return m_form; }

    // `recurrenceId` names the occurrence by its instant ("20260311T080000Z"), its day, or its floating time.
    // Nothing when it is none of these.
    std::optional<Place> place(const QByteArray &recurrenceId) const;
    Place place(const CivilTime &recurrenceId) const;
    // The override that counts for the occurrence at that place, and all of them.
    int overrideAt(const Place &place) const; // -1 for none
    QList<int> overridesAt(const Place &place) const;
    // Whether anything of the series takes place at all.
    bool hasOccurrences() const;

    // The first line of that name in an item, -1 for none.
    int lineOf(int index, const QByteArray &name) const;
    PropertyLine property(int line) const;
    // The form in which an item writes a time that was read from that line.
    TimeForm formOf(int line, const CivilTime &time) const;

private:
    bool isNamedBy(const Place &place, const CivilTime &recurrenceId) const;

    ContentLines m_lines;
    Document m_document;
    SeriesItems m_items;
    const Zone &m_local;
    TimeForm m_form;
};

} // namespace ICalendar
