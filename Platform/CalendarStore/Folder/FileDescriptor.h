// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace FolderStore
{

// Owns an open file; a negative number is none.
class FileDescriptor final
{
public:
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

// From the file's present position to its end, at most `limit` bytes. Nothing on failure; errno tells why.
std::optional<QByteArray> readAll(int descriptor, qint64 limit);

} // namespace FolderStore
