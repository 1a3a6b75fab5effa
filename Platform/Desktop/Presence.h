// SPDX-License-Identifier: MIT
#pragma once

#include "ActivationToken.h"

#include <QObject>

class QWidget;

enum class TaskBarEntry { Hidden, Visible };

// How the application stands among the programs of the desktop: whether its
// windows have entries in the task bar, whether it is the one that the person
// works with, coming to the front and hiding.
class Presence : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // From now on the window's task-bar entry and its hiding are taken care of. Before it is shown for the
    // first time; it may be destroyed at any time.
    virtual void manage(QWidget &window) = 0;

    // Of all managed windows, each time that they are shown.
    virtual void setTaskBarEntry(TaskBarEntry entry) = 0;
    // False where an open window always has one.
    virtual bool canHideTaskBarEntry() const = 0;

    // Whether a managed window is hidden while another program is in front. It comes back when ours does.
    // A window with a dialog of ours over it stays: a file chooser may belong to another program.
    virtual void setHidesOnDeactivate(QWidget &window, bool hides) = 0;

    virtual bool isActive() const = 0;
    // To the front, without saying which window.
    virtual void activate() = 0;
    // Shows everything that was hidden, and then the window in front of all, with the keyboard.
    virtual void bringToFront(QWidget &window) = 0;
    // Every window of ours, until one is brought to the front again. Nothing while a question of ours waits
    // for its answer.
    virtual void hide() = 0;

    // Serves what comes to the front next.
    virtual void setActivationToken(const ActivationToken &token) = 0;
};
