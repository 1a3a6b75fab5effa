// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <optional>

class QWidget;

// Has the person choose a file. Both questions block input to the whole
// application and return when the person is done; nothing when they gave up.
class FileChooser
{
public:
    FileChooser() = default;
    virtual ~FileChooser() = default;
    FileChooser(const FileChooser &) = delete;
    FileChooser &operator=(const FileChooser &) = delete;

    // One that exists.
    virtual std::optional<QUrl> chooseFile(QWidget *over) = 0;
    // One to be written. Of one that exists the person has agreed that it is replaced.
    virtual std::optional<QUrl> chooseNewFile(QWidget *over, const QString &suggestedName) = 0;
};

// In the desktop's own dialog, where it has one.
class SystemFileChooser final : public FileChooser
{
public:
    std::optional<QUrl> chooseFile(QWidget *over) override;
    std::optional<QUrl> chooseNewFile(QWidget *over, const QString &suggestedName) override;
};
