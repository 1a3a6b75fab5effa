// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <ContentLines.h>

#include <QTest>

using namespace ICalendar;

namespace
{

QByteArray joined(const ContentLines &lines)
{
    QByteArray text;
    qsizetype expected = lines.lines().empty() ? 0 : lines.lines().front().begin;
    for (const ContentLine &line : lines.lines()) {
        if (line.begin != expected)
            return "a gap or an overlap";
        text += lines.text().sliced(line.begin, line.end - line.begin);
        expected = line.end;
    }
    return text;
}

QByteArrayList unfoldedLines(const ContentLines &lines)
{
    QByteArrayList result;
    for (const ContentLine &line : lines.lines())
        result.append(lines.unfolded(line));
    return result;
}

QByteArrayList componentNames(const ContentLines &lines)
{
    QByteArrayList result;
    for (const Component &component : lines.components())
        result.append(component.name);
    return result;
}

} // namespace

class ContentLinesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyByteBelongsToOneLine_data();
    void everyByteBelongsToOneLine();
    void foldingIsUndone_data();
    void foldingIsUndone();
    void lineEndIsTheFirstOne_data();
    void lineEndIsTheFirstOne();
    void linesKnowTheirComponentAndNumber();
    void byteOrderMarkIsNoPartOfTheFirstLine();
    void beginAndEndMayBeWrittenLoosely();
    void missingEndOfAnEventEndsAtTheNextOne();
    void endOfTheCalendarEndsWhatIsOpen();
    void strayEndIsOverlooked();
    void textThatEndsTooEarlyIsCut();
    void deepNestingIsBounded();
    void endlessFoldingTakesLinearTime();
    void millionsOfLinesAreBounded();
};

void ContentLinesTest::everyByteBelongsToOneLine_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no line end at the end") << QByteArray("BEGIN:VEVENT\r\nSUMMARY:a");
    QTest::newRow("mixed line ends") << QByteArray("A:1\r\nB:2\nC:3\rD:4\r\r\nE:5\n\n\r\r");
    QTest::newRow("leading blanks") << QByteArray("  A:1\n B\n\tC\n");
    QTest::newRow("NUL bytes") << QByteArray("A:\0\0\nB\0:1\n\0", 11);
    QTest::newRow("only a CR") << QByteArray("\r");
    QTest::newRow("binary") << QByteArray("\xFF\xD8\xFF\xE0\0\x10JFIF\0\r \n\t", 14);
}

void ContentLinesTest::everyByteBelongsToOneLine()
{
    QFETCH(QByteArray, text);

    const ContentLines lines(text);

    QCOMPARE(joined(lines), text);
}

void ContentLinesTest::foldingIsUndone_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArrayList>("lines");

    QTest::newRow("CRLF and blank") << QByteArray("A:on\r\n e\r\nB:2\r\n") << QByteArrayList { "A:one", "B:2" };
    QTest::newRow("LF and tab") << QByteArray("A:on\n\te\nB:2") << QByteArrayList { "A:one", "B:2" };
    QTest::newRow("CR alone") << QByteArray("A:on\r e\rB:2\r") << QByteArrayList { "A:one", "B:2" };
    QTest::newRow("CR before CRLF") << QByteArray("A:on\r\r\n e\r\r\nB:2\r\r\n") << QByteArrayList { "A:one", "B:2" };
    QTest::newRow("second blank is content") << QByteArray("A:one\r\n  two") << QByteArrayList { "A:one two" };
    QTest::newRow("inside a UTF-8 character") << QByteArray("A:\xC3\r\n \xA4") << QByteArrayList { "A:\xC3\xA4" };
    QTest::newRow("inside the name") << QByteArray("SUM\n MARY:a\n") << QByteArrayList { "SUMMARY:a" };
}

void ContentLinesTest::foldingIsUndone()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArrayList, lines);

    QCOMPARE(unfoldedLines(ContentLines(text)), lines);
}

void ContentLinesTest::lineEndIsTheFirstOne_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("lineEnd");

    QTest::newRow("none") << QByteArray("A:1") << QByteArray("\r\n");
    QTest::newRow("CRLF") << QByteArray("A:1\r\nB:2\n") << QByteArray("\r\n");
    QTest::newRow("LF") << QByteArray("A:1\nB:2\r\n") << QByteArray("\n");
    QTest::newRow("CR") << QByteArray("A:1\rB:2\r") << QByteArray("\r");
}

void ContentLinesTest::lineEndIsTheFirstOne()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, lineEnd);

    QCOMPARE(ContentLines(text).lineEnd(), lineEnd);
}

