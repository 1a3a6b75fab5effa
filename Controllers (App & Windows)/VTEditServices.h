// SPDX-License-Identifier: MIT
#pragma once

class AlertSounds;
class CalCalendarStore;
class Clock;
class DesktopAlerts;
class FileChooser;

// What the edit sheets work with. All of it outlives them.
struct VTEditServices {
    CalCalendarStore &store;
    Clock &clock;
    DesktopAlerts &alerts;
    FileChooser &fileChooser;
    const AlertSounds &sounds;
};
