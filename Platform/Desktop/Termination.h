// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

// Tells that the program is about to end, whichever way it ends: the quit
// command, the last window closed, SIGTERM, SIGINT or SIGHUP, the end of the
// session. Whoever keeps something until the end writes it then.
class Termination : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // Once, last of all.
    void willTerminate();
    // The session asks for everything to be written. It may end without another word, or change its mind and
    // go on; so this can come more than once.
    void sessionMayEnd();
};

// Watches the running application. One at a time, made after the application
// object; from then on the three signals end the event loop instead of the
// process: what runs is finished first, and no window is asked. A hang-up that
// the caller ignores (nohup) stays ignored.
class SystemTermination final : public Termination
{
    Q_OBJECT

public:
    explicit SystemTermination(QObject *parent = nullptr);
    ~SystemTermination() override;

private:
    void readSignal() const;

    int m_readEnd = -1;
};
