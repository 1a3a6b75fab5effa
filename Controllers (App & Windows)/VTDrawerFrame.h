// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QRect>

// Where a window goes when its drawer opens, as values. All in pixels; frames
// are without the window manager's decoration.

// What opening the drawer did to a window's frame, so that closing it can take it back.
struct VTDrawerGrowth {
    int width = 0; // that much wider
    int shift = 0; // that far to the left, to stay on the screen

    bool operator==(const VTDrawerGrowth &) const = default;
};

// The window grows by the drawer's width on the drawer's side, so that the lists stay where they are: on the
// right, or on the left where people read from right to left. It moves aside where the screen ends, and grows by
// less where the screen is too narrow for it.
VTDrawerGrowth VTGrowthForDrawer(const QRect &frame, const QMargins &decoration, const QRect &available,
    int drawerWidth, Qt::LayoutDirection direction);

QRect VTFrameWithDrawer(const QRect &frame, const VTDrawerGrowth &growth);
// The other way: how the window would stand without its drawer.
QRect VTFrameWithoutDrawer(const QRect &frame, const VTDrawerGrowth &growth);
