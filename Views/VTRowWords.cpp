// SPDX-License-Identifier: MIT
#include "VTRowWords.h"

#include "KLVDatePicker.h"
#include "KLVText.h"

#include <QCoreApplication>

#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{

QString translated(const char *text)
{
    return QCoreApplication::translate("Vantle", text);
}

bool changesDirection(QChar character)
{
    const char16_t code = character.unicode();
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069) || code == 0x200e || code == 0x200f
        || code == 0x061c;
}

} // namespace

QString VTRowWords::time(const QTime &time, const QLocale &locale)
{
    return locale.toString(time, KLVTimePattern(locale));
}

QString VTRowWords::shortDay(const QDate &day, const QLocale &locale)
{
    return locale.toString(day, translated(QT_TRANSLATE_NOOP("Vantle", "d MMM")));
}

QString VTRowWords::day(const QDate &day, const QDate &today, const QLocale &locale)
{
    constexpr qint64 daysOfWeek = 7;
    const qint64 distance = today.daysTo(day);
    if (distance == 0)
        return translated(QT_TRANSLATE_NOOP("Vantle", "today"));
    if (distance == 1)
        return translated(QT_TRANSLATE_NOOP("Vantle", "tomorrow"));
    if (distance == -1)
        return translated(QT_TRANSLATE_NOOP("Vantle", "yesterday"));
    if (std::abs(distance) <= daysOfWeek)
        return locale.toString(day, translated(QT_TRANSLATE_NOOP("Vantle", "ddd d MMM")));
    if (day.year() == today.year())
        return locale.toString(day, translated(QT_TRANSLATE_NOOP("Vantle", "d MMM")));
    return locale.toString(day, translated(QT_TRANSLATE_NOOP("Vantle", "d MMM yyyy")));
}

QString VTRowWords::dayAndTime(const QDateTime &instant, const QDate &today, const QLocale &locale)
{
    //: A day ("yesterday", "Mon 23 Nov") and a time of day
    return translated(QT_TRANSLATE_NOOP("Vantle", "%1, %2"))
        .arg(day(instant.date(), today, locale), time(instant.time(), locale));
}

QString VTRowWords::due(const QDateTime &dueDate, bool isDateOnly, const QDate &today, const QLocale &locale)
{
    //: When a to-do is due: "due yesterday, 18:00", "due Sun 22 Nov"
    return translated(QT_TRANSLATE_NOOP("Vantle", "due %1"))
        .arg(isDateOnly ? day(dueDate.date(), today, locale) : dayAndTime(dueDate, today, locale));
}

bool VTRowWords::isOverdue(const QDateTime &dueDate, bool isDateOnly, const QDateTime &now)
{
    return isDateOnly ? dueDate.date() < now.date() : dueDate < now;
}

QString VTRowWords::link(const QUrl &url)
{
    QString text = url.toDisplayString();
    const bool isWeb = url.scheme() == u"http"_s || url.scheme() == u"https"_s;
    if (isWeb && text.startsWith(url.scheme() + u"://"_s)) {
        text.remove(0, url.scheme().size() + 3);
        if (text.count(u'/') == 1 && text.endsWith(u'/'))
            text.chop(1);
    }
    text.removeIf(changesDirection);
    return KLVText::singleLine(text);
}

QString VTRowWords::startBadge(const QDateTime &start, const QDateTime &shownDate, const QLocale &locale)
{
    const bool isEarlier = shownDate.isValid() && start.date() < shownDate.date();
    return isEarlier ? shortDay(start.date(), locale) : time(start.time(), locale);
}

QString VTRowWords::endBadge(
    const QDateTime &start, const QDateTime &end, const QDateTime &shownDate, const QLocale &locale)
{
    if (end == start)
        return {};
    // Midnight belongs to the evening before it.
    const bool isLater = shownDate.isValid() && end.addMSecs(-1).date() > shownDate.date();
    return isLater ? shortDay(end.date(), locale) : time(end.time(), locale);
}
