// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

// Writes a day as a person reads it, in the words and the order of a locale.
class VTDateFormatter final
{
public:
    // A pattern in the letters of QLocale::toString().
    VTDateFormatter(QString pattern, const QLocale &locale);

    // "Friday, 20 November" and "Friday, 20 November 2026" in English.
    static VTDateFormatter longWithoutYear(const QLocale &locale);
    static VTDateFormatter longWithYear(const QLocale &locale);
    // "Fri 20 Nov": weekday, two digits of the day, month.
    static VTDateFormatter abbreviated(const QLocale &locale);

    const QString &pattern() const { return m_pattern; }
    QString stringFromDate(const QDateTime &date) const;

private:
    QString m_pattern;
    QLocale m_locale;
};

// The pattern less its year and what ties the year to the rest: "dddd, d MMMM yyyy"
// gives "dddd, d MMMM", "yyyy年M月d日dddd" gives "M月d日dddd".
QString VTPatternWithoutYear(const QString &pattern);

// The pattern with figures of a fixed width and a whole year, as one types them digit by digit:
// "d/M/yy" gives "dd/MM/yyyy".
QString VTPatternForTyping(const QString &pattern);
