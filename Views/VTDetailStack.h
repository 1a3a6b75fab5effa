// SPDX-License-Identifier: MIT
#pragma once

#include "VTRowTemplate.h"

// What a row's layout comes to.
struct VTRowLayout {
    VTRowFrames frames; // y growing upwards; the details' count from the bottom of the selected row
    float stackTop = 0; // the top of the detail stack, from the bottom
    float selectedHeight = 0;
    float unselectedHeight = 0;
};

// The details of a row, stacked from its bottom upwards: pairs of a value and
// its caption. Sums are formed in 64 bits and kept in 32, as both kinds of row
// want them.
class VTDetailStack final
{
public:
    // Works on these frames, which outlive it.
    explicit VTDetailStack(VTRowFrames &frames);

    float top() const { return m_top; }

    // The lowest pair: the value gets that height, its caption the same upper edge.
    void addNotes(double height);
    // The caption's lower edge so far above the value's.
    void addLifted(const QString &value, const QString &caption, double lift);
    // The caption's upper edge so far under the value's.
    void addDropped(const QString &value, const QString &caption, double drop);

    // Both heights of a row whose parts sum up to that.
    static VTRowLayout finished(VTRowFrames frames, float stackTop, float sum);

private:
    // Puts the value on the stack; where its lower edge is.
    double place(const QString &value);

    VTRowFrames &m_frames;
    float m_top;
};
