// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QProcess>
#include <QStringList>
#include <QTemporaryFile>

// strace, joined to a process that is already running. Follows its main thread alone.
class Tracing final
{
public:
    // `options` say what to trace, and which errors to put in. Joined when it returns, if isJoined().
    Tracing(qint64 processId, const QStringList &options);
    ~Tracing();
    Tracing(const Tracing &) = delete;
    Tracing &operator=(const Tracing &) = delete;

    bool isJoined() const { return m_isJoined; }
    // After the end of the process: a line for each call.
    QByteArrayList calls();

private:
    QTemporaryFile m_output;
    QProcess m_strace;
    bool m_isJoined = false;
};
