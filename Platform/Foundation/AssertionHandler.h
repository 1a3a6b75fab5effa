// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>

// A programming error that was caught: a required argument missing, an event
// of an unknown kind. what() gives all three parts as UTF-8.
class AssertionFailure final : public std::exception
{
public:
    AssertionFailure(const QString &message, const QString &sourceName, int line);

    const QString &message() const { return m_message; }
    const QString &sourceName() const { return m_sourceName; }
    int line() const { return m_line; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    QString m_message;
    QString m_sourceName;
    int m_line;
    QByteArray m_what;
};

// Where programming errors end up. The default handler throws an
// AssertionFailure; another one may be put in its place for the length of a
// scope (see ScopedAssertionHandler).
class AssertionHandler
{
public:
    AssertionHandler() = default;
    virtual ~AssertionHandler() = default;
    AssertionHandler(const AssertionHandler &) = delete;
    AssertionHandler &operator=(const AssertionHandler &) = delete;

    // sourceName is the source's path below the project, without its ending.
    virtual void handleFailure(const QString &message, const QString &sourceName, int line) = 0;

    // Never null.
    static AssertionHandler &current();
    // Passing null puts the throwing handler back. The caller keeps ownership.
    static void setCurrent(AssertionHandler *handler);
};

class ScopedAssertionHandler final
{
public:
    explicit ScopedAssertionHandler(AssertionHandler &handler);
    ~ScopedAssertionHandler();
    ScopedAssertionHandler(const ScopedAssertionHandler &) = delete;
    ScopedAssertionHandler &operator=(const ScopedAssertionHandler &) = delete;

private:
    AssertionHandler *m_previous;
};
