// SPDX-License-Identifier: MIT
#pragma once

#include "LauncherRequests.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QVariantMap>

#include <functional>

// Holds the application's name on the session bus, so that it runs once, and
// answers there as org.freedesktop.Application: launchers, gapplication and
// further starts reach the running one.
class SingleInstance final : public LauncherRequests
{
    Q_OBJECT

public:
    enum class Start {
        First, // go on
        Further, // another one runs, and was raised: end
        Unanswered, // another one runs, and does not answer
        Alone, // there is no bus; nobody can be asked and nobody will ask
    };

    explicit SingleInstance(const QDBusConnection &bus, QObject *parent = nullptr);
    ~SingleInstance() override;

    // To be asked once, before anything else is begun. Waits for the answer of one that runs, five seconds at most.
    Start begin(const ActivationToken &token);

    bool isReachable() const override { return m_isOwner; }
    bool isStarting() const override { return m_isStarting; }

    static QString serviceName();
    static QString objectPath();

private:
    friend class FreedesktopApplicationAdaptor;

    bool claim();
    // Tells of a request from the event loop.
    void tellLater(std::function<void()> tell);

    QDBusConnection m_bus;
    bool m_isOwner = false;
    bool m_isStarting; // the bus started this program for a request that is still to come
};

// The interface itself. What it hears goes on from the event loop, so that the
// caller has its answer before anything happens here.
class FreedesktopApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FreedesktopApplicationAdaptor(SingleInstance *instance);

public Q_SLOTS:
    // The names are the interface's own.
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameters, const QVariantMap &platformData);

private:
    SingleInstance &m_instance;
};
