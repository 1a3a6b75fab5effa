// SPDX-License-Identifier: MIT
#pragma once

#include "StoreError.h"

#include <Result.h>

// The removal of one item, which can be taken back. Made by the back end that
// removed the item; holds all that is needed to put it back exactly as it was,
// and is good as long as that back end lives.
class CalRemoval
{
public:
    CalRemoval() = default;
    virtual ~CalRemoval() = default;
    CalRemoval(const CalRemoval &) = delete;
    CalRemoval &operator=(const CalRemoval &) = delete;

    // Puts the item back, to the byte and under its old name. Refused when something else has
    // taken its place or changed meanwhile; nothing is altered then, and it can be tried again.
    // Called no more after a success.
    virtual Result<void, StoreError> takeBack() = 0;
};
