// SPDX-License-Identifier: MIT
#pragma once

#include "VTDetailStack.h"

#include <optional>

// What of a to-do decides the layout of its row. Heights are what the texts need.
struct VTTaskRowContent {
    std::optional<float> notesHeight = {}; // absent without notes
    bool hasUrl = false;
    bool hasCompletedDate = false;
    std::optional<float> titleHeight = {}; // absent without a title
    bool hasDueDate = false;
};

// The to-do row's arithmetic, as exact as the event row's.
VTRowLayout layOutTaskRow(const VTRowFrames &loaded, const VTTaskRowContent &content);
