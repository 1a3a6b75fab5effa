// SPDX-License-Identifier: MIT
#include "VTStoreRefresher.h"

#include <CalCalendarStore.h>
#include <SleepWatcher.h>

#include <QEvent>
#include <QWidget>

VTStoreRefresher::VTStoreRefresher(CalCalendarStore &store, QWidget &window, const SleepWatcher &sleep, QObject *parent)
    : QObject(parent)
    , m_store(store)
{
    window.installEventFilter(this);
    connect(&sleep, &SleepWatcher::resumed, this, [this] { m_store.refresh(); });
}

// The window system sends the same event when a minimised window comes back.
bool VTStoreRefresher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        m_store.refresh();
    return QObject::eventFilter(watched, event);
}
