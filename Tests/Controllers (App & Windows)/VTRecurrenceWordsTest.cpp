// SPDX-License-Identifier: MIT
#include <TestRecords.h>
#include <TestRegistry.h>
#include <VTRecurrenceWords.h>

#include <QTest>

using namespace Qt::StringLiterals;

class VTRecurrenceWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ruleIsPutInWords_data();
    void ruleIsPutInWords();
    void sentenceUsesTheShortForm();
};

void VTRecurrenceWordsTest::ruleIsPutInWords_data()
{
    QTest::addColumn<QByteArray>("rule");
    QTest::addColumn<QString>("words");

    QTest::newRow("daily") << QByteArray("FREQ=DAILY") << u"every day"_s;
    QTest::newRow("interval") << QByteArray("FREQ=DAILY;INTERVAL=3") << u"every 3 days"_s;
    QTest::newRow("weekly by its start") << QByteArray("FREQ=WEEKLY") << u"every week on Friday"_s;
    QTest::newRow("several days") << QByteArray("FREQ=WEEKLY;BYDAY=MO,WE,FR")
                                  << u"every week on Monday, Wednesday and Friday"_s;
    QTest::newRow("all seven days") << QByteArray("FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR,SA,SU") << u"every week"_s;
    QTest::newRow("monthly by its start") << QByteArray("FREQ=MONTHLY") << u"every month on day 20"_s;
    QTest::newRow("monthly by day") << QByteArray("FREQ=MONTHLY;BYMONTHDAY=1;INTERVAL=2")
                                    << u"every 2 months on day 1"_s;
    QTest::newRow("monthly by weekday") << QByteArray("FREQ=MONTHLY;BYDAY=1FR") << u"every month"_s;
    QTest::newRow("from the month's end") << QByteArray("FREQ=MONTHLY;BYMONTHDAY=-1") << u"every month"_s;
    QTest::newRow("yearly") << QByteArray("FREQ=YEARLY") << u"every year"_s;
    QTest::newRow("counted") << QByteArray("FREQ=DAILY;COUNT=5") << u"every day, 5 times in all"_s;
    QTest::newRow("until a day") << QByteArray("FREQ=DAILY;UNTIL=20261204") << u"every day, until 04/12/2026"_s;
    QTest::newRow("until an instant, by local time")
        << QByteArray("FREQ=DAILY;UNTIL=20261203T233000Z") << u"every day, until 04/12/2026"_s;
    QTest::newRow("hourly") << QByteArray("FREQ=HOURLY") << u"by a rule of its own"_s;
    QTest::newRow("two rules") << QByteArray("FREQ=DAILY\nFREQ=WEEKLY") << u"by a rule of its own"_s;
    QTest::newRow("small letters") << QByteArray("freq=yearly") << u"every year"_s;
    QTest::newRow("garbage") << QByteArray("==;;\xff") << u"by a rule of its own"_s;
    QTest::newRow("empty") << QByteArray() << u"by a rule of its own"_s;
}

void VTRecurrenceWordsTest::ruleIsPutInWords()
{
    QFETCH(const QByteArray, rule);

    QTEST(VTRecurrenceWords::description(CalRecurrenceRule { rule }, localInstant("2026-11-20T11:00"),
              QLocale(QLocale::English, QLocale::UnitedKingdom)),
        "words");
}

void VTRecurrenceWordsTest::sentenceUsesTheShortForm()
{
    QCOMPARE(VTRecurrenceWords::every(CalRecurrenceRule { "FREQ=WEEKLY;BYDAY=MO;COUNT=3" }), u"every week"_s);
}

VANTLE_TEST(VTRecurrenceWordsTest)
#include "VTRecurrenceWordsTest.moc"
