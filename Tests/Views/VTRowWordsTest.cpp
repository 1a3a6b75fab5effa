// SPDX-License-Identifier: MIT
#include "RowFixture.h"
#include "TestRegistry.h"

#include <KLVText.h>
#include <VTRowWords.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QLocale british(QLocale::English, QLocale::UnitedKingdom);

} // namespace

class VTRowWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dueIsSaidRelativeToToday_data();
    void dueIsSaidRelativeToToday();
    void dayWithoutATimeIsOverdueFromTheNextDayOn();
    void timesFollowTheLocale();
    void badgeOfAnotherDayShowsTheDay();
    void midnightEndsTheEveningBefore();
    void eventWithoutLengthHasNoEnd();
    void webLinkLosesItsScheme();
    void otherLinksShowTheirScheme();
    void linkCannotTurnItsSignsAround();
    void titleWithBreaksAndControlsIsOneLine();
    void longTextIsCutBetweenWholeCharacters();
};

void VTRowWordsTest::dueIsSaidRelativeToToday_data()
{
    QTest::addColumn<QDateTime>("due");
    QTest::addColumn<bool>("isDateOnly");
    QTest::addColumn<QString>("words");

    QTest::newRow("yesterday with a time") << at(19, 18) << false << u"due yesterday, 18:00"_s;
    QTest::newRow("today") << at(20, 0) << true << u"due today"_s;
    QTest::newRow("tomorrow") << at(21, 9, 30) << false << u"due tomorrow, 09:30"_s;
    QTest::newRow("a day of the coming week") << at(22, 0) << true << u"due Sun 22 Nov"_s;
    QTest::newRow("a time of the coming week") << at(23, 9) << false << u"due Mon 23 Nov, 09:00"_s;
    QTest::newRow("a week from today") << at(27, 0) << true << u"due Fri 27 Nov"_s;
    QTest::newRow("more than a week from today") << at(28, 0) << true << u"due 28 Nov"_s;
    QTest::newRow("another year") << QDateTime(QDate(2027, 1, 4), QTime(8, 0)) << false << u"due 4 Jan 2027, 08:00"_s;
}

void VTRowWordsTest::dueIsSaidRelativeToToday()
{
    QFETCH(QDateTime, due);
    QFETCH(bool, isDateOnly);
    QFETCH(QString, words);

    QCOMPARE(VTRowWords::due(due, isDateOnly, QDate(2026, 11, 20), british), words);
}

void VTRowWordsTest::dayWithoutATimeIsOverdueFromTheNextDayOn()
{

    QVERIFY(!VTRowWords::isOverdue(at(20, 0), true, at(20, 23, 59)));
    QVERIFY(VTRowWords::isOverdue(at(20, 0), true, at(21, 0)));
    QVERIFY(VTRowWords::isOverdue(at(20, 9), false, at(20, 10)));
    QVERIFY(!VTRowWords::isOverdue(at(20, 11), false, at(20, 10)));
}

void VTRowWordsTest::timesFollowTheLocale()
{
    QCOMPARE(VTRowWords::time(QTime(17, 5), british), u"17:05"_s);
    QCOMPARE(VTRowWords::time(QTime(17, 5), QLocale(QLocale::English, QLocale::UnitedStates)), u"5:05 PM"_s);
    QCOMPARE(VTRowWords::time(QTime(17, 5), QLocale::c()), u"17:05"_s);
}

void VTRowWordsTest::badgeOfAnotherDayShowsTheDay()
{

    QCOMPARE(VTRowWords::startBadge(at(19, 15), at(20, 10), british), u"19 Nov"_s);
    QCOMPARE(VTRowWords::startBadge(at(20, 15), at(20, 10), british), u"15:00"_s);
    QCOMPARE(VTRowWords::endBadge(at(20, 15), at(22, 1), at(20, 10), british), u"22 Nov"_s);
    QCOMPARE(VTRowWords::endBadge(at(19, 15), at(20, 11), at(20, 10), british), u"11:00"_s);
    QCOMPARE(VTRowWords::startBadge(at(19, 15), QDateTime(), british), u"15:00"_s);
}

void VTRowWordsTest::midnightEndsTheEveningBefore()
{

    QCOMPARE(VTRowWords::endBadge(at(20, 20), at(21, 0), at(20, 10), british), u"00:00"_s);
}

void VTRowWordsTest::eventWithoutLengthHasNoEnd()
{

    QCOMPARE(VTRowWords::endBadge(at(20, 20), at(20, 20), at(20, 10), british), QString());
}

void VTRowWordsTest::webLinkLosesItsScheme()
{
    QCOMPARE(VTRowWords::link(QUrl(u"https://meet.example.org/review"_s)), u"meet.example.org/review"_s);
    QCOMPARE(VTRowWords::link(QUrl(u"http://example.org/"_s)), u"example.org"_s);
}

void VTRowWordsTest::otherLinksShowTheirScheme()
{
    QCOMPARE(VTRowWords::link(QUrl(u"file:///etc/passwd"_s)), u"file:///etc/passwd"_s);
    QCOMPARE(VTRowWords::link(QUrl(u"javascript:alert(1)"_s)), u"javascript:alert(1)"_s);
}

void VTRowWordsTest::linkCannotTurnItsSignsAround()
{
    const QString shown = VTRowWords::link(QUrl(u"https://example.org/a\u202etxt.exe"_s));

    QVERIFY(!shown.contains(QChar(0x202e)));
}

void VTRowWordsTest::titleWithBreaksAndControlsIsOneLine()
{
    QCOMPARE(KLVText::singleLine(u"one\r\ntwo\u0007\u2028three"_s), u"one two three"_s);
    QCOMPARE(KLVText::severalLines(u"one\r\ntwo\rthree\u0007"_s), u"one\ntwo\nthree "_s);
}

void VTRowWordsTest::longTextIsCutBetweenWholeCharacters()
{
    const QString face = QString::fromUtf8("\xf0\x9f\x98\x80");
    const QString text = QString(3999, u'x') + face + QString(100, u'x');

    QCOMPARE(KLVText::shown(text).size(), 3999);
    QCOMPARE(KLVText::shown(QString(4001, u'x')).size(), 4000);
}

VANTLE_TEST(VTRowWordsTest)
#include "VTRowWordsTest.moc"
