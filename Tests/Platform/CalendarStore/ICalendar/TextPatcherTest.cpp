// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <TextPatcher.h>

#include <QTest>

using namespace ICalendar;
using namespace Qt::StringLiterals;

namespace
{

const QByteArray taskText = "BEGIN:VCALENDAR\r\nX-ODD;p=1: keep \\f; this\r\nBEGIN:VTODO\r\nUID:1\r\n"
                            "summary;LANGUAGE=de:Wäsche\r\n  waschen\r\nX-LONG:abc\r\n def\r\n"
                            "BEGIN:VALARM\r\nACTION:DISPLAY\r\nSUMMARY:in the alarm\r\nEND:VALARM\r\n"
                            "END:VTODO\r\nEND:VCALENDAR\r\n";
constexpr int task = 1;

} // namespace

class TextPatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void untouchedTextComesOutAsItWas();
    void valueIsReplacedInPlace();
    void furtherLinesOfTheNameAreRemoved();
    void newPropertyStandsBeforeTheAlarms();
    void propertyOfANestedComponentIsNotTouched();
    void removedPropertyTakesItsFoldsAlong();
    void groupsAndLowerCaseAreTheSameProperty();
    void textWithoutALineEndAtItsEndIsNotRunInto();
    void newLinesUseTheTextsOwnLineEnd();
    void replacedLineKeepsItsOwnLineEnd();
    void lineEndsOfDifferentKindsDoNotRunTogether();
    void lastWordOnAPropertyCounts();
    void settingAndRemovingManyLeavesTheRest();
    void missingComponentChangesNothing();
    void propertyIsReadUnfolded();
    void bytesThatAreNotUnderstoodAreKept();
    void textIsEscaped();
    void aNulIsLeftOut();
    void linesAreFoldedOnlyBetweenCharacters();

    void componentsAreAddedAndRemoved();
    void aComponentIsAddedWhereTheEndIsMissing();
    void whatIsInARemovedComponentGoesWithIt();
    void theSameDefinitionIsInsertedOnce();
    void theFirstOfSeveralLinesIsChangedAlone();
};

void TextPatcherTest::untouchedTextComesOutAsItWas()
{
    QCOMPARE(TextPatcher(taskText).patchedText(), taskText);
}

void TextPatcherTest::valueIsReplacedInPlace()
{
    TextPatcher patcher(taskText);

    patcher.setProperty(task, "SUMMARY", "Iron");

    QByteArray expected = taskText;
    expected.replace("summary;LANGUAGE=de:Wäsche\r\n  waschen\r\n", "SUMMARY:Iron\r\n");
    QCOMPARE(patcher.patchedText(), expected);
}

void TextPatcherTest::furtherLinesOfTheNameAreRemoved()
{
    TextPatcher patcher("BEGIN:VTODO\nSTATUS:A\nUID:1\nSTATUS:B\nSTATUS:C\nEND:VTODO\n");

    patcher.setProperty(0, "STATUS", "COMPLETED");

    QCOMPARE(patcher.patchedText(), QByteArray("BEGIN:VTODO\nSTATUS:COMPLETED\nUID:1\nEND:VTODO\n"));
}

void TextPatcherTest::newPropertyStandsBeforeTheAlarms()
{
    TextPatcher patcher(taskText);

    patcher.setProperty(task, "DUE", "20240301", ";VALUE=DATE");

    QByteArray expected = taskText;
    expected.replace(" def\r\nBEGIN:VALARM", " def\r\nDUE;VALUE=DATE:20240301\r\nBEGIN:VALARM");
    QCOMPARE(patcher.patchedText(), expected);
}

void TextPatcherTest::propertyOfANestedComponentIsNotTouched()
{
    TextPatcher patcher(taskText);

    patcher.removeProperty(task, "ACTION");

    QCOMPARE(patcher.patchedText(), taskText);
    QVERIFY(!patcher.property(task, "ACTION"));
}

