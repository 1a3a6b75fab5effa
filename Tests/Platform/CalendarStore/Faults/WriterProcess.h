// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QProcess>
#include <QString>

class CalendarFolder;

// The program fault_writer at work on a folder.
class WriterProcess final
{
public:
    // Started, and done reading.
    WriterProcess(const CalendarFolder &folder, const QString &operation, int count, const QStringList &launcher = {});
    ~WriterProcess();
    WriterProcess(const WriterProcess &) = delete;
    WriterProcess &operator=(const WriterProcess &) = delete;

    bool isReady() const { return m_isReady; }
    qint64 processId() const { return m_process.processId(); }
    // The next operations begin.
    void go();
    // Waits until so many are acknowledged, or it has ended.
    void waitUntilDone(int count);
    void kill();
    void terminate();
    // False when it does not end by itself; then it is killed.
    bool waitForEnd();

    // After the end. How many operations were acknowledged.
    int done();
    // The line "refused …", without the word and the number; empty when nothing was refused.
    QByteArray refusal();
    int exitCode() const { return m_process.exitCode(); }
    bool hasCrashed() const { return m_process.exitStatus() == QProcess::CrashExit; }

private:
    void readLines();

    QProcess m_process;
    QByteArrayList m_lines;
    bool m_isReady = false;
};