void ContentLinesTest::linesKnowTheirComponentAndNumber()
{
    const ContentLines lines("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nSUMMARY:a\r\n b\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\n"
                             "END:VALARM\r\nUID:1\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");

    QCOMPARE(componentNames(lines), (QByteArrayList { "VCALENDAR", "VEVENT", "VALARM" }));
    std::vector<int> components;
    std::vector<int> numbers;
    for (const ContentLine &line : lines.lines()) {
        components.push_back(line.component);
        numbers.push_back(line.number);
    }
    QCOMPARE(components, (std::vector<int> { 0, 1, 1, 2, 2, 2, 1, 1, 0 }));
    QCOMPARE(numbers, (std::vector<int> { 1, 2, 3, 5, 6, 7, 8, 9, 10 }));
    QCOMPARE(lines.components()[2].parent, 1);
    QCOMPARE(lines.components()[1].firstLine, 1);
    QCOMPARE(lines.components()[1].lastLine, 7);
    QVERIFY(lines.components()[1].isClosed);
    QVERIFY(!lines.isCut());
}

void ContentLinesTest::byteOrderMarkIsNoPartOfTheFirstLine()
{
    const QByteArray calendar = "BEGIN:VCALENDAR\nEND:VCALENDAR\n";
    const ContentLines lines("\xEF\xBB\xBF" + calendar);

    QCOMPARE(joined(lines), calendar);
    QCOMPARE(lines.unfolded(lines.lines().front()), QByteArray("BEGIN:VCALENDAR"));
    QCOMPARE(componentNames(lines), QByteArrayList { "VCALENDAR" });
}

void ContentLinesTest::beginAndEndMayBeWrittenLoosely()
{
    const ContentLines lines("begin:vcalendar \nBEGIN : VEVENT\n  \nEND:vevent\t\nEnd:VCalendar");

    QCOMPARE(componentNames(lines), (QByteArrayList { "VCALENDAR", "VEVENT" }));
    QVERIFY(lines.components()[1].isClosed);
    QVERIFY(!lines.isCut());
}

void ContentLinesTest::missingEndOfAnEventEndsAtTheNextOne()
{
    const ContentLines lines("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:1\nBEGIN:VEVENT\nUID:2\nEND:VEVENT\nEND:VCALENDAR\n");

    QCOMPARE(lines.components().size(), 3U);
    QCOMPARE(lines.components()[2].parent, 0);
    QVERIFY(!lines.components()[1].isClosed);
    QCOMPARE(lines.components()[1].lastLine, 2);
    QCOMPARE(lines.lines()[4].component, 2);
}

void ContentLinesTest::endOfTheCalendarEndsWhatIsOpen()
{
    const ContentLines lines("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:1\nEND:VCALENDAR\nBEGIN:VCALENDAR\nEND:VCALENDAR\n");

    QCOMPARE(lines.components().size(), 3U);
    QVERIFY(lines.components()[0].isClosed);
    QCOMPARE(lines.components()[2].parent, -1);
    QVERIFY(!lines.isCut());
}

void ContentLinesTest::strayEndIsOverlooked()
{
    const ContentLines lines(
        "END:VEVENT\nBEGIN:VCALENDAR\nEND:VTODO\nBEGIN:VEVENT\nEND:VEVENT\nEND:VCALENDAR\nEND:X\n");

    QCOMPARE(componentNames(lines), (QByteArrayList { "VCALENDAR", "VEVENT" }));
    QCOMPARE(lines.lines().front().component, -1);
    QVERIFY(!lines.isCut());
}

void ContentLinesTest::textThatEndsTooEarlyIsCut()
{
    const ContentLines lines("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:1\nSUMM");

    QVERIFY(lines.isCut());
    QCOMPARE(lines.components()[1].lastLine, 3);
    QVERIFY(!lines.components()[1].isClosed);
}

void ContentLinesTest::deepNestingIsBounded()
{
    const QByteArray text
        = QByteArray("BEGIN:X\n").repeated(100'000) + "A:1\n" + QByteArray("END:X\n").repeated(100'000);

    const ContentLines lines(text);

    QVERIFY(lines.components().size() < 100);
    QVERIFY(!lines.isCut());
    QCOMPARE(joined(lines), text);
}

void ContentLinesTest::endlessFoldingTakesLinearTime()
{
    const QByteArray text = "SUMMARY:" + QByteArray("a\n ").repeated(500'000) + "\n";

    const ContentLines lines(text);

    QCOMPARE(lines.lines().size(), 1U);
    QCOMPARE(lines.unfolded(lines.lines().front()).size(), 500'008);
}

void ContentLinesTest::millionsOfLinesAreBounded()
{
    const QByteArray text(5'000'000, '\n');

    const ContentLines lines(text);

    QVERIFY(lines.isCut());
    QVERIFY(lines.lines().size() <= 2'000'000);
    QCOMPARE(lines.lines().back().end, text.size());
}

VANTLE_TEST(ContentLinesTest)
#include "ContentLinesTest.moc"