void TextPatcherTest::removedPropertyTakesItsFoldsAlong()
{
    TextPatcher patcher(taskText);

    patcher.removeProperty(task, "X-LONG");

    QByteArray expected = taskText;
    expected.replace("X-LONG:abc\r\n def\r\n", "");
    QCOMPARE(patcher.patchedText(), expected);
}

void TextPatcherTest::groupsAndLowerCaseAreTheSameProperty()
{
    TextPatcher patcher("BEGIN:VTODO\nitem1.Status:NEEDS-ACTION\nEND:VTODO\n");

    QCOMPARE(patcher.property(0, "STATUS"), QByteArray("NEEDS-ACTION"));
    patcher.setProperty(0, "status", "COMPLETED");

    QCOMPARE(patcher.patchedText(), QByteArray("BEGIN:VTODO\nstatus:COMPLETED\nEND:VTODO\n"));
}

void TextPatcherTest::textWithoutALineEndAtItsEndIsNotRunInto()
{
    TextPatcher cut("BEGIN:VTODO\nUID:1");
    cut.setProperty(0, "STATUS", "COMPLETED");
    cut.setProperty(0, "PERCENT-COMPLETE", "100");
    QCOMPARE(cut.patchedText(), QByteArray("BEGIN:VTODO\nUID:1\nSTATUS:COMPLETED\nPERCENT-COMPLETE:100"));

    TextPatcher whole("BEGIN:VTODO\nUID:1\nEND:VTODO");
    whole.setProperty(0, "STATUS", "COMPLETED");
    QCOMPARE(whole.patchedText(), QByteArray("BEGIN:VTODO\nUID:1\nSTATUS:COMPLETED\nEND:VTODO"));
}

void TextPatcherTest::newLinesUseTheTextsOwnLineEnd()
{
    TextPatcher patcher("BEGIN:VTODO\rUID:1\rEND:VTODO\r");

    patcher.setProperty(0, "STATUS", "COMPLETED");

    QCOMPARE(patcher.patchedText(), QByteArray("BEGIN:VTODO\rUID:1\rSTATUS:COMPLETED\rEND:VTODO\r"));
}

void TextPatcherTest::replacedLineKeepsItsOwnLineEnd()
{
    TextPatcher patcher("BEGIN:VTODO\r\nUID:1\nSTATUS:A\nEND:VTODO\r\n");

    patcher.setProperty(0, "STATUS", "B");

    QCOMPARE(patcher.patchedText(), QByteArray("BEGIN:VTODO\r\nUID:1\nSTATUS:B\nEND:VTODO\r\n"));
}

// A lone carriage return before an empty line that ends with a line feed would be one line end.
void TextPatcherTest::lineEndsOfDifferentKindsDoNotRunTogether()
{
    TextPatcher adding("BEGIN:VTODO\rUID:1\n\nEND:VTODO\r");
    TextPatcher removing("BEGIN:VTODO\rX:3\rSTATUS:C\n\nEND:VTODO\r");

    adding.setProperty(0, "SEQUENCE", "7");
    removing.removeProperty(0, "STATUS");

    QCOMPARE(adding.patchedText(), QByteArray("BEGIN:VTODO\rUID:1\nSEQUENCE:7\r\n\nEND:VTODO\r"));
    QCOMPARE(removing.patchedText(), QByteArray("BEGIN:VTODO\rX:3\r\n\nEND:VTODO\r"));
    QCOMPARE(ContentLines(adding.patchedText()).lines().size(), 5U);
    QCOMPARE(ContentLines(removing.patchedText()).lines().size(), 4U);
}

void TextPatcherTest::lastWordOnAPropertyCounts()
{
    TextPatcher patcher("BEGIN:VTODO\nSTATUS:A\nEND:VTODO\n");

    patcher.setProperty(0, "STATUS", "B");
    patcher.removeProperty(0, "STATUS");
    patcher.setProperty(0, "STATUS", "C");

    QCOMPARE(patcher.patchedText(), QByteArray("BEGIN:VTODO\nSTATUS:C\nEND:VTODO\n"));
}

