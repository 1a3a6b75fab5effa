// SPDX-License-Identifier: MIT
#include "ContentLines.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ICalendar
{

namespace
{

constexpr qsizetype maximumLines = 2'000'000;
constexpr int maximumDepth = 32;

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

// One past the line end that begins at `at`. A CR that a careless transfer put before CRLF belongs to it.
qsizetype afterLineEnd(const QByteArray &text, qsizetype at)
{
    if (text[at] == '\n')
        return at + 1;
    qsizetype next = at + 1;
    if (next < text.size() && text[next] == '\r' && next + 1 < text.size() && text[next + 1] == '\n')
        ++next;
    if (next < text.size() && text[next] == '\n')
        return next + 1;
    return at + 1;
}

// The line end at or after `at`; the size of the text when there is none.
qsizetype nextLineEnd(const QByteArray &text, qsizetype at)
{
    const char *const begin = text.constData() + at;
    const char *const end = text.constData() + text.size();
    const char *lineFeed = static_cast<const char *>(std::memchr(begin, '\n', static_cast<std::size_t>(end - begin)));
    if (!lineFeed)
        lineFeed = end;
    const char *const carriageReturn
        = static_cast<const char *>(std::memchr(begin, '\r', static_cast<std::size_t>(lineFeed - begin)));
    return (carriageReturn ? carriageReturn : lineFeed) - text.constData();
}

// Components that stand side by side and never one in another: a BEGIN of one ends another that was left open.
bool standsByItself(const QByteArray &name)
{
    static const std::array<QByteArray, 5> names { "VEVENT", "VTODO", "VJOURNAL", "VFREEBUSY", "VTIMEZONE" };
    return std::ranges::find(names, name) != names.end();
}

// What a BEGIN of `name` cannot be inside of.
bool isEndedBy(const QByteArray &open, const QByteArray &name)
{
    if (name == "VCALENDAR")
        return true;
    if (standsByItself(name))
        return standsByItself(open);
    return name == "VALARM" && open == "VALARM";
}

} // namespace

// Follows BEGIN and END lines.
class ContentLines::Nesting
{
public:
    explicit Nesting(std::vector<Component> &components)
        : m_components(components)
    {
    }

    // The component that the line belongs to.
    int take(const QByteArray &keyword, const QByteArray &name, int line)
    {
        if (keyword == "BEGIN")
            return begin(name, line);
        return end(name, line);
    }
    int innermost() const { return m_open.empty() ? -1 : m_open.back(); }
    bool isOpen() const { return !m_open.empty(); }
    void closeAll(int lastLine)
    {
        while (!m_open.empty())
            close(lastLine);
    }

private:
    int begin(const QByteArray &name, int line)
    {
        const auto ended = std::ranges::find_if(
            m_open, [&](int open) { return isEndedBy(m_components[static_cast<std::size_t>(open)].name, name); });
        if (ended != m_open.end()) {
            m_excessDepth = 0;
            for (auto left = std::distance(ended, m_open.end()); left > 0; --left)
                close(line - 1);
        }
        if (static_cast<int>(m_open.size()) >= maximumDepth) {
            ++m_excessDepth;
            return innermost();
        }
        m_components.push_back({ name, innermost(), line, line, false });
        m_open.push_back(static_cast<int>(m_components.size()) - 1);
        return innermost();
    }

    int end(const QByteArray &name, int line)
    {
        if (m_excessDepth > 0) {
            --m_excessDepth;
            return innermost();
        }
        const auto found = std::find_if(m_open.rbegin(), m_open.rend(),
            [&](int open) { return m_components[static_cast<std::size_t>(open)].name == name; });
        if (found == m_open.rend())
            return innermost();
        const int ended = *found;
        while (m_open.back() != ended)
            close(line - 1);
        close(line);
        m_components[static_cast<std::size_t>(ended)].isClosed = true;
        return ended;
    }

    void close(int lastLine)
    {
        Component &component = m_components[static_cast<std::size_t>(m_open.back())];
        component.lastLine = std::max(component.firstLine, lastLine);
        m_open.pop_back();
    }

    std::vector<Component> &m_components;
    std::vector<int> m_open; // innermost last
    int m_excessDepth = 0; // levels below the deepest that is kept
};

ContentLines::ContentLines(QByteArray text)
    : m_text(std::move(text))
{
    divide();
    findLineEnd();
    nest();
}

void ContentLines::divide()
{
    m_lines.reserve(static_cast<std::size_t>(std::min(m_text.size() / 24 + 1, maximumLines)));
    // A byte order mark is no part of the first line: wherever that goes, the mark stays.
    qsizetype at = m_text.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;
    int number = 1;
    while (at < m_text.size()) {
        if (static_cast<qsizetype>(m_lines.size()) == maximumLines) {
            m_lines.back().end = m_text.size();
            m_isCut = true;
            return;
        }
        ContentLine line { at, at, -1, number };
        do {
            at = nextLineEnd(m_text, at);
            if (at < m_text.size())
                at = afterLineEnd(m_text, at);
            ++number;
        } while (at < m_text.size() && isBlank(m_text[at]));
        line.end = at;
        m_lines.push_back(line);
    }
}

void ContentLines::findLineEnd()
{
    const qsizetype at = nextLineEnd(m_text, 0);
    if (at == m_text.size())
        return;
    if (m_text[at] == '\n')
        m_lineEnd = "\n";
    else if (at + 1 == m_text.size() || m_text[afterLineEnd(m_text, at) - 1] != '\n')
        m_lineEnd = "\r";
}

void ContentLines::nest()
{
    Nesting nesting(m_components);
    int index = 0;
    for (ContentLine &line : m_lines) {
        line.component = nesting.innermost();
        qsizetype at = line.begin;
        while (at < line.end && isBlank(m_text[at]))
            ++at;
        const char first = at < line.end ? m_text[at] : '\0';
        // Few lines get past this, and only they are unfolded.
        if (first == 'B' || first == 'b' || first == 'E' || first == 'e') {
            constexpr qsizetype longestOfInterest = 200;
            const QByteArrayView start = QByteArrayView(m_text).sliced(at, std::min<qsizetype>(line.end - at, 6));
            const bool isBegin = start.size() > 5 && qstrnicmp(start.data(), "BEGIN", 5) == 0;
            const bool isEnd = !isBegin && start.size() > 3 && qstrnicmp(start.data(), "END", 3) == 0;
            if ((isBegin || isEnd) && line.end - line.begin <= longestOfInterest) {
                const QByteArray whole = unfolded(line);
                const qsizetype colon = whole.indexOf(':');
                const QByteArray keyword = whole.first(std::max<qsizetype>(colon, 0)).trimmed().toUpper();
                const QByteArray name = whole.sliced(colon + 1).trimmed().toUpper();
                if ((keyword == "BEGIN" || keyword == "END") && !name.isEmpty())
                    line.component = nesting.take(keyword, name, index);
            }
        }
        ++index;
    }
    if (nesting.isOpen())
        m_isCut = true;
    nesting.closeAll(index - 1);
}

QByteArray ContentLines::unfolded(const ContentLine &line) const
{
    qsizetype at = line.begin;
    qsizetype lineEnd = std::min(nextLineEnd(m_text, at), line.end);
    QByteArray result(m_text.constData() + at, lineEnd - at);
    // A line that was cut off at the limit holds further lines; only its first one counts.
    while (lineEnd < line.end) {
        at = afterLineEnd(m_text, lineEnd);
        if (at >= line.end || !isBlank(m_text[at]))
            break;
        lineEnd = std::min(nextLineEnd(m_text, at), line.end);
        result.append(m_text.constData() + at + 1, lineEnd - at - 1);
    }
    return result;
}

} // namespace ICalendar
