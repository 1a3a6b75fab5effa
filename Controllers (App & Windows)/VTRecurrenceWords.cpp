// SPDX-License-Identifier: MIT
#include "VTRecurrenceWords.h"

#include <QCoreApplication>
#include <QHash>
#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{

constexpr int daysPerWeek = 7;

// The parts of the rule (RFC 5545, section 3.3.10), by their names in capital letters. None for an
// event with several rules.
QHash<QString, QString> partsOf(const CalRecurrenceRule &rule)
{
    const QString text = QString::fromLatin1(rule.text.trimmed()).toUpper();
    QHash<QString, QString> parts;
    if (text.contains(u'\n'))
        return parts;
    for (const QString &part : text.split(u';', Qt::SkipEmptyParts)) {
        const qsizetype sign = part.indexOf(u'=');
        if (sign > 0)
            parts.insert(part.left(sign), part.mid(sign + 1));
    }
    return parts;
}

QString ownRule()
{
    return QCoreApplication::translate("Vantle", "by a rule of its own");
}

QString everyUnit(const QString &frequency, int interval)
{
    const bool isOne = interval <= 1;
    if (frequency == u"DAILY"_s) {
        return isOne ? QCoreApplication::translate("Vantle", "every day")
                     : QCoreApplication::translate("Vantle", "every %1 days").arg(interval);
    }
    if (frequency == u"WEEKLY"_s) {
        return isOne ? QCoreApplication::translate("Vantle", "every week")
                     : QCoreApplication::translate("Vantle", "every %1 weeks").arg(interval);
    }
    if (frequency == u"MONTHLY"_s) {
        return isOne ? QCoreApplication::translate("Vantle", "every month")
                     : QCoreApplication::translate("Vantle", "every %1 months").arg(interval);
    }
    if (frequency == u"YEARLY"_s) {
        return isOne ? QCoreApplication::translate("Vantle", "every year")
                     : QCoreApplication::translate("Vantle", "every %1 years").arg(interval);
    }
    return ownRule();
}

// Names of the days of a BYDAY without numbers; empty for one with numbers, or with something unknown.
QString weekdays(const QString &byDay, const QLocale &locale)
{
    static const QStringList codes { u"MO"_s, u"TU"_s, u"WE"_s, u"TH"_s, u"FR"_s, u"SA"_s, u"SU"_s };
    QStringList names;
    for (const QString &code : byDay.split(u',')) {
        const qsizetype day = codes.indexOf(code);
        if (day < 0)
            return {};
        names.append(locale.standaloneDayName(static_cast<int>(day) + 1));
    }
    return names.size() == daysPerWeek ? QString() : locale.createSeparatedList(names);
}

// What of the days a few words can say; empty for the rest.
QString days(const QHash<QString, QString> &parts, const QDateTime &start, const QLocale &locale)
{
    const QString frequency = parts.value(u"FREQ"_s);
    const QString byDay = parts.value(u"BYDAY"_s);
    if (frequency == u"WEEKLY"_s || (frequency == u"DAILY"_s && !byDay.isEmpty())) {
        const QString names
            = byDay.isEmpty() ? locale.standaloneDayName(start.date().dayOfWeek()) : weekdays(byDay, locale);
        return names.isEmpty() ? names : QCoreApplication::translate("Vantle", "on %1").arg(names);
    }
    static const QRegularExpression oneDay(u"^[0-9]{1,2}$"_s);
    const QString monthDay = parts.value(u"BYMONTHDAY"_s, QString::number(start.date().day()));
    if (frequency == u"MONTHLY"_s && byDay.isEmpty() && oneDay.match(monthDay).hasMatch())
        return QCoreApplication::translate("Vantle", "on day %1").arg(monthDay);
    return {};
}

QString end(const QHash<QString, QString> &parts, const QLocale &locale)
{
    if (parts.contains(u"COUNT"_s))
        return QCoreApplication::translate("Vantle", "%1 times in all").arg(parts.value(u"COUNT"_s));
    const QString until = parts.value(u"UNTIL"_s);
    QDateTime instant = QDateTime::fromString(until, u"yyyyMMdd'T'HHmmss'Z'"_s);
    instant.setTimeSpec(Qt::UTC);
    const QDate day
        = instant.isValid() ? instant.toLocalTime().date() : QDate::fromString(until.left(8), u"yyyyMMdd"_s);
    if (!day.isValid())
        return {};
    return QCoreApplication::translate("Vantle", "until %1").arg(locale.toString(day, QLocale::ShortFormat));
}

} // namespace

QString VTRecurrenceWords::every(const CalRecurrenceRule &rule)
{
    const auto parts = partsOf(rule);
    return everyUnit(parts.value(u"FREQ"_s), parts.value(u"INTERVAL"_s, u"1"_s).toInt());
}

QString VTRecurrenceWords::description(const CalRecurrenceRule &rule, const QDateTime &start, const QLocale &locale)
{
    const auto parts = partsOf(rule);
    QString words = every(rule);
    if (const QString on = days(parts, start, locale); !on.isEmpty())
        words += u' ' + on;
    if (const QString last = end(parts, locale); !last.isEmpty())
        words += u", "_s + last;
    return words;
}
