// SPDX-License-Identifier: MIT
#include "DayOptions.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

Result<DayOptions> dayOptions(const QStringList &arguments)
{
    const QCommandLineOption date(u"date"_s, {}, u"YYYY-MM-DD"_s);
    const QCommandLineOption hidden(u"hidden"_s, {}, u"UID,UID"_s);
    const QCommandLineOption allCompleted(u"all-completed"_s);
    const QCommandLineOption hideDueLater(u"hide-due-later"_s);
    const QCommandLineOption sort(u"sort"_s, {}, u"0|1|2"_s, u"0"_s);
    QCommandLineParser parser;
    parser.addOptions({ date, hidden, allCompleted, hideDueLater, sort });

    if (!parser.parse(QStringList { u"vantle-day"_s } + arguments))
        return Error { parser.errorText() };
    if (parser.positionalArguments().size() != 1)
        return Error { u"Name one folder of calendars."_s };
    const QDate day = QDate::fromString(parser.value(date), Qt::ISODate);
    if (!day.isValid())
        return Error { u"--date wants a day as YYYY-MM-DD."_s };
    const auto sortMethod = static_cast<int>(QStringList { u"0"_s, u"1"_s, u"2"_s }.indexOf(parser.value(sort)));
    if (sortMethod < 0)
        return Error { u"--sort wants 0 (due date), 1 (priority) or 2 (title)."_s };

    DayOptions options;
    options.folder = parser.positionalArguments().constFirst();
    options.question.date = day.startOfDay();
    if (parser.isSet(hidden))
        options.question.unselectedCalendarsUID = parser.value(hidden).split(u',', Qt::SkipEmptyParts);
    options.question.showAllCompletedTasks = parser.isSet(allCompleted);
    options.question.hideTasksDueAfterThisWeek = parser.isSet(hideDueLater);
    options.sortMethod = sortMethod;
    return options;
}
