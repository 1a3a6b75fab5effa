// SPDX-License-Identifier: MIT
#pragma once

#include "StoreError.h"

#include <Result.h>

#include <QByteArray>

// An item on its way from one back end into another. Made by the back end that holds
// the item, which stands where it was until leave() has succeeded; good as long as
// that back end and the item's record live, and until that record is saved again.
//
// Exactly one of leave() and stay() is to be called, or first the one and, when it
// has failed, the other.
class CalDeparture
{
public:
    CalDeparture() = default;
    virtual ~CalDeparture() = default;
    CalDeparture(const CalDeparture &) = delete;
    CalDeparture &operator=(const CalDeparture &) = delete;

    // The item as one iCalendar text (RFC 5545, VCALENDAR) by itself: with what was changed in the record, and
    // everything else as it is stored, to the byte; a series with its exceptions, and the zones that are used. Every
    // component has the item's UID.
    virtual const QByteArray &text() const = 0;

    // The item is whole at its new place: takes it out here. Refused when it is no longer what text() was made of.
    virtual Result<void, StoreError> leave() = 0;
    // The item does not go: what the first step of a save in two has done to it is taken back.
    virtual void stay() = 0;
};
