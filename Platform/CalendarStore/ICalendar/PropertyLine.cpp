// SPDX-License-Identifier: MIT
#include "PropertyLine.h"

namespace ICalendar
{

namespace
{

// RFC 6868.
QByteArray withoutCarets(const QByteArray &text)
{
    if (!text.contains('^'))
        return text;
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char next = text[i] == '^' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == 'n')
            result += '\n';
        else if (next == '\'')
            result += '"';
        else if (next == '^')
            result += '^';
        else {
            result += text[i];
            continue;
        }
        ++i;
    }
    return result;
}

QByteArray withoutQuotes(const QByteArray &text)
{
    if (!text.startsWith('"'))
        return text;
    const qsizetype close = text.indexOf('"', 1);
    return close < 0 ? text.sliced(1) : text.sliced(1, close - 1);
}

} // namespace

QByteArray propertyName(QByteArrayView line)
{
    if (line.startsWith("\xEF\xBB\xBF"))
        line = line.sliced(3);
    qsizetype end = 0;
    while (end < line.size() && line[end] != ';' && line[end] != ':' && line[end] != '\r' && line[end] != '\n')
        ++end;
    line = line.first(end);
    const qsizetype group = line.lastIndexOf('.');
    return line.sliced(group + 1).trimmed().toByteArray().toUpper();
}

PropertyLine::PropertyLine(QByteArray line)
    : m_line(std::move(line))
    , m_name(propertyName(m_line))
{
    qsizetype colon = findColon(true);
    if (colon < 0)
        colon = findColon(false);
    const QByteArrayView head = QByteArrayView(m_line).first(colon < 0 ? m_line.size() : colon);
    const qsizetype semicolon = head.indexOf(';');
    if (semicolon >= 0)
        takeParameters(head.sliced(semicolon + 1));
    m_valueBegin = colon < 0 ? -1 : colon + 1;
}

QByteArrayView PropertyLine::value() const
{
    return hasValue() ? QByteArrayView(m_line).sliced(m_valueBegin) : QByteArrayView();
}

std::optional<QByteArray> PropertyLine::parameter(QByteArrayView name) const
{
    for (const Parameter &parameter : m_parameters) {
        if (parameter.name == name)
            return withoutCarets(withoutQuotes(parameter.value));
    }
    return std::nullopt;
}

QByteArray PropertyLine::parameterText(const QByteArray &name) const
{
    for (const Parameter &parameter : m_parameters) {
        if (parameter.name == name)
            return ';' + parameter.text;
    }
    return {};
}

QByteArray PropertyLine::parametersWithout(const QByteArrayList &names) const
{
    QByteArray text;
    for (const Parameter &parameter : m_parameters) {
        if (!names.contains(parameter.name))
            text += ';' + parameter.text;
    }
    return text;
}

qsizetype PropertyLine::findColon(bool honoursQuotes) const
{
    bool isQuoted = false;
    for (qsizetype i = 0; i < m_line.size(); ++i) {
        if (honoursQuotes && m_line[i] == '"')
            isQuoted = !isQuoted;
        else if (m_line[i] == ':' && !isQuoted)
            return i;
    }
    return -1;
}

void PropertyLine::takeParameters(QByteArrayView text)
{
    qsizetype begin = 0;
    bool isQuoted = false;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == '"')
            isQuoted = !isQuoted;
        if (i < text.size() && (text[i] != ';' || isQuoted))
            continue;
        const QByteArrayView one = text.sliced(begin, i - begin);
        const qsizetype equals = one.indexOf('=');
        const QByteArrayView name = equals < 0 ? one : one.first(equals);
        const QByteArrayView value = equals < 0 ? QByteArrayView() : one.sliced(equals + 1);
        m_parameters.push_back(
            { name.trimmed().toByteArray().toUpper(), value.trimmed().toByteArray(), one.toByteArray() });
        begin = i + 1;
    }
}

} // namespace ICalendar
