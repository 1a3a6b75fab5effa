// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <array>

class QWidget;

// What a window says to an X window manager, beyond what Qt says for it. Without
// an X server each of these does nothing.
namespace X11Messages
{

// Whether this program's windows are windows of an X server.
bool isAvailable();

// A request of the window manager, as the EWMH has it: a client message to the root window.
void send(const QWidget &window, const char *type, const std::array<quint32, 5> &data);
void removeProperty(const QWidget &window, const char *property);

enum class States { Add, Remove };
// States of _NET_WM_STATE, in the window's property and by a request. Others that the window has stay.
void changeStates(const QWidget &window, States change, const QList<QByteArray> &names);

// Ends the launcher's sign that the program is starting (its busy pointer).
void finishStartup(const QByteArray &startupId);

} // namespace X11Messages
