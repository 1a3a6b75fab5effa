// SPDX-License-Identifier: MIT
#include "VTSilenceWords.h"

#include <KLVText.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype longestName = 40; // characters
constexpr qsizetype mostNames = 3;

QString shortened(const QString &name)
{
    const QString line = KLVText::singleLine(name.left(2 * longestName)).trimmed();
    return line.size() > longestName ? line.left(longestName - 1) + u'…' : line;
}

QString listed(const QStringList &names, const QLocale &locale)
{
    if (names.size() <= mostNames)
        return locale.createSeparatedList(names);
    //: %1 and %2: names of calendars. %3: how many there are besides, always several.
    return QCoreApplication::translate("Vantle", "%1, %2 and %3 more")
        .arg(names.at(0), names.at(1), locale.toString(names.size() - 2));
}

} // namespace

QString VTSilenceWords(const QStringList &titles, const QLocale &locale)
{
    if (titles.isEmpty())
        return {};
    QStringList names;
    for (const QString &title : titles) {
        const QString name = shortened(title);
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    if (names.isEmpty()) {
        return QCoreApplication::translate(
            "Vantle", "Some calendars may be out of date: their service does not answer.");
    }
    //: %1: the names of one or several calendars.
    return QCoreApplication::translate("Vantle", "%1 may be out of date: the service does not answer.")
        .arg(listed(names, locale));
}

QString VTUnreachedWords()
{
    return QCoreApplication::translate("Vantle", "The desktop’s calendars are missing: their service does not answer.");
}
