// SPDX-License-Identifier: MIT
#include "FileDescriptor.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace FolderStore
{

FileDescriptor::~FileDescriptor()
{
    if (m_number >= 0)
        ::close(m_number);
}

std::optional<QByteArray> readAll(int descriptor, qint64 limit)
{
    constexpr qint64 growth = 64 * 1024;

    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return std::nullopt;
    // One byte more than expected, so that the end is met without another round.
    QByteArray bytes(std::min<qint64>(status.st_size + 1, limit), Qt::Uninitialized);
    qint64 length = 0;
    for (;;) {
        if (length == bytes.size()) {
            if (length >= limit)
                break;
            bytes.resize(std::min(limit, length + growth));
        }
        const ssize_t count = ::read(descriptor, bytes.data() + length, static_cast<size_t>(bytes.size() - length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        length += count;
    }
    bytes.truncate(length);
    return bytes;
}

} // namespace FolderStore
