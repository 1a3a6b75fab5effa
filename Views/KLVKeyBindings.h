// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QKeyEvent;
class QObject;

// The standard key bindings: which action message a key stands for, and who gets it.
//
// An action message is the name of an invokable method, "moveUp" for instance,
// that takes the sender (a QObject *) or nothing. It goes to the first object in the chain of
// responders that has it: the object itself, then whoever was set as next
// responder, else the parent.
namespace KLVKeyBindings
{

// Empty for a key that stands for no message.
QString actionForKey(const QKeyEvent &event);

// The next responder is not owned and may go. Null puts the parent back.
void setNextResponder(QObject *responder, QObject *next);
QObject *nextResponder(const QObject *responder);

// Whether anybody took it.
bool sendAction(const QString &action, QObject *firstResponder, QObject *sender);
bool interpretKeyEvent(const QKeyEvent &event, QObject *firstResponder);

} // namespace KLVKeyBindings
