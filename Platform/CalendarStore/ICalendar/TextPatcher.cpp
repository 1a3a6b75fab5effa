// SPDX-License-Identifier: MIT
#include "TextPatcher.h"

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

std::vector<int> TextPatcher::componentsWithin(int component, const QByteArray &name) const
{
    const std::vector<Component> &all = m_lines.components();
    std::vector<int> result;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].parent == component && all[i].name == name)
            result.push_back(static_cast<int>(i));
    }
    return result;
}

int TextPatcher::componentAround(int component, const QByteArray &name) const
{
    const std::vector<Component> &all = m_lines.components();
    int around = hasComponent(component) ? all[static_cast<std::size_t>(component)].parent : -1;
    while (around >= 0 && all[static_cast<std::size_t>(around)].name != name)
        around = all[static_cast<std::size_t>(around)].parent;
    return around;
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
    setProperty(component, name, value, parameters, Lines::All);
}

void TextPatcher::setFirstProperty(
    int component, const QByteArray &name, const QByteArray &value, const QByteArray &parameters)
{
    setProperty(component, name, value, parameters, Lines::First);
}

void TextPatcher::setProperty(
    int component, const QByteArray &name, const QByteArray &value, const QByteArray &parameters, Lines which)
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
        if (!isFirst && which == Lines::First)
            break;
        m_edits.push_back(
            { line.begin, line.end, isFirst ? text + lineEndOf(line) : QByteArray(), component, name.toUpper() });
    }
}

void TextPatcher::removeProperty(int component, const QByteArray &name)
{
    removeProperty(component, name, Lines::All);
}

void TextPatcher::removeFirstProperty(int component, const QByteArray &name)
{
    removeProperty(component, name, Lines::First);
}

void TextPatcher::removeProperty(int component, const QByteArray &name, Lines which)
{
    dropEdits(component, name);
    for (const std::size_t index : linesOf(component, name)) {
        const ContentLine &line = m_lines.lines()[index];
        m_edits.push_back({ line.begin, line.end, {}, component, name.toUpper() });
        if (which == Lines::First)
            break;
    }
}

std::optional<QByteArray> TextPatcher::property(int component, const QByteArray &name) const
{
    const auto line = propertyLine(component, name);
    return line ? std::optional(line->value().toByteArray()) : std::nullopt;
}

std::optional<PropertyLine> TextPatcher::propertyLine(int component, const QByteArray &name) const
{
    const std::vector<std::size_t> present = linesOf(component, name);
    if (present.empty())
        return std::nullopt;
    return PropertyLine(m_lines.unfolded(m_lines.lines()[present.front()]));
}

void TextPatcher::appendComponent(int parent, const QByteArrayList &lines)
{
    if (!hasComponent(parent))
        return;
    const Component &place = m_lines.components()[static_cast<std::size_t>(parent)];
    const ContentLine &last = m_lines.lines()[static_cast<std::size_t>(place.lastLine)];
    // A damaged text may close the component only by closing what is around it: its last line can be that of
    // a component within.
    const bool isClosed = last.component == parent && propertyName(m_lines.unfolded(last)) == "END";
    const qsizetype at = isClosed ? last.begin : last.end;
    const QByteArray lineEnd = at > last.begin && lineEndOf(last).isEmpty() ? m_lines.lineEnd() : QByteArray();
    m_edits.push_back({ at, at, lineEnd + foldedLines(lines), parent, {} });
}

void TextPatcher::insertComponentBefore(int component, const QByteArrayList &lines)
{
    if (!hasComponent(component))
        return;
    const Component &place = m_lines.components()[static_cast<std::size_t>(component)];
    const qsizetype at = m_lines.lines()[static_cast<std::size_t>(place.firstLine)].begin;
    const QByteArray text = foldedLines(lines);
    const bool isThere = std::ranges::any_of(m_edits, [&](const Edit &edit) {
        return edit.name.isEmpty() && edit.begin == at && edit.end == at && edit.replacement == text;
    });
    if (!isThere)
        m_edits.push_back({ at, at, text, place.parent, {} });
}

void TextPatcher::removeComponent(int component)
{
    if (!hasComponent(component))
        return;
    const Component &place = m_lines.components()[static_cast<std::size_t>(component)];
    m_edits.push_back({ m_lines.lines()[static_cast<std::size_t>(place.firstLine)].begin,
        m_lines.lines()[static_cast<std::size_t>(place.lastLine)].end, {}, component, {} });
}

QByteArray TextPatcher::foldedLines(const QByteArrayList &lines) const
{
    QByteArray text;
    for (const QByteArray &line : lines)
        text += folded(line, m_lines.lineEnd()) + m_lines.lineEnd();
    return text;
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
    // Insertions come before what is replaced at the same place, and the whole of a component before its lines.
    std::ranges::stable_sort(edits, [](const Edit &a, const Edit &b) {
        const bool isInsertionBeforeOther = a.begin == a.end && b.begin != b.end;
        if (a.begin != b.begin || (a.begin == a.end) != (b.begin == b.end))
            return a.begin != b.begin ? a.begin < b.begin : isInsertionBeforeOther;
        return a.end > b.end;
    });
    QByteArray result;
    qsizetype at = 0;
    for (const Edit &edit : edits) {
        if (edit.begin < at)
            continue; // within a component that is removed
        appendLines(result, QByteArrayView(m_lines.text()).sliced(at, edit.begin - at));
        appendLines(result, edit.replacement);
        at = edit.end;
    }
    appendLines(result, QByteArrayView(m_lines.text()).sliced(at));
    return result;
}

void appendLines(QByteArray &text, QByteArrayView lines)
{
    if (text.endsWith('\r') && lines.startsWith('\n'))
        text += '\n';
    text += lines;
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
        } else if (c.isNull()) {
            continue; // RFC 5545, section 3.1, and many a reader, cannot have it
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
