// SPDX-License-Identifier: MIT
#pragma once

#include "CalCalendarItem.h"

#include <QHash>
#include <QString>

#include <memory>
#include <vector>

class CalendarStoreBackend;

// The calendars of all back ends at one moment, in the store's order.
//
// A back end names its calendars by itself, so two of them can choose the same
// uid: the calendar of the later back end is then shown under a uid with a
// suffix. Here alone both names are known. A snapshot: back ends may take in a
// change between two questions.
class MergedCalendars final
{
public:
    struct Entry {
        CalendarStoreBackend *backend = nullptr;
        CalCalendarPtr own; // as the back end knows it
        CalCalendarPtr shown; // as the store shows it: the same record unless the uid has a suffix
        int rank = 0; // its place in the store's order
    };

    explicit MergedCalendars(const std::vector<std::unique_ptr<CalendarStoreBackend>> &backends);

    // In the store's order.
    const std::vector<Entry> &entries() const { return m_entries; }
    // Null for a uid that no calendar is shown under.
    const Entry *shownAs(const QString &uid) const;
    // Null for a calendar that the back end does not hold.
    const Entry *ofBackend(const CalendarStoreBackend *backend, const QString &ownUid) const;
    const Entry *ofBackend(const CalendarStoreBackend *backend, const CalCalendarPtr &own) const;

    // The uid under which the store shows an item of that calendar. Different items have
    // different uids, whatever characters their parts are made of.
    QString uidOfItem(const CalItemOrigin &origin, const Entry &calendar) const;

private:
    bool isHeldEarlier(const QString &plainUid, const Entry &calendar) const;

    std::vector<Entry> m_entries;
    QHash<QString, int> m_ranksOfShown;
    QHash<const CalendarStoreBackend *, QHash<QString, int>> m_ranksOfOwn;
};
