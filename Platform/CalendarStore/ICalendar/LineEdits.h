// SPDX-License-Identifier: MIT
#pragma once

#include "ContentLines.h"

#include <QByteArray>

#include <map>

namespace ICalendar
{

// Changes whole lines and components of a text, and leaves every other byte as it
// is. Where TextPatcher knows properties by their name, this one knows single
// lines, by their index: for properties that a component has many of.
class LineEdits
{
public:
    // `lines` must outlive the edits.
    explicit LineEdits(const ContentLines &lines);

    // `content` is the line without folding and line end. The last word on a line counts.
    void replaceLine(std::size_t line, const QByteArray &content);
    void removeLine(std::size_t line);
    // What is inserted at one place stands there in the order of the calls.
    void insertLineAfter(std::size_t line, const QByteArray &content);
    // `text` is made of whole lines, each with its line end.
    void insertTextAfter(std::size_t line, const QByteArray &text);
    void removeComponent(int component);

    QByteArray text() const;

private:
    struct Edit {
        bool isReplaced = false;
        QByteArray replacement; // of the line with its line end
        QByteArray inserted; // after it
    };

    QByteArray lineEndOf(const ContentLine &line) const;

    const ContentLines &m_lines;
    std::map<std::size_t, Edit> m_edits; // by line
};

// A component's own lines of one name, by their index; those of components within it are not among them.
std::vector<std::size_t> linesNamed(const ContentLines &lines, int component, const QByteArray &name);

} // namespace ICalendar
