// SPDX-License-Identifier: MIT
#pragma once

#include "PTHotKey.h"

// What is told of hot keys, in the numbers of the platform that the center was
// made for: four-character codes, kinds and subtypes.

// Whom an event is for.
struct EventHotKeyID {
    quint32 signature = 0;
    quint32 id = 0;
};

using OSStatus = qint32;
constexpr OSStatus noErr = 0;

struct CarbonEvent {
    quint32 eventClass = 0;
    quint32 eventKind = 0;
    EventHotKeyID directObject;
    OSStatus directObjectStatus = noErr; // another value when the event carries no identity
};

struct ApplicationEvent {
    int type = 0;
    int subtype = 0;
    EventHotKeyRef data1 = EventHotKeyRef::Null;
};

namespace HotKeyEvents
{

constexpr quint32 keyboardClass = 0x6B657962; // 'keyb'
constexpr quint32 hotKeyPressed = 5;
constexpr quint32 hotKeyReleased = 6;
constexpr quint32 signature = 0x5054486B; // 'PTHk'

constexpr int systemDefined = 14;
constexpr int pressSubtype = 6;
constexpr int releaseSubtype = 9;

} // namespace HotKeyEvents
