// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class CalCalendarStore;
class QWidget;
class SleepWatcher;

// Has the store ask its accounts' servers for what other machines changed,
// whenever somebody is about to look: when the window comes to be seen, and when
// the machine wakes up.
class VTStoreRefresher final : public QObject
{
    Q_OBJECT

public:
    // All three outlive it.
    VTStoreRefresher(CalCalendarStore &store, QWidget &window, const SleepWatcher &sleep, QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    CalCalendarStore &m_store;
};
