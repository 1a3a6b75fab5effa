// SPDX-License-Identifier: MIT
#pragma once

#include "ContentLines.h"
#include "PropertyLine.h"

#include <QByteArray>
#include <QByteArrayList>

#include <optional>
#include <vector>

namespace ICalendar
{

// Changes properties and components in the text of a calendar file and leaves every
// other byte as it is: other properties, their parameters, folding, order and line ends.
class TextPatcher
{
public:
    explicit TextPatcher(QByteArray text);

    const ContentLines &lines() const { return m_lines; }
    // Whether the text has a component at that place; without it nothing is changed.
    bool hasComponent(int component) const;
    // The components of that name (upper case) right within another, in order.
    std::vector<int> componentsWithin(int component, const QByteArray &name) const;
    // The innermost component of that name that holds this one; -1 when there is none.
    int componentAround(int component, const QByteArray &name) const;

    // Gives a property of a component (its place in ContentLines::components) this value. The first line of
    // that name takes it in place and loses its parameters; further lines of the name are removed; where there is
    // none, a line is added at the end of the component's own properties. `value` is the value as the file
    // holds it (text already escaped); `parameters` starts with a semicolon or is empty.
    void setProperty(int component, const QByteArray &name, const QByteArray &value, const QByteArray &parameters = {});
    void removeProperty(int component, const QByteArray &name);
    // The same for the first line of that name alone; further ones stay.
    void setFirstProperty(
        int component, const QByteArray &name, const QByteArray &value, const QByteArray &parameters = {});
    void removeFirstProperty(int component, const QByteArray &name);
    // The value of the first line of that name, unfolded, as the file holds it; nothing when there is none.
    std::optional<QByteArray> property(int component, const QByteArray &name) const;
    // The first line of that name, unfolded; nothing when there is none.
    std::optional<PropertyLine> propertyLine(int component, const QByteArray &name) const;

    // Unfolded lines from BEGIN to END, put before the END of another component, or before the whole of one.
    // The same lines before the same component are inserted once.
    void appendComponent(int parent, const QByteArrayList &lines);
    void insertComponentBefore(int component, const QByteArrayList &lines);
    // With all that is in it, whatever else is said of it.
    void removeComponent(int component);

    QByteArray patchedText() const;

private:
    struct Edit {
        qsizetype begin;
        qsizetype end;
        QByteArray replacement;
        int component;
        QByteArray name; // upper case; empty when the edit is of a component
    };
    enum class Lines { All, First };

    std::vector<std::size_t> linesOf(int component, const QByteArray &name) const;
    void setProperty(
        int component, const QByteArray &name, const QByteArray &value, const QByteArray &parameters, Lines which);
    void removeProperty(int component, const QByteArray &name, Lines which);
    QByteArray foldedLines(const QByteArrayList &lines) const;
    std::size_t lineBeforeNewOnes(int component) const;
    QByteArray lineEndOf(const ContentLine &line) const;
    void dropEdits(int component, const QByteArray &name);

    ContentLines m_lines;
    std::vector<Edit> m_edits;
};

// RFC 5545, section 3.3.11.
QByteArray escapedText(const QString &text);
// Puts whole lines behind others. Where the one before ends with a carriage return alone and the next is empty and ends
// with a line feed, the two would read as one line end.
void appendLines(QByteArray &text, QByteArrayView lines);
// RFC 5545, section 3.1: lines of at most 75 octets, never cut inside a UTF-8 character.
QByteArray folded(const QByteArray &line, const QByteArray &lineEnd);

} // namespace ICalendar
