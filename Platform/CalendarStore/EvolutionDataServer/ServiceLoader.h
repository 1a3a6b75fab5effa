// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarStoreBackend.h>

#include <QObject>
#include <QString>

#include <memory>

class Clock;
class QDBusServiceWatcher;

// Brings in the desktop's calendar service (Evolution Data Server) where there is one.
//
// The back end lies in a module of its own, so that the program starts on a
// machine without the service's libraries. The module is loaded only once the
// session bus says that the service runs or can be started: at the start, or
// when it is installed later. Nothing waits for the bus.
//
//     connect(&loader, &ServiceLoader::found, &store, [&] {
//         if (auto backend = loader.load())
//             store.addBackend(std::move(backend));
//     });
//     loader.start();
class ServiceLoader final : public QObject
{
    Q_OBJECT

public:
    // The clock outlives whatever is loaded.
    explicit ServiceLoader(Clock &clock, QObject *parent = nullptr);
    ~ServiceLoader() override;

    // Asks the session bus. Returns at once.
    void start();

    // Null, with a note in the log (category "vantle.store"), when the module is not there or does not fit. Starts the
    // service and returns at once: calendars come as the service tells of them.
    std::unique_ptr<CalendarStoreBackend> load();

Q_SIGNALS:
    // The service runs or can be started. Sent once, from the event loop.
    void found();
    // Neither is so at the start, or there is no session bus. found() may follow later. Sent once at most,
    // from the event loop.
    void missing();

private Q_SLOTS:
    void ask();

private:
    void look(const QStringList &names);
    void wasAnswered();

    Clock &m_clock;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    int m_answersToCome = 0; // of those asked for at the start
    bool m_isFound = false;
};
