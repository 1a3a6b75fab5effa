// SPDX-License-Identifier: MIT
#include "VTRowFonts.h"

namespace
{

constexpr int titlePixels = 13;
constexpr int captionPixels = 12;
constexpr int smallPixels = 11;
constexpr int eventTitleWeight = 560;

} // namespace

VTRowFonts::VTRowFonts(const KLVMetrics &metrics)
    : eventTitle(metrics.font(titlePixels, eventTitleWeight))
    , taskTitle(metrics.font(titlePixels, QFont::Medium))
    , badge(metrics.font(smallPixels, QFont::DemiBold))
    , value(metrics.font(titlePixels))
    , caption(metrics.font(captionPixels))
    , due(metrics.font(smallPixels))
    , overdue(metrics.font(smallPixels, QFont::DemiBold))
{
}
