// SPDX-License-Identifier: MIT
#include "Values.h"

#include "CivilDate.h"

#include <algorithm>

namespace ICalendar
{

namespace
{

// Longer ones, such as lengths of a billion years, only lead to overflow.
constexpr qint64 longestDurationInDays = 10'000LL * 366;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Takes values off the front of a text.
class Scanner
{
public:
    explicit Scanner(QByteArrayView text)
        : m_rest(text.trimmed())
    {
    }

    bool isAtEnd() const { return m_rest.isEmpty(); }
    char peek() const { return isAtEnd() ? '\0' : m_rest.front(); }
    bool takeOne(QByteArrayView characters)
    {
        if (isAtEnd() || !characters.contains(m_rest.front()))
            return false;
        m_rest = m_rest.sliced(1);
        return true;
    }
    std::optional<int> takeDigits(int count)
    {
        if (m_rest.size() < count)
            return std::nullopt;
        int value = 0;
        for (int i = 0; i < count; ++i) {
            if (!isDigit(m_rest[i]))
                return std::nullopt;
            value = value * 10 + (m_rest[i] - '0');
        }
        m_rest = m_rest.sliced(count);
        return value;
    }
    // However many digits there are; large numbers are held at a limit that no calendar reaches.
    std::optional<qint64> takeNumber()
    {
        if (!isDigit(peek()))
            return std::nullopt;
        constexpr qint64 limit = 1'000'000'000'000;
        qint64 value = 0;
        while (isDigit(peek())) {
            value = std::min(value * 10 + (peek() - '0'), limit);
            m_rest = m_rest.sliced(1);
        }
        return value;
    }
    QByteArrayView rest() const { return m_rest; }

private:
    QByteArrayView m_rest;
};

std::optional<DayNumber> takeDate(Scanner &scanner)
{
    const auto year = scanner.takeDigits(4);
    scanner.takeOne("-");
    const auto month = scanner.takeDigits(2);
    scanner.takeOne("-");
    const auto day = scanner.takeDigits(2);
    if (!year || !month || !day || *year < 1 || *month < 1 || *month > 12)
        return std::nullopt;
    if (*day < 1 || *day > daysInMonth(*year, *month))
        return std::nullopt;
    return dayNumber(*year, *month, *day);
}

std::optional<int> takeTime(Scanner &scanner)
{
    const auto hour = scanner.takeDigits(2);
    scanner.takeOne(":");
    const auto minute = scanner.takeDigits(2);
    scanner.takeOne(":");
    const int second = scanner.takeDigits(2).value_or(0);
    if (!hour || !minute || *minute > 59 || second > 60)
        return std::nullopt;
    if (*hour > 24 || (*hour == 24 && (*minute > 0 || second > 0)))
        return std::nullopt;
    return static_cast<int>(*hour * secondsPerHour + *minute * secondsPerMinute + std::min(second, 59));
}

} // namespace

std::optional<DateTimeValue> parsedDateTime(QByteArrayView text)
{
    Scanner scanner(text);
    const auto day = takeDate(scanner);
    if (!day)
        return std::nullopt;
    DateTimeValue result { *day * secondsPerDay, false, false };
    if (scanner.isAtEnd()) {
        result.isDate = true;
        return result;
    }
    if (!scanner.takeOne("Tt "))
        return std::nullopt;
    const auto time = takeTime(scanner);
    if (!time)
        return std::nullopt;
    result.civil += *time;
    if (scanner.isAtEnd())
        return result;
    if (scanner.takeOne(".,"))
        scanner.takeNumber();
    if (scanner.takeOne("Zz")) {
        result.isUtc = true;
    } else if (const auto offset = parsedUtcOffset(scanner.rest())) {
        result.civil -= *offset;
        result.isUtc = true;
    }
    return result;
}

std::optional<DurationValue> parsedDuration(QByteArrayView text)
{
    Scanner scanner(text);
    const bool isNegative = scanner.peek() == '-';
    scanner.takeOne("+-");
    if (!scanner.takeOne("Pp"))
        return std::nullopt;

    DurationValue result;
    bool isTime = false;
    bool hasValue = false;
    while (!scanner.isAtEnd()) {
        if (scanner.takeOne("Tt")) {
            isTime = true;
            continue;
        }
        const auto number = scanner.takeNumber();
        if (!number)
            return std::nullopt;
        if (scanner.takeOne("Ww"))
            result.days += std::min(*number, longestDurationInDays) * daysPerWeek;
        else if (scanner.takeOne("Dd"))
            result.days += *number;
        else if (isTime && scanner.takeOne("Hh"))
            result.seconds += *number * secondsPerHour;
        else if (isTime && scanner.takeOne("Mm"))
            result.seconds += *number * secondsPerMinute;
        else if (isTime && scanner.takeOne("Ss"))
            result.seconds += *number;
        else
            return std::nullopt;
        hasValue = true;
        result.days = std::min(result.days, longestDurationInDays);
        result.seconds = std::min(result.seconds, longestDurationInDays * secondsPerDay);
    }
    if (!hasValue)
        return std::nullopt;
    if (isNegative)
        return DurationValue { -result.days, -result.seconds };
    return result;
}

std::optional<int> parsedUtcOffset(QByteArrayView text)
{
    Scanner scanner(text);
    const bool isWest = scanner.peek() == '-';
    if (!scanner.takeOne("+-"))
        return std::nullopt;
    const auto hours = scanner.takeDigits(2);
    scanner.takeOne(":");
    const auto minutes = scanner.takeDigits(2);
    scanner.takeOne(":");
    const int seconds = scanner.takeDigits(2).value_or(0);
    if (!hours || !minutes || *hours > 23 || *minutes > 59 || seconds > 59)
        return std::nullopt;
    const int offset = static_cast<int>(*hours * secondsPerHour + *minutes * secondsPerMinute + seconds);
    return isWest ? -offset : offset;
}

std::optional<qint64> parsedInteger(QByteArrayView text)
{
    Scanner scanner(text);
    const bool isNegative = scanner.peek() == '-';
    scanner.takeOne("+-");
    const auto number = scanner.takeNumber();
    if (!number || !scanner.isAtEnd())
        return std::nullopt;
    return isNegative ? -*number : *number;
}

QString decoded(QByteArrayView bytes)
{
    QString text = QString::fromUtf8(bytes);
    if (!text.contains(QChar::ReplacementCharacter) || bytes.indexOf("\xEF\xBF\xBD") >= 0)
        return text;
    const bool hasUtf8 = std::ranges::any_of(
        text, [](QChar c) { return c.unicode() > 0x7F && c.unicode() != QChar::ReplacementCharacter; });
    return hasUtf8 ? text : QString::fromLatin1(bytes);
}

QString parsedText(QByteArrayView text)
{
    QString result = decoded(text);
    result.replace(QChar::Null, QChar::ReplacementCharacter);
    if (!result.contains(u'\\'))
        return result;
    qsizetype to = 0;
    for (qsizetype from = 0; from < result.size(); ++from, ++to) {
        QChar c = result[from];
        if (c == u'\\' && from + 1 < result.size()) {
            const QChar next = result[from + 1];
            if (next == u'n' || next == u'N')
                c = u'\n';
            else if (next == u'\\' || next == u';' || next == u',' || next == u':' || next == u'"')
                c = next;
            if (c != u'\\' || next == u'\\')
                ++from;
        }
        result[to] = c;
    }
    result.truncate(to);
    return result;
}

} // namespace ICalendar
