// SPDX-License-Identifier: MIT
#include "HotKeyBackendFactory.h"

#include "NoHotKeys.h"
#include "Portal/PortalHotKeys.h"
#include "X11/X11HotKeys.h"

HotKeySurroundings HotKeySurroundings::ofThisSession()
{
    return {
        .xDisplay = qgetenv("DISPLAY"),
        .isWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland",
        .sessionBus = QDBusConnection::sessionBus(),
    };
}

std::unique_ptr<HotKeyBackend> makeHotKeyBackend(const HotKeySurroundings &surroundings)
{
    if (!surroundings.xDisplay.isEmpty() && !surroundings.isWayland) {
        auto grabs = std::make_unique<X11HotKeys>(surroundings.xDisplay);
        if (grabs->isAvailable())
            return grabs;
    }
    auto portal = std::make_unique<PortalHotKeys>(surroundings.sessionBus);
    if (portal->isAvailable())
        return portal;
    return std::make_unique<NoHotKeys>();
}