void TextPatcherTest::settingAndRemovingManyLeavesTheRest()
{
    TextPatcher patcher("BEGIN:VTODO\nA:1\nB:2\nC:3\nEND:VTODO\nBEGIN:VTODO\nA:1\nEND:VTODO\n");

    patcher.setProperty(0, "D", "4");
    patcher.removeProperty(0, "C");
    patcher.setProperty(0, "A", "5");
    patcher.setProperty(1, "B", "6");

    QCOMPARE(
        patcher.patchedText(), QByteArray("BEGIN:VTODO\nA:5\nB:2\nD:4\nEND:VTODO\nBEGIN:VTODO\nA:1\nB:6\nEND:VTODO\n"));
}

void TextPatcherTest::missingComponentChangesNothing()
{
    TextPatcher patcher(taskText);

    patcher.setProperty(7, "SUMMARY", "a");
    patcher.removeProperty(-1, "SUMMARY");

    QVERIFY(!patcher.hasComponent(7));
    QVERIFY(!patcher.property(7, "SUMMARY"));
    QCOMPARE(patcher.patchedText(), taskText);
}

void TextPatcherTest::propertyIsReadUnfolded()
{
    const TextPatcher patcher(taskText);

    QCOMPARE(patcher.property(task, "SUMMARY"), QByteArray("Wäsche waschen"));
    QVERIFY(!patcher.property(task, "LOCATION"));
}

void TextPatcherTest::bytesThatAreNotUnderstoodAreKept()
{
    const QByteArray text("BEGIN:VTODO\nSUMMARY:\xE4\xF6\0\x01\nX-A:\xFF\xFE\nEND:VTODO\n", 42);
    TextPatcher patcher(text);

    patcher.setProperty(0, "STATUS", "COMPLETED");

    QByteArray expected = text;
    expected.replace("END:VTODO", "STATUS:COMPLETED\nEND:VTODO");
    QCOMPARE(patcher.patchedText(), expected);
}

void TextPatcherTest::textIsEscaped()
{
    QCOMPARE(escapedText(u"a, b; c\\d\ne\r\nf: \"g\" ä"_s), QByteArray("a\\, b\\; c\\\\d\\ne\\nf: \"g\" ä"));
}

// No file may hold it (RFC 5545, section 3.1), and many a program takes it for the end of the text.
void TextPatcherTest::aNulIsLeftOut()
{
    const QString title = u"before"_s + QChar(QChar::Null) + u"after"_s;

    QCOMPARE(escapedText(title), QByteArray("beforeafter"));
    QCOMPARE(escapedText(QString(3, QChar::Null)), QByteArray(""));
    // Other control characters stay as they are: they are somebody's text.
    QCOMPARE(escapedText(u"a\tb\u0007c"_s),
        QByteArray("a\tb\x07"
                   "c"));
}

void TextPatcherTest::linesAreFoldedOnlyBetweenCharacters()
{
    const QByteArray line = "SUMMARY:" + QByteArray("aä€").repeated(60);

    const QByteArray text = folded(line, "\r\n");

    for (const QByteArray &physical : text.split('\n')) {
        QVERIFY(physical.chopped(physical.endsWith('\r') ? 1 : 0).size() <= 75);
        QVERIFY(QString::fromUtf8(physical).toUtf8() == physical);
        QVERIFY(!QString::fromUtf8(physical).contains(QChar::ReplacementCharacter));
    }
    const ContentLines lines(text);
    QCOMPARE(lines.lines().size(), 1U);
    QCOMPARE(lines.unfolded(lines.lines().front()), line);
    QCOMPARE(folded("A:1", "\n"), QByteArray("A:1"));
    QCOMPARE(folded(QByteArray(75, 'x'), "\n"), QByteArray(75, 'x'));
}

