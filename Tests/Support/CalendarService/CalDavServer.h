// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// A real calendar server on the loopback address, Radicale, with a person
// "alice" whose password is "secret". It keeps items as files, which tests read.
class CalDavServer final
{
public:
    CalDavServer() = default;
    ~CalDavServer();
    CalDavServer(const CalDavServer &) = delete;
    CalDavServer &operator=(const CalDavServer &) = delete;

    static QString user() { return QStringLiteral("alice"); }
    static QString password() { return QStringLiteral("secret"); }

    // Before or after start(): a calendar for events and to-dos.
    void addCollection(const QString &name) const;

    // Again after stop(): at the same port, with what it held. False, with a reason for the test's report,
    // when it did not start.
    [[nodiscard]] bool start();
    void stop();
    // From now on it takes requests and answers none, until resume().
    void pause();
    void resume();
    QString failure() const { return m_failure; }

    QString url(const QString &collection) const;
    // The text of all items of a collection, in no order.
    QByteArray contents(const QString &collection) const;

private:
    QString collectionFolder(const QString &name) const;
    bool writeConfiguration();
    bool takePort(const QByteArray &log);

    QTemporaryDir m_folder;
    QProcess m_server;
    bool m_isPaused = false;
    int m_port = 0; // chosen by the system at the first start
    QString m_failure;
};
