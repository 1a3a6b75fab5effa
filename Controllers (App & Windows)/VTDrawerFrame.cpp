// SPDX-License-Identifier: MIT
#include "VTDrawerFrame.h"

#include <algorithm>

VTDrawerGrowth VTGrowthForDrawer(const QRect &frame, const QMargins &decoration, const QRect &available,
    int drawerWidth, Qt::LayoutDirection direction)
{
    const QRect whole = frame.marginsAdded(decoration);
    const int width = std::clamp(available.width() - whole.width(), 0, drawerWidth);
    const int wanted = direction == Qt::RightToLeft ? width : 0;
    const int needed = whole.right() + width - available.right();
    return { width, std::clamp(std::max(wanted, needed), 0, std::max(0, whole.left() - available.left())) };
}

QRect VTFrameWithDrawer(const QRect &frame, const VTDrawerGrowth &growth)
{
    return { frame.x() - growth.shift, frame.y(), frame.width() + growth.width, frame.height() };
}

QRect VTFrameWithoutDrawer(const QRect &frame, const VTDrawerGrowth &growth)
{
    return { frame.x() + growth.shift, frame.y(), frame.width() - growth.width, frame.height() };
}
