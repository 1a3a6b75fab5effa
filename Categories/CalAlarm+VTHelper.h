// SPDX-License-Identifier: MIT
#pragma once

#include <CalAlarm.h>

#include <QString>
#include <QVariant>

// What kind of action an alarm has, as three choices of which one is on: a message (with or without a
// sound), an e-mail, or opening a file. None is on for an action that only other programs know.
//
// "VTActionIsMessage", "VTActionIsEmail" and "VTActionIsFile" can be observed on the alarm; whoever
// does is told by every setVTAction(), and reads the values here or through valueForKey() below.
bool VTActionIsMessage(const CalAlarm &alarm);
bool VTActionIsEmail(const CalAlarm &alarm);
bool VTActionIsFile(const CalAlarm &alarm);

// Turning a choice on sets its action: the plain message without a sound for the first. Turning one
// off leaves the action and has the observers read all three again.
void setVTActionIsMessage(CalAlarm &alarm, bool isMessage);
void setVTActionIsEmail(CalAlarm &alarm, bool isEmail);
void setVTActionIsFile(CalAlarm &alarm, bool isFile);

QString VTAction(const CalAlarm &alarm);
void setVTAction(CalAlarm &alarm, const QString &action);

// "15 minutes before, display a message". The unit is a plural whatever the number.
QString VTDescriptionForDisplay(const CalAlarm &alarm);

// The alarm's value by name, where the three choices are names too.
QVariant valueForKey(const CalAlarm &alarm, const QString &key);
