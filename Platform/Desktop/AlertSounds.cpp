// SPDX-License-Identifier: MIT
#include "AlertSounds.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QString lastTheme = u"freedesktop"_s;
// Themes that inherit each other end there.
constexpr qsizetype mostThemes = 16;

QString themeOfDesktop()
{
    const auto configured = [](const QString &file, const QString &key) {
        const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, file);
        return path.isEmpty() ? QString() : QSettings(path, QSettings::IniFormat).value(key).toString();
    };
    for (const QString &name : { configured(u"kdeglobals"_s, u"Sounds/Theme"_s),
             configured(u"gtk-4.0/settings.ini"_s, u"Settings/gtk-sound-theme-name"_s),
             configured(u"gtk-3.0/settings.ini"_s, u"Settings/gtk-sound-theme-name"_s) }) {
        if (!name.isEmpty())
            return name;
    }
    return lastTheme;
}

// A theme's name is a folder's name, and nothing that leads elsewhere.
bool isName(const QString &theme)
{
    return !theme.isEmpty() && !theme.contains(u'/') && !theme.startsWith(u'.');
}

} // namespace

SoundThemeSounds::SoundThemeSounds()
    : SoundThemeSounds(
        QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, u"sounds"_s, QStandardPaths::LocateDirectory),
        themeOfDesktop())
{
}

SoundThemeSounds::SoundThemeSounds(QStringList folders, QString theme)
    : m_folders(std::move(folders))
    , m_theme(std::move(theme))
{
}

QStringList SoundThemeSounds::names() const
{
    QSet<QString> names;
    QStringList themes { m_theme, lastTheme };
    for (qsizetype index = 0; index < std::min(themes.size(), mostThemes); ++index) {
        const QString theme = themes.at(index);
        if (!isName(theme) || themes.indexOf(theme) < index)
            continue;
        for (const QString &folder : m_folders) {
            const QSettings description(folder + u'/' + theme + u"/index.theme"_s, QSettings::IniFormat);
            themes += description.value(u"Sound Theme/Inherits"_s).toStringList();
            for (const QString &part : description.value(u"Sound Theme/Directories"_s).toStringList()) {
                const QDir sounds(folder + u'/' + theme + u'/' + part);
                const auto files = sounds.entryInfoList({ u"*.oga"_s, u"*.ogg"_s, u"*.wav"_s }, QDir::Files);
                for (const QFileInfo &file : files)
                    names.insert(file.completeBaseName());
            }
        }
    }
    QStringList sorted(names.cbegin(), names.cend());
    sorted.sort();
    return sorted;
}
