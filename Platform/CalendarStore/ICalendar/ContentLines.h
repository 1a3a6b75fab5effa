// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

namespace ICalendar
{

// One content line (RFC 5545, section 3.1) and where it stands in the text.
struct ContentLine {
    qsizetype begin = 0; // first byte
    qsizetype end = 0; // one past its last byte, line end included
    int component = -1; // the innermost component that it belongs to, BEGIN and END lines included; -1 for none
    int number = 0; // physical line on which it begins, 1-based
};

// One component, from its BEGIN line to its END line.
struct Component {
    QByteArray name; // upper case
    int parent = -1; // -1 for a component that stands by itself
    int firstLine = 0; // index of the BEGIN line
    int lastLine = 0; // index of the END line, or of the last line before the text ends
    bool isClosed = false;
};

// The text of a file, divided into content lines and components. Every byte but a
// byte order mark at the start belongs to exactly one line, so that the lines put together
// give the text again. Damage is bounded, never fatal: nesting, line length and the
// number of lines have limits beyond which the text counts as cut.
class ContentLines
{
public:
    explicit ContentLines(QByteArray text);

    const QByteArray &text() const { return m_text; }
    const std::vector<ContentLine> &lines() const { return m_lines; }
    const std::vector<Component> &components() const { return m_components; }
    bool isCut() const { return m_isCut; }
    // "\r\n", "\n" or "\r", whichever the text uses first.
    const QByteArray &lineEnd() const { return m_lineEnd; }

    // The line without folding and line end.
    QByteArray unfolded(const ContentLine &line) const;

private:
    class Nesting;

    void divide();
    void findLineEnd();
    void nest();

    QByteArray m_text;
    std::vector<ContentLine> m_lines;
    std::vector<Component> m_components;
    QByteArray m_lineEnd = "\r\n";
    bool m_isCut = false;
};

} // namespace ICalendar
