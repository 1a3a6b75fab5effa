// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Why the store refused a save, a removal, or to take a removal back.
struct StoreError {
    enum class Code {
        NotFound, // the item is no longer there
        ReadOnly, // the calendar or its folder cannot be written
        Invalid, // the item cannot be stored like this
        Conflict, // somebody else changed the item since it was read
        Unreadable, // the stored item is not understood well enough to change it
        Io, // the system refused: disk full, input/output error, and the like
    };

    // What was refused.
    enum class Action { Save, Remove, Restore };

    Code code = Code::Io;
    QString item; // the item's title, as it is stored
    QString calendar; // the calendar's title
    QString reason; // what the system or the store says, one sentence in the user's language
    Action action = Action::Save; // set by CalCalendarStore

    // What to show: what did not happen, to which item of which calendar, and why. Plain text. Of
    // a long title only the beginning is told.
    QString message() const;
};
