// SPDX-License-Identifier: MIT
#pragma once

#include "VTDetailStack.h"

#include <optional>

// What of an event decides the layout of its row. Heights are what the texts need.
struct VTEventRowContent {
    std::optional<float> notesHeight = {}; // absent without notes
    bool hasUrl = false;
    bool hasAttendees = false; // an empty list counts; the matrix is then sized to its cells
    bool hasLocation = false;
    std::optional<float> titleHeight = {}; // absent without a title
};

// The event row's arithmetic, in the given order and precision: sums in 64 bits,
// kept in 32. The frames come from the row's template.
VTRowLayout layOutEventRow(const VTRowFrames &loaded, const VTEventRowContent &content);
