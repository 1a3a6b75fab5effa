// SPDX-License-Identifier: MIT
#include "Termination.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr std::array watchedSignals { SIGTERM, SIGINT, SIGHUP };

// A signal handler may do next to nothing: it writes one byte, and the event
// loop does the rest.
volatile std::sig_atomic_t writeEnd = -1;

void handleSignal(int /*number*/)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
}

bool isIgnored(int number)
{
    struct sigaction present = {};
    return sigaction(number, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

SystemTermination::SystemTermination(QObject *parent)
    : Termination(parent)
{
    connect(qApp, &QCoreApplication::aboutToQuit, this, &Termination::willTerminate);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &Termination::sessionMayEnd, Qt::DirectConnection);

    std::array<int, 2> ends {};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_readEnd = ends[0];
    writeEnd = ends[1];
    const auto *notifier = new QSocketNotifier(m_readEnd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SystemTermination::readSignal);
    for (const int number : watchedSignals) {
        if (!isIgnored(number))
            setHandler(number, handleSignal);
    }
}

SystemTermination::~SystemTermination()
{
    if (m_readEnd < 0)
        return;

    for (const int number : watchedSignals) {
        if (!isIgnored(number))
            setHandler(number, SIG_DFL);
    }
    ::close(writeEnd);
    ::close(m_readEnd);
    writeEnd = -1;
}

void SystemTermination::readSignal() const
{
    std::array<char, 16> bytes {};
    while (::read(m_readEnd, bytes.data(), bytes.size()) > 0) { }
    // Unlike the quit command, this ends the loops of open dialogs, too.
    QCoreApplication::exit();
}
