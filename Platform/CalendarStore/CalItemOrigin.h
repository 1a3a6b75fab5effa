// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

class CalendarStoreBackend;

// Where in its back end a record came from, and in which state it was read.
// Made and understood by the back end alone; everybody else just keeps it.
struct CalItemOrigin {
    QString plainUid; // the item's UID property; empty for an item that is not stored yet
    QString recurrenceId; // which occurrence of a series, in the back end's own form; empty for others
    QString resource; // what the back end keeps the item in, a file's name for instance
    // Tells apart items that the back end holds under one UID in one calendar; empty for the first of them.
    QString distinction;
    // Changes whenever the stored item changes. A save or removal whose version is no longer
    // the stored one is a conflict and is refused.
    QByteArray version;
    // Which back end that is. Given by the store, for the others know nothing of each other.
    const CalendarStoreBackend *backend = nullptr;

    bool isStored() const { return !plainUid.isEmpty() || !resource.isEmpty(); }
};
