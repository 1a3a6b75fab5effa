// SPDX-License-Identifier: MIT
#include "ProgramStart.h"

#include <QCoreApplication>
#include <QProcess>

#include <sys/syscall.h>
#include <unistd.h>

ProgramStart::~ProgramStart()
{
    m_end.reset();
    if (m_process >= 0)
        ::close(m_process);
}

Result<void> ProgramStart::start(const QStringList &command)
{
    Q_ASSERT(!command.isEmpty() && m_process < 0);
    QProcess process;
    process.setProgram(command.first());
    process.setArguments(command.mid(1));
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    qint64 pid = 0;
    if (!process.startDetached(&pid))
        return Error { QCoreApplication::translate("Vantle", "“%1” cannot be started.").arg(command.first()) };

    // It is no child of ours that could be waited for; its descriptor becomes readable when it ends.
    m_process = static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0));
    if (m_process < 0) {
        QMetaObject::invokeMethod(this, &ProgramStart::ended, Qt::QueuedConnection); // it has ended already
        return {};
    }
    m_end = std::make_unique<QSocketNotifier>(m_process, QSocketNotifier::Read);
    connect(m_end.get(), &QSocketNotifier::activated, this, [this] {
        m_end->setEnabled(false);
        Q_EMIT ended();
    });
    return {};
}
