// SPDX-License-Identifier: MIT
#include "Tracing.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr int longestWait = 60'000; // milliseconds

} // namespace

Tracing::Tracing(qint64 processId, const QStringList &options)
{
    if (!m_output.open())
        return;
    m_strace.setProcessChannelMode(QProcess::MergedChannels);
    m_strace.start(
        u"strace"_s, QStringList { u"-p"_s, QString::number(processId), u"-o"_s, m_output.fileName() } + options);
    QByteArray said;
    while (!m_isJoined && m_strace.waitForReadyRead(longestWait)) {
        said += m_strace.readAll();
        m_isJoined = said.contains(" attached");
    }
    if (!m_isJoined)
        qWarning("strace did not join: %s", said.constData());
}

Tracing::~Tracing()
{
    if (m_strace.state() != QProcess::NotRunning && !m_strace.waitForFinished(longestWait))
        m_strace.kill();
    m_strace.waitForFinished();
}

QByteArrayList Tracing::calls()
{
    m_strace.waitForFinished(longestWait);
    m_output.seek(0);
    QByteArrayList lines = m_output.readAll().split('\n');
    lines.removeIf([](const QByteArray &line) { return line.isEmpty() || line.startsWith("+++"); });
    return lines;
}
