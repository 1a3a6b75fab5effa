// SPDX-License-Identifier: MIT
#pragma once

#include <Beeper.h>

// Counts beeps and makes no sound.
class RecordingBeeper final : public Beeper
{
public:
    void beep() override { ++beeps; }

    int beeps = 0;
};
