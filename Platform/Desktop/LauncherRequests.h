// SPDX-License-Identifier: MIT
#pragma once

#include "ActivationToken.h"

#include <QObject>
#include <QStringList>

// What launchers, and further starts of the program, ask of the one that runs.
class LauncherRequests : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // False when nobody can ask: a further start is then a program of its own.
    virtual bool isReachable() const { return true; }
    // Whether the request that is being told of is the one for which the program was started.
    virtual bool isStarting() const { return false; }

Q_SIGNALS:
    void activationRequested(const ActivationToken &token);
    // Files or links, as URIs.
    void openRequested(const QStringList &uris, const ActivationToken &token);
    // One of the desktop file's actions, by its name.
    void actionRequested(const QString &name, const ActivationToken &token);
};
