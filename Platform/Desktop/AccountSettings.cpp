// SPDX-License-Identifier: MIT
#include "AccountSettings.h"

#include <QProcess>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

QList<AccountSettings::Program> AccountSettings::programsFor(const QString &desktop)
{
    const Program gnome { u"gnome-control-center"_s, { u"online-accounts"_s } };
    // It also asks for the passwords of accounts that were made in a calendar program.
    const Program evolution { u"evolution"_s, { u"-c"_s, u"calendar"_s } };
    const Program gnomeCalendar { u"gnome-calendar"_s, {} };

    const QStringList names = desktop.toUpper().split(u':');
    const bool isGnome = std::ranges::any_of(names,
        [](const QString &name) { return name.startsWith(u"GNOME"_s) || name == u"UNITY"_s || name == u"BUDGIE"_s; });
    // Elsewhere these settings are there only because a package brought them along.
    if (isGnome)
        return { gnome, evolution, gnomeCalendar };
    return { evolution, gnomeCalendar, gnome };
}

bool AccountSettings::open(const QString &desktop)
{
    return std::ranges::any_of(programsFor(desktop), [](const Program &program) {
        const QString path = QStandardPaths::findExecutable(program.name);
        return !path.isEmpty() && QProcess::startDetached(path, program.arguments);
    });
}
