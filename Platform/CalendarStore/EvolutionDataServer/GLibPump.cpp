// SPDX-License-Identifier: MIT
#include "GLibTypes.h"

#include "GLibPump.h"

#include <QAbstractEventDispatcher>

#include <chrono>

namespace Service
{

namespace
{

constexpr std::chrono::milliseconds interval { 100 };

bool isOfGLib(const QAbstractEventDispatcher *dispatcher)
{
    return dispatcher && QByteArray(dispatcher->metaObject()->className()).contains("Glib");
}

} // namespace

GLibPump::GLibPump()
{
    if (isOfGLib(QAbstractEventDispatcher::instance()))
        return;
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [] {
        while (g_main_context_iteration(nullptr, FALSE)) { }
    });
    m_timer.start(interval);
}

} // namespace Service
