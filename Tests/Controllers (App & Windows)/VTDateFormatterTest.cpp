// SPDX-License-Identifier: MIT
#include <TestRegistry.h>
#include <VTDateFormatter.h>

#include <QTest>

using namespace Qt::StringLiterals;

class VTDateFormatterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void yearIsTakenOutOfAPattern_data();
    void yearIsTakenOutOfAPattern();
    void patternForTypingHasWholeFigures_data();
    void patternForTypingHasWholeFigures();
    void longDateFollowsTheLocale_data();
    void longDateFollowsTheLocale();
    void abbreviatedDateHasTwoDigits();
    void everyLocaleKeepsDayAndMonth();
};

void VTDateFormatterTest::yearIsTakenOutOfAPattern_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("withoutYear");

    QTest::newRow("at the end") << u"dddd, d MMMM yyyy"_s << u"dddd, d MMMM"_s;
    QTest::newRow("after a comma") << u"dddd, MMMM d, yyyy"_s << u"dddd, MMMM d"_s;
    QTest::newRow("with a word before it") << u"dddd, d 'de' MMMM 'de' yyyy"_s << u"dddd, d 'de' MMMM"_s;
    QTest::newRow("with a word after it") << u"dddd, d MMMM yyyy 'г'."_s << u"dddd, d MMMM"_s;
    QTest::newRow("at the front") << u"yyyy. MMMM d., dddd"_s << u"MMMM d., dddd"_s;
    QTest::newRow("at the front with a sign") << u"yyyy年M月d日dddd"_s << u"M月d日dddd"_s;
    QTest::newRow("letters in quotes") << u"dddd 'y' d MMMM yyyy"_s << u"dddd 'y' d MMMM"_s;
    QTest::newRow("no year at all") << u"dddd, d MMMM"_s << u"dddd, d MMMM"_s;
}

void VTDateFormatterTest::yearIsTakenOutOfAPattern()
{
    QFETCH(const QString, pattern);
    QFETCH(const QString, withoutYear);

    QCOMPARE(VTPatternWithoutYear(pattern), withoutYear);
}

void VTDateFormatterTest::patternForTypingHasWholeFigures_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("expected");

    QTest::newRow("American") << u"M/d/yy"_s << u"MM/dd/yyyy"_s;
    QTest::newRow("German") << u"dd.MM.yy"_s << u"dd.MM.yyyy"_s;
    QTest::newRow("month in letters") << u"d MMM yyyy"_s << u"dd MMM yyyy"_s;
    QTest::newRow("letters in quotes") << u"d 'de' M/y"_s << u"dd 'de' MM/yyyy"_s;
    QTest::newRow("as it should be") << u"yyyy-MM-dd"_s << u"yyyy-MM-dd"_s;
}

void VTDateFormatterTest::patternForTypingHasWholeFigures()
{
    QFETCH(const QString, pattern);
    QFETCH(const QString, expected);

    QCOMPARE(VTPatternForTyping(pattern), expected);
}

void VTDateFormatterTest::longDateFollowsTheLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("withoutYear");
    QTest::addColumn<QString>("withYear");

    QTest::newRow("C") << QLocale::c() << u"Friday, 20 November"_s << u"Friday, 20 November 2026"_s;
    QTest::newRow("British") << QLocale(u"en_GB"_s) << u"Friday, 20 November"_s << u"Friday, 20 November 2026"_s;
    QTest::newRow("American") << QLocale(u"en_US"_s) << u"Friday, November 20"_s << u"Friday, November 20, 2026"_s;
    QTest::newRow("German") << QLocale(u"de_DE"_s) << u"Freitag, 20. November"_s << u"Freitag, 20. November 2026"_s;
    QTest::newRow("Japanese") << QLocale(u"ja_JP"_s) << u"11月20日金曜日"_s << u"2026年11月20日金曜日"_s;
}

void VTDateFormatterTest::longDateFollowsTheLocale()
{
    QFETCH(const QLocale, locale);
    QFETCH(const QString, withoutYear);
    QFETCH(const QString, withYear);
    const QDateTime date(QDate(2026, 11, 20), QTime(10, 0));

    QCOMPARE(VTDateFormatter::longWithoutYear(locale).stringFromDate(date), withoutYear);
    QCOMPARE(VTDateFormatter::longWithYear(locale).stringFromDate(date), withYear);
}

void VTDateFormatterTest::abbreviatedDateHasTwoDigits()
{
    const QDateTime date(QDate(2026, 11, 2), QTime(10, 0));

    QCOMPARE(VTDateFormatter::abbreviated(QLocale::c()).stringFromDate(date), u"Mon 02 Nov"_s);
}

void VTDateFormatterTest::everyLocaleKeepsDayAndMonth()
{
    const auto locales = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    for (const QLocale &locale : locales) {
        const QString pattern = VTDateFormatter::longWithoutYear(locale).pattern();
        QVERIFY2(!pattern.contains(u"yy"_s), qPrintable(locale.name() + u' ' + pattern));
        QVERIFY2(pattern.contains(u'd') && pattern.contains(u'M'), qPrintable(locale.name() + u' ' + pattern));
        QVERIFY2(pattern.count(u'\'') % 2 == 0, qPrintable(locale.name() + u' ' + pattern));
    }
}

VANTLE_TEST(VTDateFormatterTest)
#include "VTDateFormatterTest.moc"
