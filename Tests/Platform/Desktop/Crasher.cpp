// SPDX-License-Identifier: MIT
#include <CrashHandler.h>

#include <QString>

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>

#include <sys/resource.h>
#include <unistd.h>

// Crashes in the way that it is told, with the handler installed:
// crasher KIND FILE. Its functions have outside linkage, so that they have names.

void crashByNullPointer(int *pointer);
void crashByFullStack(int depth);
void crashByAbort();
void crashByException();
void crashBySignal();
void crashWithDamagedHeap();

[[gnu::noinline]] void crashByNullPointer(int *pointer)
{
    *const_cast<volatile int *>(pointer) = 1;
}

[[gnu::noinline]] void crashByFullStack(int depth)
{
    volatile char room[4096] = {};
    room[depth % 4096] = 1;
    if (depth >= 0)
        crashByFullStack(depth + 1);
    room[0] = room[depth % 4096];
}

[[gnu::noinline]] void crashByAbort()
{
    std::abort();
}

[[gnu::noinline]] void crashByException()
{
    throw std::runtime_error("not caught");
}

[[gnu::noinline]] void crashBySignal()
{
    ::kill(::getpid(), SIGSEGV);
    ::pause();
}

// The handler may not allocate: whoever does with a damaged heap never comes back.
[[gnu::noinline]] void crashWithDamagedHeap()
{
    constexpr std::ptrdiff_t before = 16;
    constexpr std::ptrdiff_t behind = 4000;
    // Behind the compiler's back, which would refuse.
    char *volatile block = static_cast<char *>(std::malloc(40));
    for (std::ptrdiff_t place = -before; place < behind; ++place)
        block[place] = '\xff';
    crashByNullPointer(nullptr);
}

// NOLINTNEXTLINE(bugprone-exception-escape): one of the crashes is just that
int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    // What it leaves behind is the trace alone.
    const rlimit noCore { 0, 0 };
    ::setrlimit(RLIMIT_CORE, &noCore);
    if (!CrashHandler::install(QString::fromLocal8Bit(argv[2]), QStringLiteral("Crasher 1\n")))
        return 3;
    const QByteArray kind(argv[1]);
    if (kind == "null")
        crashByNullPointer(nullptr);
    else if (kind == "stack")
        crashByFullStack(0);
    else if (kind == "abort")
        crashByAbort();
    else if (kind == "exception")
        crashByException();
    else if (kind == "sent")
        crashBySignal();
    else if (kind == "damaged heap")
        crashWithDamagedHeap();
    return 4;
}
