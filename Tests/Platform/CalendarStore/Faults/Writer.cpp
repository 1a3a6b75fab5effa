// SPDX-License-Identifier: MIT
//
// Writes to a folder of calendars as Vantle does, for tests that disturb it:
//
//   fault_writer ROOT OPERATION COUNT
//
// Reads everything, says "ready", waits for a line on its input, then does the
// operation COUNT times (0: for ever) and says how each went: "done 7", or
// "refused 7 CODE message". The exit status is 1 after a refusal. SIGTERM ends it
// as it ends Vantle: between two operations.
#include "Operations.h"

#include <Clock.h>
#include <FolderCalendarStore.h>
#include <Termination.h>

#include <QApplication>
#include <QTimer>

#include <cerrno>
#include <cstdio>
#include <memory>

#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

// To whoever started us. An error that a test injects into the call must not swallow the answer.
void say(const QByteArray &line)
{
    const QByteArray bytes = line + '\n';
    while (::write(STDOUT_FILENO, bytes.constData(), static_cast<size_t>(bytes.size())) < 0 && errno != EPIPE)
        continue;
}

void waitForALine()
{
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n')
        continue;
}

QByteArray codeName(StoreError::Code code)
{
    using Code = StoreError::Code;
    switch (code) {
    case Code::NotFound:
        return "NotFound";
    case Code::ReadOnly:
        return "ReadOnly";
    case Code::Invalid:
        return "Invalid";
    case Code::Conflict:
        return "Conflict";
    case Code::Unreadable:
        return "Unreadable";
    case Code::Io:
        return "Io";
    }
    return "Unknown";
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto operation = arguments.size() == 4 ? Operations::named(arguments.at(2)) : std::nullopt;
    if (!operation) {
        std::fprintf(stderr, "usage: fault_writer ROOT OPERATION COUNT\n");
        return 2;
    }
    ::prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY); // strace may join

    SystemClock clock;
    FolderCalendarStore::Options options;
    options.root = arguments.at(1);
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(options, clock));
    CalCalendarStore store(std::move(backends));
    const SystemTermination termination;
    QObject::connect(&termination, &Termination::willTerminate, &application, &QCoreApplication::quit);
    say("ready");
    waitForALine();

    const int count = arguments.at(3).toInt();
    int number = 0;
    int status = 0;
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, &application, [&] {
        ++number;
        if (const auto refusal = (*operation)(store, number)) {
            say("refused " + QByteArray::number(number) + ' ' + codeName(refusal->code) + ' '
                + refusal->message().replace(u'\n', u' ').toUtf8());
            status = 1;
        } else {
            say("done " + QByteArray::number(number));
        }
        if (status != 0 || number == count)
            QCoreApplication::exit(status);
    });
    turns.start(0);
    return QCoreApplication::exec();
}
