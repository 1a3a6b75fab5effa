// SPDX-License-Identifier: MIT
#pragma once

#include "GLibTypes.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>

namespace Service
{

// Asks those who answer for the sources, every few seconds, whether they still do: one that hangs says nothing by
// itself.
class ServicePulse final : public QObject
{
    Q_OBJECT

public:
    // `names` are those to ask, on the session bus.
    explicit ServicePulse(std::function<QSet<QString>()> names, QObject *parent = nullptr);
    ~ServicePulse() override;

    static constexpr std::chrono::seconds interval { 3 };
    static constexpr std::chrono::seconds patience { 2 };

Q_SIGNALS:
    void answered(const QString &name);
    void unanswered(const QString &name);

private:
    void ask();

    std::function<QSet<QString>()> m_names;
    QSet<QString> m_asked; // and not yet answered
    Owned<GDBusConnection> m_bus;
    Owned<GCancellable> m_cancellable;
    QTimer m_timer;
};

} // namespace Service
