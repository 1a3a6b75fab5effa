// SPDX-License-Identifier: MIT
#include "StickyWindow.h"

#include "X11Messages.h"

#include <QTimer>
#include <QWidget>

namespace
{

constexpr quint32 allDesktops = 0xFFFFFFFF;
constexpr quint32 sourceIsApplication = 1;

} // namespace

void showOnAllDesktops(const QWidget &window)
{
    // A window manager that finds the wish on a window before it has it may take it for the number of a
    // desktop: xfwm4 then puts the window on the last one, where nobody looks.
    if (!window.testAttribute(Qt::WA_Mapped))
        X11Messages::removeProperty(window, "_NET_WM_DESKTOP");
    QTimer::singleShot(0, &window, [&window] {
        if (window.isVisible())
            X11Messages::send(window, "_NET_WM_DESKTOP", { allDesktops, sourceIsApplication, 0, 0, 0 });
    });
}
