// SPDX-License-Identifier: MIT
#include "CrashHandler.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <ucontext.h>
#include <unistd.h>

// Only this process is looked at.
#define UNW_LOCAL_ONLY // NOLINT(cppcoreguidelines-macro-usage): the library's own switch
#include <libunwind.h>

namespace
{

constexpr std::size_t stackSize = 256UL * 1024; // bytes
constexpr std::size_t textSize = 4096; // bytes
constexpr std::size_t symbolSize = 1024; // bytes
constexpr int mostFrames = 128;
constexpr unsigned alarmSeconds = 10;
constexpr std::array fatalSignals { SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT };

// Everything the handler uses: made before, for it can make nothing.
struct Preparation {
    alignas(16) std::array<char, stackSize> stack {};
    std::array<char, textSize> path {};
    std::array<char, textSize> introduction {};
    std::array<char, textSize> line {};
    std::array<char, symbolSize> symbol {};
    unw_cursor_t cursor {};
};
Preparation preparation; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): a handler has no object

// Writes with write(2) alone. A full disk or the like only shortens the file.
class TraceWriter final
{
public:
    explicit TraceWriter(int file)
        : m_file(file)
    {
    }

    void bytes(const char *text, std::size_t size) const
    {
        while (size > 0) {
            const ssize_t written = ::write(m_file, text, size);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return;
            text += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    void text(const char *text) const { bytes(text, std::strlen(text)); }
    void number(unsigned long value, unsigned base) const
    {
        std::array<char, 24> digits {};
        auto *digit = digits.end();
        do {
            *--digit = "0123456789abcdef"[value % base];
            value /= base;
        } while (value != 0);
        bytes(digit, static_cast<std::size_t>(digits.end() - digit));
    }
    void hexadecimal(unsigned long value) const
    {
        text("0x");
        number(value, 16);
    }
    void line(const char *name, unsigned long value) const
    {
        text(name);
        number(value, 10);
        text("\n");
    }

private:
    int m_file;
};

void writeFrames(const TraceWriter &trace, ucontext_t *context)
{
    unw_cursor_t *cursor = &preparation.cursor;
    if (unw_init_local2(cursor, context, UNW_INIT_SIGNAL_FRAME) != 0)
        return;
    for (int frame = 0; frame < mostFrames; ++frame) {
        unw_word_t instruction = 0;
        if (unw_get_reg(cursor, UNW_REG_IP, &instruction) != 0 || instruction == 0)
            return;
        trace.text("frame ");
        trace.hexadecimal(instruction);
        unw_word_t offset = 0;
        const int named = unw_get_proc_name(cursor, preparation.symbol.data(), preparation.symbol.size(), &offset);
        if (named == 0 || named == -UNW_ENOMEM) {
            trace.text(" ");
            trace.text(preparation.symbol.data());
            trace.text("+");
            trace.hexadecimal(offset);
        }
        trace.text("\n");
        if (unw_step(cursor) <= 0)
            return;
    }
}

// "7f0a-7f0b r-xp …": whether code is there.
bool isOfCode(const char *line, std::size_t size)
{
    const void *blank = std::memchr(line, ' ', size);
    const auto *flags = static_cast<const char *>(blank);
    constexpr std::ptrdiff_t placeOfX = 3;
    return flags && line + size > flags + placeOfX && flags[placeOfX] == 'x';
}

void writeModules(const TraceWriter &trace)
{
    const int maps = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (maps < 0)
        return;
    std::array<char, textSize> &line = preparation.line;
    std::size_t filled = 0;
    while (true) {
        const ssize_t count = ::read(maps, line.data() + filled, line.size() - filled);
        if (count <= 0)
            break;
        filled += static_cast<std::size_t>(count);
        std::size_t begin = 0;
        while (const void *found = std::memchr(line.data() + begin, '\n', filled - begin)) {
            const auto end = static_cast<std::size_t>(static_cast<const char *>(found) - line.data()) + 1;
            if (isOfCode(line.data() + begin, end - begin)) {
                trace.text("module ");
                trace.bytes(line.data() + begin, end - begin);
            }
            begin = end;
        }
        std::memmove(line.data(), line.data() + begin, filled - begin);
        filled -= begin;
        // No line is so long.
        if (filled == line.size())
            break;
    }
    ::close(maps);
}

void handleSignal(int number, siginfo_t *info, void *context)
{
    ::alarm(alarmSeconds);
    const int file
        = ::open(preparation.path.data(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        const TraceWriter trace(file);
        trace.text(preparation.introduction.data());
        trace.line("signal ", static_cast<unsigned long>(number));
        const bool isSent = info->si_code <= 0;
        if (isSent)
            trace.line("sender ", static_cast<unsigned long>(info->si_pid));
        std::timespec now {};
        ::clock_gettime(CLOCK_REALTIME, &now);
        trace.line("time ", static_cast<unsigned long>(now.tv_sec));
        if (!isSent) {
            trace.text("address ");
            trace.hexadecimal(reinterpret_cast<unsigned long>(info->si_addr)); // NOLINT(*-reinterpret-cast): a number
            trace.text("\n");
        }
        writeFrames(trace, static_cast<ucontext_t *>(context));
        writeModules(trace);
        ::close(file);
    }
    // SA_RESETHAND has put the default action back: the program ends by this signal, as it would have.
    ::raise(number);
}

bool copyText(const QByteArray &text, std::array<char, textSize> &place)
{
    if (static_cast<std::size_t>(text.size()) >= place.size())
        return false;
    place.fill('\0');
    std::ranges::copy(text, place.begin());
    return true;
}

} // namespace

Result<void> CrashHandler::install(const QString &path, const QString &introduction)
{
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return Error { QCoreApplication::translate("Vantle", "The folder “%1” cannot be made.").arg(folder) };
    if (!copyText(QFile::encodeName(path), preparation.path)
        || !copyText(introduction.toUtf8(), preparation.introduction))
        return Error { QCoreApplication::translate("Vantle", "“%1” is too long.").arg(path) };

    stack_t stack {};
    stack.ss_sp = preparation.stack.data();
    stack.ss_size = preparation.stack.size();
    struct sigaction action {
    };
    action.sa_sigaction = handleSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    sigfillset(&action.sa_mask);
    sigdelset(&action.sa_mask, SIGALRM);
    bool isInstalled = ::sigaltstack(&stack, nullptr) == 0;
    for (const int number : fatalSignals)
        isInstalled = ::sigaction(number, &action, nullptr) == 0 && isInstalled;
    if (!isInstalled)
        return Error { QString::fromLocal8Bit(std::strerror(errno)) };
    return {};
}
