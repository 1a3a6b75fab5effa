// SPDX-License-Identifier: MIT
#include "TextPatcher.h"

#include "PropertyLine.h"

#include <QString>
#include <QStringBuilder>

#include <algorithm>
#include <utility>

namespace ICalendar
{

TextPatcher::TextPatcher(QByteArray text)
    : m_lines(std::move(text))
{
}

bool TextPatcher::hasComponent(int component) const
{
    return component >= 0 && static_cast<std::size_t>(component) < m_lines.components().size();
}

// The lines of that name, by their index.
std::vector<std::size_t> TextPatcher::linesOf(int component, const QByteArray &name) const
{
    std::vector<std::size_t> result;
    if (!hasComponent(component))
        return result;
    const Component &place = m_lines.components()[static_cast<std::size_t>(component)];
    const QByteArray wanted = name.toUpper();
    for (auto i = static_cast<std::size_t>(place.firstLine); i <= static_cast<std::size_t>(place.lastLine); ++i) {
        const ContentLine &line = m_lines.lines()[i];
        if (line.component == component && propertyName(m_lines.unfolded(line)) == wanted)
            result.push_back(i);
    }
    return result;
}

// After the last property of the component's own, before components within it.
std::size_t TextPatcher::lineBeforeNewOnes(int component) const
{
    const Component &place = m_lines.components()[static_cast<std::size_t>(component)];
    auto last = static_cast<std::size_t>(place.firstLine);
    for (std::size_t i = last + 1; i <= static_cast<std::size_t>(place.lastLine); ++i) {
        const ContentLine &line = m_lines.lines()[i];
        if (line.component != component)
            break;
        const QByteArray whole = m_lines.unfolded(line);
        if (propertyName(whole) == "END")
            break;
        if (!whole.trimmed().isEmpty())
            last = i;
    }
    return last;
}

void TextPatcher::setProperty(
    int component, const QByteArray &name, const QByteArray &value, const QByteArray &parameters)
{
    if (!hasComponent(component))
        return;
    dropEdits(component, name);
    const QByteArray &lineEnd = m_lines.lineEnd();
    const QByteArray text = folded(name + parameters + ':' + value, lineEnd);
    const std::vector<std::size_t> present = linesOf(component, name);
    if (present.empty()) {
        const ContentLine &before = m_lines.lines()[lineBeforeNewOnes(component)];
        // A text that does not end with a line end must not run into the new line.
        const char last = m_lines.text()[before.end - 1];
        const bool isOpen = last != '\n' && last != '\r';
        m_edits.push_back(
            { before.end, before.end, isOpen ? lineEnd + text : text + lineEnd, component, name.toUpper() });
        return;
    }
    for (const std::size_t index : present) {
        const ContentLine &line = m_lines.lines()[index];
        const bool isFirst = index == present.front();
        m_edits.push_back(
            { line.begin, line.end, isFirst ? text + lineEndOf(line) : QByteArray(), component, name.toUpper() });
    }
}

void TextPatcher::removeProperty(int component, const QByteArray &name)
{
    dropEdits(component, name);
    for (const std::size_t index : linesOf(component, name)) {
        const ContentLine &line = m_lines.lines()[index];
        m_edits.push_back({ line.begin, line.end, {}, component, name.toUpper() });
    }
}

std::optional<QByteArray> TextPatcher::property(int component, const QByteArray &name) const
{
    const std::vector<std::size_t> present = linesOf(component, name);
    if (present.empty())
        return std::nullopt;
    return PropertyLine(m_lines.unfolded(m_lines.lines()[present.front()])).value().toByteArray();
}

// The last word on a property counts.
void TextPatcher::dropEdits(int component, const QByteArray &name)
{
    const QByteArray upper = name.toUpper();
    std::erase_if(m_edits, [&](const Edit &edit) { return edit.component == component && edit.name == upper; });
}

// As the line has it; nothing at the end of a text that ends without one.
QByteArray TextPatcher::lineEndOf(const ContentLine &line) const
{
    qsizetype begin = line.end;
    while (begin > line.begin && (m_lines.text()[begin - 1] == '\n' || m_lines.text()[begin - 1] == '\r'))
        --begin;
    return m_lines.text().sliced(begin, line.end - begin);
}

QByteArray TextPatcher::patchedText() const
{
    std::vector<Edit> edits = m_edits;
    std::ranges::stable_sort(
        edits, [](const Edit &a, const Edit &b) { return std::pair(a.begin, a.end) < std::pair(b.begin, b.end); });
    QByteArray result;
    qsizetype at = 0;
    for (const Edit &edit : edits) {
        result += QByteArrayView(m_lines.text()).sliced(at, edit.begin - at);
        result += edit.replacement;
        at = edit.end;
    }
    result += QByteArrayView(m_lines.text()).sliced(at);
    return result;
}

QByteArray escapedText(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\\' || c == u';' || c == u',') {
            result += u'\\';
            result += c;
        } else if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
            continue;
        } else if (c == u'\n' || c == u'\r') {
            result += QStringLiteral("\\n");
        } else {
            result += c;
        }
    }
    return result.toUtf8();
}

QByteArray folded(const QByteArray &line, const QByteArray &lineEnd)
{
    constexpr qsizetype mostOctets = 75;
    QByteArray result;
    qsizetype at = 0;
    qsizetype room = mostOctets;
    while (line.size() - at > room) {
        qsizetype cut = at + room;
        // Bytes of the form 10xxxxxx go on with a character. Four of them in a row are not UTF-8 and are cut anywhere.
        for (int back = 0; back < 3 && (static_cast<quint8>(line[cut]) & 0xC0U) == 0x80U; ++back)
            --cut;
        result += line.sliced(at, cut - at) + lineEnd + ' ';
        at = cut;
        room = mostOctets - 1;
    }
    return result + line.sliced(at);
}

} // namespace ICalendar
