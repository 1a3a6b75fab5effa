// SPDX-License-Identifier: MIT
#include "Fuzzing.h"
#include "ItemComparison.h"

#include <ContentLines.h>
#include <ICalendarReader.h>
#include <PropertyLine.h>
#include <TextPatcher.h>
#include <ZoneRegistry.h>

#include <QSet>

using namespace ICalendar;
using Fuzzing::require;

namespace
{

// Titles that a person can type, and worse.
QString titleOf(Fuzzing::Input &input)
{
    switch (input.choice(8)) {
    case 0:
        return QStringLiteral("Plain");
    case 1:
        return QStringLiteral("back\\slash; comma, quote\" colon: \\n");
    case 2:
        return QStringLiteral("two\nlines");
    case 3:
        return QStringLiteral("END:VEVENT\r\nBEGIN:VALARM");
    case 4:
        return QString::fromUtf8("Überraschung 日历 🎂 ").repeated(12);
    case 5:
        return {};
    case 6:
        return QStringLiteral(" blanks at both ends ");
    default:
        // Whatever the input holds, read as text.
        return QString::fromUtf8(input.text().left(100));
    }
}

// A line end can only be stored as one of its kinds, and a NUL cannot be stored at all.
QString asStored(QString title)
{
    title.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    return title.remove(QChar::Null);
}

// The lines that a change of the title of a component must not touch.
QByteArrayList otherLines(const QByteArray &text, int component)
{
    static const QSet<QByteArray> names { "SUMMARY", "DTSTAMP", "LAST-MODIFIED", "SEQUENCE" };
    const ContentLines lines(text);
    QByteArrayList others;
    for (const ContentLine &line : lines.lines()) {
        if (line.component != component || !names.contains(propertyName(lines.unfolded(line))))
            others << text.sliced(line.begin, line.end - line.begin);
    }
    // Where a line goes that stood between a carriage return and a line feed, the two lines around it are kept apart.
    if (lines.lineEnd() == "\r") {
        for (QByteArray &line : others)
            line.replace('\r', "").replace('\n', "");
    }
    // A line that ends the text without a line end gets one when something is put behind it.
    while (!others.isEmpty() && (others.last().endsWith('\n') || others.last().endsWith('\r')))
        others.last().chop(1);
    return others;
}

} // namespace

// A changed title reads as it was typed, and nothing else of the file is any different.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::silenceLog();
    Fuzzing::Input input(data, size);
    ZoneRegistry zones;
    const Document before = readDocument(input.text(), zones);
    // Such files are refused.
    if (before.items.isEmpty() || !before.canBeChanged())
        return 0;
    const int changed = input.choice(static_cast<int>(std::min<qsizetype>(before.items.size(), 255)));
    const Item &item = before.items.at(changed);
    const QString title = titleOf(input);

    TextPatcher patcher(input.text());
    patcher.setProperty(item.component, "SUMMARY", escapedText(title));
    patcher.setProperty(item.component, "DTSTAMP", "20260311T120000Z");
    patcher.setProperty(item.component, "LAST-MODIFIED", "20260311T120000Z");
    patcher.setProperty(item.component, "SEQUENCE", "7");
    const QByteArray text = patcher.patchedText();

    const Document after = readDocument(text, zones);
    require(after.items.size() == before.items.size(), "a change makes and loses no item");
    require(after.canBeChanged(), "a whole file stays whole");
    for (qsizetype index = 0; index < after.items.size(); ++index) {
        if (index != changed)
            require(Fuzzing::isSame(after.items.at(index), before.items.at(index)), "other items stay as they are");
    }
    require(Fuzzing::isSameButForTitle(after.items.at(changed), item), "other properties stay as they are");
    require(after.items.at(changed).summary == asStored(title), "a title reads as it was written");
    require(after.items.at(changed).sequence == 7, "the change is counted");
    require(otherLines(text, item.component) == otherLines(input.text(), item.component), "no other line is touched");
    return 0;
}
