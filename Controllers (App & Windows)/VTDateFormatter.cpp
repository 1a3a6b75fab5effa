// SPDX-License-Identifier: MIT
#include "VTDateFormatter.h"

#include <QCoreApplication>
#include <QList>

using namespace Qt::StringLiterals;

namespace
{

// A run of one pattern letter (a field of the date), or what stands between two fields.
struct Piece {
    QString text;
    QChar field; // null between fields
};

bool isField(QChar character)
{
    return character == u'd' || character == u'M' || character == u'y';
}

void append(QList<Piece> &pieces, QChar character, QChar field)
{
    if (pieces.isEmpty() || pieces.last().field != field)
        pieces.append({ QString(), field });
    pieces.last().text.append(character);
}

QList<Piece> piecesOf(const QString &pattern)
{
    QList<Piece> pieces;
    bool isQuoted = false;
    for (const QChar character : pattern) {
        if (character == u'\'')
            isQuoted = !isQuoted;
        const bool stands = !isQuoted && isField(character);
        append(pieces, character, stands ? character : QChar());
    }
    return pieces;
}

// Locales have no pattern without a year, but a translation may bring one for its language.
QString translatedOr(const char *englishPattern, const QString &localePattern)
{
    const QString translated = QCoreApplication::translate("Vantle", englishPattern);
    return translated == QLatin1String(englishPattern) ? localePattern : translated;
}

} // namespace

VTDateFormatter::VTDateFormatter(QString pattern, const QLocale &locale)
    : m_pattern(std::move(pattern))
    , m_locale(locale)
{
}

VTDateFormatter VTDateFormatter::longWithoutYear(const QLocale &locale)
{
    //: The pattern of a long date without its year; the letters stay, their order and the rest are yours.
    const QString pattern = translatedOr(
        QT_TRANSLATE_NOOP("Vantle", "dddd, d MMMM"), VTPatternWithoutYear(locale.dateFormat(QLocale::LongFormat)));
    return { pattern, locale };
}

VTDateFormatter VTDateFormatter::longWithYear(const QLocale &locale)
{
    //: The pattern of a long date with its year; the letters stay, their order and the rest are yours.
    const QString pattern
        = translatedOr(QT_TRANSLATE_NOOP("Vantle", "dddd, d MMMM yyyy"), locale.dateFormat(QLocale::LongFormat));
    return { pattern, locale };
}

VTDateFormatter VTDateFormatter::abbreviated(const QLocale &locale)
{
    return { u"ddd dd MMM"_s, locale };
}

QString VTDateFormatter::stringFromDate(const QDateTime &date) const
{
    return m_locale.toString(date.date(), m_pattern);
}

QString VTPatternWithoutYear(const QString &pattern)
{
    QList<Piece> pieces = piecesOf(pattern);
    const auto isYear = [](const Piece &piece) { return piece.field == u'y'; };
    const auto year = std::ranges::find_if(pieces, isYear);
    if (year == pieces.end())
        return pattern;

    // What follows the year belongs to it; at the end, what leads to it as well.
    auto first = year;
    auto last = year + 1;
    while (last != pieces.end() && last->field.isNull())
        ++last;
    if (last == pieces.end()) {
        while (first != pieces.begin() && (first - 1)->field.isNull())
            --first;
    }
    pieces.erase(first, last);

    QString result;
    for (const Piece &piece : std::as_const(pieces))
        result += piece.text;
    return result;
}

QString VTPatternForTyping(const QString &pattern)
{
    QString result;
    for (const Piece &piece : piecesOf(pattern)) {
        if (piece.field == u'y')
            result += u"yyyy"_s;
        else if (!piece.field.isNull() && piece.text.size() == 1)
            result += piece.text + piece.text;
        else
            result += piece.text;
    }
    return result;
}
