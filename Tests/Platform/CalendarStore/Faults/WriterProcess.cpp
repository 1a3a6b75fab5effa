// SPDX-License-Identifier: MIT
#include "WriterProcess.h"

#include <CalendarFolder.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int longestWait = 60'000; // milliseconds, on a machine that is busy with other things

} // namespace

WriterProcess::WriterProcess(
    const CalendarFolder &folder, const QString &operation, int count, const QStringList &launcher)
{
    // Whoever is traced or killed cannot look for leaks.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList command = launcher;
    command << QStringLiteral(VANTLE_FAULT_WRITER) << folder.root() << operation << QString::number(count);
    m_process.start(command.takeFirst(), command);
    while (!m_isReady && m_process.waitForReadyRead(longestWait)) {
        readLines();
        m_isReady = m_lines.contains("ready");
    }
}

WriterProcess::~WriterProcess()
{
    if (m_process.state() != QProcess::NotRunning)
        kill();
}

void WriterProcess::go()
{
    m_process.write("\n");
    m_process.waitForBytesWritten(longestWait);
}

void WriterProcess::waitUntilDone(int count)
{
    const QByteArray awaited = "done " + QByteArray::number(count);
    while (count > 0 && !m_lines.contains(awaited) && m_process.waitForReadyRead(longestWait))
        readLines();
}

void WriterProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(longestWait);
}

void WriterProcess::terminate()
{
    m_process.terminate();
}

bool WriterProcess::waitForEnd()
{
    if (m_process.state() == QProcess::NotRunning || m_process.waitForFinished(longestWait))
        return true;
    kill();
    return false;
}

int WriterProcess::done()
{
    readLines();
    return static_cast<int>(
        std::ranges::count_if(m_lines, [](const QByteArray &line) { return line.startsWith("done "); }));
}

QByteArray WriterProcess::refusal()
{
    readLines();
    for (const QByteArray &line : std::as_const(m_lines)) {
        if (line.startsWith("refused "))
            return line.mid(line.indexOf(' ', 8) + 1);
    }
    return {};
}

void WriterProcess::readLines()
{
    while (m_process.canReadLine())
        m_lines << m_process.readLine().chopped(1);
}
