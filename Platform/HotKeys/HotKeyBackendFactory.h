// SPDX-License-Identifier: MIT
#pragma once

#include "HotKeyBackend.h"

#include <QByteArray>
#include <QDBusConnection>

#include <memory>

// What there is around us that may give hot keys.
struct HotKeySurroundings {
    QByteArray xDisplay; // empty without one
    bool isWayland = false; // then the X server hears only what is typed into X windows
    QDBusConnection sessionBus;

    static HotKeySurroundings ofThisSession();
};

// The best one that works here; at last one that does nothing, so never null.
std::unique_ptr<HotKeyBackend> makeHotKeyBackend(const HotKeySurroundings &surroundings);