void TextPatcherTest::componentsAreAddedAndRemoved()
{
    TextPatcher patcher("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nBEGIN:VALARM\nX:1\nEND:VALARM\nX-LAST:1\nEND:VEVENT\n"
                        "END:VCALENDAR");
    QCOMPARE(patcher.componentsWithin(1, "VALARM"), std::vector<int> { 2 });
    QCOMPARE(patcher.componentAround(2, "VCALENDAR"), 0);
    QCOMPARE(patcher.componentAround(0, "VCALENDAR"), -1);

    patcher.removeComponent(2);
    patcher.appendComponent(1, { "BEGIN:VALARM", "X:" + QByteArray(80, '2'), "END:VALARM" });
    patcher.setProperty(1, "SUMMARY", "S");

    const QByteArray expected = "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nSUMMARY:S\nX-LAST:1\nBEGIN:VALARM\nX:"
        + QByteArray(73, '2') + "\n " + QByteArray(7, '2') + "\nEND:VALARM\nEND:VEVENT\nEND:VCALENDAR";
    QCOMPARE(patcher.patchedText(), expected);
}

void TextPatcherTest::aComponentIsAddedWhereTheEndIsMissing()
{
    TextPatcher patcher("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nBEGIN:X-ODD\nX:1\nEND:X-ODD\nEND:VCALENDAR\n");

    patcher.appendComponent(1, { "BEGIN:VALARM", "X:2", "END:VALARM" });

    QCOMPARE(patcher.patchedText(),
        QByteArray("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nBEGIN:X-ODD\nX:1\nEND:X-ODD\n"
                   "BEGIN:VALARM\nX:2\nEND:VALARM\nEND:VCALENDAR\n"));
    QCOMPARE(TextPatcher(patcher.patchedText()).componentsWithin(1, "VALARM").size(), 1U);
}

void TextPatcherTest::whatIsInARemovedComponentGoesWithIt()
{
    const QByteArray text = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:a\r\nEND:VEVENT\r\nX:1\r\nEND:VCALENDAR\r\n";
    TextPatcher patcher(text);

    patcher.setProperty(1, "UID", "b");
    patcher.setProperty(1, "SUMMARY", "S");
    patcher.removeComponent(1);

    QCOMPARE(patcher.patchedText(), QByteArray("BEGIN:VCALENDAR\r\nX:1\r\nEND:VCALENDAR\r\n"));
}

void TextPatcherTest::theSameDefinitionIsInsertedOnce()
{
    TextPatcher patcher("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:a\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");

    for (int time = 0; time < 2; ++time)
        patcher.insertComponentBefore(1, { "BEGIN:VTIMEZONE", "TZID:X", "END:VTIMEZONE" });

    QCOMPARE(patcher.patchedText(),
        QByteArray("BEGIN:VCALENDAR\r\nBEGIN:VTIMEZONE\r\nTZID:X\r\nEND:VTIMEZONE\r\nBEGIN:VEVENT\r\nUID:a\r\n"
                   "END:VEVENT\r\nEND:VCALENDAR\r\n"));
}

void TextPatcherTest::theFirstOfSeveralLinesIsChangedAlone()
{
    TextPatcher patcher("BEGIN:VALARM\r\nATTENDEE:a\r\nATTENDEE:b\r\nATTACH:c\r\nATTACH:d\r\nEND:VALARM\r\n");

    patcher.setFirstProperty(0, "ATTENDEE", "x");
    patcher.removeFirstProperty(0, "ATTACH");

    QCOMPARE(
        patcher.patchedText(), QByteArray("BEGIN:VALARM\r\nATTENDEE:x\r\nATTENDEE:b\r\nATTACH:d\r\nEND:VALARM\r\n"));
}

VANTLE_TEST(TextPatcherTest)
#include "TextPatcherTest.moc"
