// SPDX-License-Identifier: MIT
#include "LineEdits.h"

#include "PropertyLine.h"
#include "TextPatcher.h"

#include <QStringBuilder>

namespace ICalendar
{

LineEdits::LineEdits(const ContentLines &lines)
    : m_lines(lines)
{
}

void LineEdits::replaceLine(std::size_t line, const QByteArray &content)
{
    Edit &edit = m_edits[line];
    edit.isReplaced = true;
    edit.replacement = folded(content, m_lines.lineEnd()) + lineEndOf(m_lines.lines()[line]);
}

void LineEdits::removeLine(std::size_t line)
{
    Edit &edit = m_edits[line];
    edit.isReplaced = true;
    edit.replacement.clear();
}

void LineEdits::insertLineAfter(std::size_t line, const QByteArray &content)
{
    insertTextAfter(line, folded(content, m_lines.lineEnd()) + m_lines.lineEnd());
}

void LineEdits::insertTextAfter(std::size_t line, const QByteArray &text)
{
    m_edits[line].inserted += text;
}

void LineEdits::removeComponent(int component)
{
    const Component &place = m_lines.components()[static_cast<std::size_t>(component)];
    for (int line = place.firstLine; line <= place.lastLine; ++line) {
        Edit &edit = m_edits[static_cast<std::size_t>(line)];
        edit.isReplaced = true;
        edit.replacement.clear();
        // What comes after the component stays.
        if (line < place.lastLine)
            edit.inserted.clear();
    }
}

QByteArray LineEdits::text() const
{
    const QByteArray &before = m_lines.text();
    QByteArray result;
    result.reserve(before.size() + 1024);
    qsizetype at = 0;
    for (const auto &[index, edit] : m_edits) {
        const ContentLine &line = m_lines.lines()[index];
        const qsizetype copied = edit.isReplaced ? line.begin : line.end;
        appendLines(result, QByteArrayView(before).sliced(at, copied - at));
        appendLines(result, edit.replacement);
        at = line.end;
        // A text that does not end with a line end must not run into the new line.
        if (!edit.inserted.isEmpty() && !result.isEmpty() && !result.endsWith('\n') && !result.endsWith('\r'))
            result += m_lines.lineEnd();
        appendLines(result, edit.inserted);
    }
    appendLines(result, QByteArrayView(before).sliced(at));
    return result;
}

// As the line has it; nothing at the end of a text that ends without one.
QByteArray LineEdits::lineEndOf(const ContentLine &line) const
{
    qsizetype begin = line.end;
    while (begin > line.begin && (m_lines.text()[begin - 1] == '\n' || m_lines.text()[begin - 1] == '\r'))
        --begin;
    return m_lines.text().sliced(begin, line.end - begin);
}

std::vector<std::size_t> linesNamed(const ContentLines &lines, int component, const QByteArray &name)
{
    std::vector<std::size_t> result;
    const Component &place = lines.components()[static_cast<std::size_t>(component)];
    for (auto i = static_cast<std::size_t>(place.firstLine); i <= static_cast<std::size_t>(place.lastLine); ++i) {
        const ContentLine &line = lines.lines()[i];
        if (line.component == component && propertyName(lines.unfolded(line)) == name)
            result.push_back(i);
    }
    return result;
}

} // namespace ICalendar
