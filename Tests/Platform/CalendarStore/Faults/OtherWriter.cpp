// SPDX-License-Identifier: MIT
//
// Another program that synchronises calendar files, as vdirsyncer does it: reads an
// item, makes the new text, writes it to a temporary file, looks whether the item still
// has the state that it was read in, and renames over it.
//
//   other_writer COUNT FILE...
//
// Adds a mark "fN" to the line X-OTHER of one file after the other, COUNT marks in all.
// For each says "done N FILE FROM TO": when the last look was begun and when the
// renaming had ended, in nanoseconds. Somebody who writes between the two is overwritten:
// that is this program's own fault. A state that has changed is tried again.
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
    off_t size = 0;
    long long modified = 0;

    bool operator==(const State &) const = default;
};

State stateOf(const std::string &path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return {};
    constexpr long long billion = 1'000'000'000;
    return { status.st_ino, status.st_size, status.st_mtim.tv_sec * billion + status.st_mtim.tv_nsec };
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

bool writeAnew(const std::string &path, const std::string &text)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file < 0)
        return false;
    const bool isWritten = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return ::fsync(file) == 0 && ::close(file) == 0 && isWritten;
}

// Whether the mark is in.
bool addMark(const std::string &path, int number)
{
    const State read = stateOf(path);
    const std::string text = contentOf(path);
    const std::string temporary = path.substr(0, path.rfind('/') + 1) + "tmp" + std::to_string(number);
    if (text.empty() || !writeAnew(temporary, withMark(text, number)))
        return false;
    const long long from = nanoseconds();
    if (stateOf(path) != read || ::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    std::printf("done %d %s %lld %lld\n", number, path.c_str(), from, nanoseconds());
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    const int count = argc > 2 ? std::atoi(argv[1]) : 0;
    const std::vector<std::string> paths(argv + 2, argv + argc);
    std::mt19937 random(11);
    for (int number = 1; number <= count; ++number) {
        const std::string &path = paths.at(static_cast<size_t>(number) % paths.size());
        while (!addMark(path, number))
            ::usleep(static_cast<useconds_t>(random() % 1'000));
        // Neither of the two shall be at it all the time.
        ::usleep(static_cast<useconds_t>(random() % 4'000));
    }
    return 0;
}
