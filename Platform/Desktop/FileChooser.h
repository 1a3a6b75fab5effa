// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <optional>

class QWidget;

// Has the person choose one existing file.
class FileChooser
{
public:
    FileChooser() = default;
    virtual ~FileChooser() = default;
    FileChooser(const FileChooser &) = delete;
    FileChooser &operator=(const FileChooser &) = delete;

    // Blocks input to the whole application and returns when the person is done; nothing when they gave up.
    virtual std::optional<QUrl> chooseFile(QWidget *over) = 0;
};

// In the desktop's own dialog, where it has one.
class SystemFileChooser final : public FileChooser
{
public:
    std::optional<QUrl> chooseFile(QWidget *over) override;
};
