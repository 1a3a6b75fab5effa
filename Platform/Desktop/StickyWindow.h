// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

// Shows a top-level window on every virtual desktop. X11 alone can say so;
// elsewhere nothing happens. To be called each time the window is shown: some
// window managers forget it when a window is hidden. Done from the event loop.
void showOnAllDesktops(const QWidget &window);
