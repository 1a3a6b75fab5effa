// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

// The alert sounds that the desktop offers, by name.
class AlertSounds
{
public:
    AlertSounds() = default;
    virtual ~AlertSounds() = default;
    AlertSounds(const AlertSounds &) = delete;
    AlertSounds &operator=(const AlertSounds &) = delete;

    // Sorted, each once. A name is that of a sound's file without its folder and ending.
    virtual QStringList names() const = 0;
};

// Those of a sound theme and of the themes that it inherits (freedesktop.org, Sound Theme
// Specification); every theme ends in the theme "freedesktop".
class SoundThemeSounds final : public AlertSounds
{
public:
    // The theme that the desktop's settings name, in the system's folders.
    SoundThemeSounds();
    // In the folders that hold themes, the first one preferred.
    SoundThemeSounds(QStringList folders, QString theme);

    QStringList names() const override;

private:
    QStringList m_folders;
    QString m_theme;
};
