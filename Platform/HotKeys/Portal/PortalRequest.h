// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

// One question to the portal, whose answer comes later as a signal, perhaps
// after the person has thought about it. Exactly one of the two signals is sent.
//
// Destroying a request that waits withdraws the question.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    PortalRequest(const QDBusConnection &bus, const QString &method, QObject *parent);
    ~PortalRequest() override;

    // The options are the method's last argument; the request adds its token.
    void send(const QVariantList &arguments, QVariantMap options = {});

Q_SIGNALS:
    void answered(quint32 code, const QVariantMap &results);
    // The question did not even arrive.
    void failed(const QDBusError &error);

private Q_SLOTS:
    void takeResponse(const QDBusMessage &message);

private:
    enum class State { Unsent, Waiting, Done };

    QDBusConnection m_bus;
    QString m_method;
    QString m_token;
    State m_state = State::Unsent;
};

namespace PortalResponse
{

constexpr quint32 success = 0;
constexpr quint32 cancelled = 1; // by the person

} // namespace PortalResponse
