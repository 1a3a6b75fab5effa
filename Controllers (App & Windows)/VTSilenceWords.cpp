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

} // namespace

QString VTSilenceWords(const QStringList &services, const QLocale &locale)
{
    if (services.isEmpty())
        return {};
    QStringList names;
    for (const QString &service : services) {
        const QString name = shortened(service);
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    if (names.isEmpty() || names.size() > mostNames) {
        return QCoreApplication::translate(
            "Vantle", "Some calendars may be out of date: their service does not answer.");
    }
    if (names.size() == 1) {
        //: %1: the name of an account.
        return QCoreApplication::translate("Vantle", "%1 calendars may be out of date: the service does not answer.")
            .arg(names.first());
    }
    //: %1: the names of several accounts.
    return QCoreApplication::translate("Vantle", "%1 calendars may be out of date: the services do not answer.")
        .arg(locale.createSeparatedList(names));
}
