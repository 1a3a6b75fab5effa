// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QRect>
#include <QString>

#include <optional>

// How the person left the window: remembered by the desktop side, never in the
// settings. What is absent takes its first-time value.
struct WindowState {
    enum class Pane { Upper, Lower };

    std::optional<QRect> frame; // without the window manager's decoration
    // Height of the upper pane; while one of them is collapsed, the height that it had before.
    std::optional<int> dividerPosition;
    std::optional<Pane> collapsedPane; // absent while both are to be seen
    bool isDateBarVisible = true;

    bool operator==(const WindowState &) const = default;
};

// Keeps the state in one small file under $XDG_STATE_HOME. A missing or damaged
// file, and every value in it that makes no sense, reads as absent.
class WindowStateFile final
{
public:
    explicit WindowStateFile(QString path);

    // vantle/window.json under the person's state home.
    static QString defaultPath();

    WindowState read() const;
    // The old content or the whole new one is there at every instant.
    Result<void> write(const WindowState &state) const;

private:
    QString m_path;
};
