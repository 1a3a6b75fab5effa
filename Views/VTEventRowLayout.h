// SPDX-License-Identifier: MIT
#pragma once

#include "VTRowTemplate.h"

#include <optional>

// What of an event decides the layout of its row. Heights are what the texts need.
struct VTEventRowContent {
    std::optional<float> notesHeight = {}; // absent without notes
    bool hasUrl = false;
    bool hasAttendees = false; // an empty list counts; the matrix is then sized to its cells
    bool hasLocation = false;
    std::optional<float> titleHeight = {}; // absent without a title
};

struct VTRowLayout {
    VTRowFrames frames; // y growing upwards; the details' count from the bottom of the selected row
    float stackTop = 0; // the top of the detail stack, from the bottom
    float selectedHeight = 0;
    float unselectedHeight = 0;
};

// The event row's arithmetic, in the given order and precision: sums in 64 bits,
// kept in 32. The frames come from the row's template.
VTRowLayout layOutEventRow(const VTRowFrames &loaded, const VTEventRowContent &content);
