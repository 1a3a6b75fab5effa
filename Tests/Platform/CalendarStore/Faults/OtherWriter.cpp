// SPDX-License-Identifier: MIT
//
// Another program that synchronises calendar files, as vdirsyncer does it: reads an
// item and its state (inode and time of change), makes the new text, looks whether the
// item still has that state, writes a temporary file, flushes it, and renames it over.
//
//   other_writer early|slow|late COUNT FILE...
//
// "early" looks before it writes the temporary file, which is vdirsyncer's own order;
// "slow" does so too, on a disk that takes up to 0.2 s to flush; "late" looks right
// before it renames, which is as late as a program can.
//
// Adds a mark "fN" to the line X-OTHER of one file after the other, COUNT marks in all.
// For each says "done N FILE FROM TO BASE": when the look was begun and when the renaming had
// ended, in nanoseconds, and the last mark of the notes in the text that was read. Somebody
// who writes between look and renaming is overwritten: that is this program's own fault.
// An item whose state has changed is tried again.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

struct State {
    ino_t inode = 0;
    long long modified = 0;

    bool operator==(const State &) const = default;
};

State stateOf(const std::string &path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return {};
    constexpr long long billion = 1'000'000'000;
    return { status.st_ino, status.st_mtim.tv_sec * billion + status.st_mtim.tv_nsec };
}

std::string contentOf(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

long long nanoseconds()
{
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

std::string withMark(std::string text, int number)
{
    const std::string line = "X-OTHER:";
    const size_t begin = text.find(line);
    const size_t end = begin == std::string::npos ? begin : text.find("\r\n", begin);
    if (end == std::string::npos)
        std::abort(); // a line of ours was lost
    return text.insert(end, " f" + std::to_string(number));
}

// The last word of the notes.
std::string lastMarkOf(std::string text)
{
    const std::string fold = "\r\n ";
    for (size_t at = text.find(fold); at != std::string::npos; at = text.find(fold, at))
        text.erase(at, fold.size());
    const size_t begin = text.find("DESCRIPTION:");
    const size_t end = text.find("\r\n", begin);
    if (end == std::string::npos)
        std::abort(); // a line of ours was lost
    const size_t word = text.find_last_of(" :", end - 1) + 1;
    return text.substr(word, end - word);
}

bool writeAnew(const std::string &path, const std::string &text)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file < 0)
        return false;
    const bool isWritten = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return ::fsync(file) == 0 && ::close(file) == 0 && isWritten;
}

enum class Look { Early, Late };

// Whether the mark is in. `flushing`: the time in microseconds that the disk takes for it beside its own.
bool addMark(const std::string &path, int number, Look look, useconds_t flushing)
{
    const State read = stateOf(path);
    const std::string text = contentOf(path);
    const std::string temporary = path.substr(0, path.rfind('/') + 1) + "tmp" + std::to_string(number);
    if (text.empty())
        return false;
    const std::string marked = withMark(text, number);

    const auto isWritten = [&] { return writeAnew(temporary, marked) && ::usleep(flushing) == 0; };
    if (look == Look::Late && !isWritten())
        return false;
    const long long from = nanoseconds();
    const bool isAsRead = stateOf(path) == read;
    const bool isInPlace
        = isAsRead && (look == Look::Late || isWritten()) && ::rename(temporary.c_str(), path.c_str()) == 0;
    if (!isInPlace) {
        ::unlink(temporary.c_str());
        return false;
    }
    std::printf("done %d %s %lld %lld %s\n", number, path.c_str(), from, nanoseconds(), lastMarkOf(text).c_str());
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4)
        return 2;
    const Look look = std::string(argv[1]) == "late" ? Look::Late : Look::Early;
    const bool isSlow = std::string(argv[1]) == "slow";
    const int count = std::atoi(argv[2]);
    const std::vector<std::string> paths(argv + 3, argv + argc);
    std::mt19937 random(11);
    for (int number = 1; number <= count; ++number) {
        const std::string &path = paths.at(static_cast<size_t>(number) % paths.size());
        while (!addMark(path, number, look, isSlow ? static_cast<useconds_t>(random() % 200'000) : 0))
            ::usleep(static_cast<useconds_t>(random() % 1'000));
        // Neither of the two shall be at it all the time.
        ::usleep(static_cast<useconds_t>(random() % 4'000));
    }
    return 0;
}
