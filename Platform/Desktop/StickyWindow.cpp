// SPDX-License-Identifier: MIT
#include "StickyWindow.h"

#include "X11Messages.h"

namespace
{

constexpr quint32 allDesktops = 0xFFFFFFFF;
constexpr quint32 sourceIsApplication = 1;

} // namespace

void showOnAllDesktops(const QWidget &window)
{
    // The property serves a window that is not mapped yet, the message one that is.
    X11Messages::setCardinal(window, "_NET_WM_DESKTOP", allDesktops);
    X11Messages::send(window, "_NET_WM_DESKTOP", { allDesktops, sourceIsApplication, 0, 0, 0 });
}
