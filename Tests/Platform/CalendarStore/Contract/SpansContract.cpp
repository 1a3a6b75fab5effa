// SPDX-License-Identifier: MIT
#include "ContractTest.h"

using namespace Qt::StringLiterals;

namespace
{

const QDate first(2026, 3, 9); // a Monday
const QDate second = first.addDays(1);
const QDate third = first.addDays(2);
const QDate fourth = first.addDays(3);

const QByteArray lunch = eventText(
    "lunch", "Lunch", "20260309T120000", "DURATION:PT1H\r\nLOCATION:Canteen\r\nRRULE:FREQ=DAILY;COUNT=4\r\n");
const QByteArray exceptionOfTheThird = eventText(
    "lunch", "Late lunch", "20260311T140000", "RECURRENCE-ID:20260311T120000\r\nDURATION:PT1H\r\nLOCATION:Canteen\r\n");

} // namespace

// What a save or removal of one occurrence means to the others, and of all to each.
class SpansContract final : public ContractTest
{
    Q_OBJECT

public:
    using ContractTest::ContractTest;

private Q_SLOTS:
    void bothSpansDoTheSameToASingleEvent_data();
    void bothSpansDoTheSameToASingleEvent();
    void oneOccurrenceIsChangedAlone_data();
    void oneOccurrenceIsChangedAlone();
    void allOccurrencesAreChangedTogether();
    void allOccurrencesMoveByTheSameTime();
    void anExceptionKeepsItsOwnTitle();
    void theTwoStepsOfTheSheetAreOneChangeOfAll_data();
    void theTwoStepsOfTheSheetAreOneChangeOfAll();
    void oneOccurrenceIsRemovedAlone_data();
    void oneOccurrenceIsRemovedAlone();
    void anExceptionIsRemovedAlone();
    void allOccurrencesAreRemovedTogether();
    void aRemovedOccurrenceComesBack();
    void theUidOfAnOccurrenceStaysThroughASave();

private:
    // Of the four days, in order; "-" for a day without one.
    QStringList lunches()
    {
        QStringList all;
        for (const QDate &day : { first, second, third, fourth })
            all << (fixture().eventsOn(day).isEmpty() ? u"-"_s : shown(fixture().eventsOn(day)).join(u'+'));
        return all;
    }
    void addRowForEachDay()
    {
        QTest::addColumn<int>("number");

        QTest::newRow("first") << 0;
        QTest::newRow("second") << 1;
        QTest::newRow("last") << 3;
    }
};

void SpansContract::bothSpansDoTheSameToASingleEvent_data()
{
    QTest::addColumn<CalSpan>("span");

    QTest::newRow("this") << CalSpanThisEvent;
    QTest::newRow("all") << CalSpanAllEvents;
}

void SpansContract::bothSpansDoTheSameToASingleEvent()
{
    QFETCH(const CalSpan, span);
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260311T090000"));
    const CalEventPtr event = fixture().eventOn(third, u"A"_s);

    event->setTitle(u"B"_s);
    event->setStartDate(at("10:00:00"));
    event->setEndDate(at("11:00:00"));
    QVERIFY2(save(event, span), qPrintable(refusal().message()));

    QCOMPARE(shown(fixture().eventsOn(third)), QStringList { u"10:00-11:00 B"_s });
}

void SpansContract::oneOccurrenceIsChangedAlone_data()
{
    addRowForEachDay();
}

void SpansContract::oneOccurrenceIsChangedAlone()
{
    QFETCH(const int, number);
    fixture().put(u"Home"_s, u"lunch"_s, lunch);
    const QDate day = first.addDays(number);
    const CalEventPtr event = fixture().eventOn(day, u"Lunch"_s);

    event->setTitle(u"Dinner"_s);
    event->setStartDate(at("18:00:00", day));
    event->setEndDate(at("20:00:00", day));
    QVERIFY2(save(event, CalSpanThisEvent), qPrintable(refusal().message()));

    QStringList expected(4, u"12:00-13:00 Lunch"_s);
    expected[number] = u"18:00-20:00 Dinner"_s;
    QCOMPARE(lunches(), expected);
    QCOMPARE(fixture().eventOn(day, u"Dinner"_s)->location(), u"Canteen"_s);
}

void SpansContract::allOccurrencesAreChangedTogether()
{
    fixture().put(u"Home"_s, u"lunch"_s, lunch);
    const CalEventPtr event = fixture().eventOn(second, u"Lunch"_s);

    event->setTitle(u"Meal"_s);
    event->setLocation(std::nullopt);
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    QCOMPARE(lunches(), QStringList(4, u"12:00-13:00 Meal"_s));
    QVERIFY(!fixture().eventOn(fourth, u"Meal"_s)->location());
}

void SpansContract::allOccurrencesMoveByTheSameTime()
{
    fixture().put(u"Home"_s, u"lunch"_s, lunch);
    const CalEventPtr event = fixture().eventOn(third, u"Lunch"_s);

    event->setStartDate(at("12:30:00", third));
    event->setEndDate(at("14:00:00", third));
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    QCOMPARE(lunches(), QStringList(4, u"12:30-14:00 Lunch"_s));
}

void SpansContract::anExceptionKeepsItsOwnTitle()
{
    fixture().put(u"Home"_s, u"lunch"_s, lunch + exceptionOfTheThird);
    const CalEventPtr event = fixture().eventOn(second, u"Lunch"_s);

    event->setTitle(u"Breakfast"_s);
    QVERIFY2(save(event, CalSpanThisEvent), qPrintable(refusal().message()));

    QCOMPARE(lunches(),
        (QStringList {
            u"12:00-13:00 Lunch"_s, u"12:00-13:00 Breakfast"_s, u"14:00-15:00 Late lunch"_s, u"12:00-13:00 Lunch"_s }));
}

void SpansContract::theTwoStepsOfTheSheetAreOneChangeOfAll_data()
{
    addRowForEachDay();
}

void SpansContract::theTwoStepsOfTheSheetAreOneChangeOfAll()
{
    QFETCH(const int, number);
    fixture().put(u"Home"_s, u"lunch"_s, lunch);
    const CalEventPtr event = fixture().eventOn(first.addDays(number), u"Lunch"_s);

    event->setTitle(u"DUMBY Meal"_s);
    QVERIFY2(save(event, CalSpanThisEvent), qPrintable(refusal().message()));
    event->setTitle(u"Meal"_s);
    QVERIFY2(save(event, CalSpanAllEvents), qPrintable(refusal().message()));

    QCOMPARE(lunches(), QStringList(4, u"12:00-13:00 Meal"_s));
}

void SpansContract::oneOccurrenceIsRemovedAlone_data()
{
    addRowForEachDay();
}

void SpansContract::oneOccurrenceIsRemovedAlone()
{
    QFETCH(const int, number);
    fixture().put(u"Home"_s, u"lunch"_s, lunch);

    QVERIFY2(remove(fixture().eventOn(first.addDays(number), u"Lunch"_s), CalSpanThisEvent),
        qPrintable(refusal().message()));

    QStringList expected(4, u"12:00-13:00 Lunch"_s);
    expected[number] = u"-"_s;
    QCOMPARE(lunches(), expected);
}

void SpansContract::anExceptionIsRemovedAlone()
{
    fixture().put(u"Home"_s, u"lunch"_s, lunch + exceptionOfTheThird);

    QVERIFY2(remove(fixture().eventOn(third, u"Late lunch"_s), CalSpanThisEvent), qPrintable(refusal().message()));

    QCOMPARE(
        lunches(), (QStringList { u"12:00-13:00 Lunch"_s, u"12:00-13:00 Lunch"_s, u"-"_s, u"12:00-13:00 Lunch"_s }));
}

void SpansContract::allOccurrencesAreRemovedTogether()
{
    fixture().put(u"Home"_s, u"lunch"_s, lunch + exceptionOfTheThird);

    QVERIFY2(remove(fixture().eventOn(second, u"Lunch"_s), CalSpanAllEvents), qPrintable(refusal().message()));

    QCOMPARE(lunches(), QStringList(4, u"-"_s));
}

void SpansContract::theUidOfAnOccurrenceStaysThroughASave()
{
    fixture().put(u"Home"_s, u"a"_s, eventText("a", "A", "20260302T090000", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n"));
    const CalEventPtr event = fixture().eventOn(contractDay, u"A"_s);
    const QString uid = event->uid();

    event->setTitle(u"B"_s);
    QVERIFY2(save(event, CalSpanThisEvent), qPrintable(refusal().message()));

    QCOMPARE(event->uid(), uid);
    QCOMPARE(fixture().eventOn(contractDay, u"B"_s)->uid(), uid);
}

void SpansContract::aRemovedOccurrenceComesBack()
{
    fixture().put(u"Home"_s, u"lunch"_s, lunch);
    const QString uid = fixture().eventOn(contractDay, u"Lunch"_s)->uid();
    QVERIFY(remove(fixture().eventOn(contractDay, u"Lunch"_s), CalSpanThisEvent));
    QVERIFY(fixture().eventsOn(contractDay).isEmpty());

    QVERIFY2(undo(), qPrintable(refusal().message()));

    QCOMPARE(fixture().eventsOn(contractDay).size(), 1);
    QCOMPARE(fixture().eventOn(contractDay, u"Lunch"_s)->uid(), uid);
}

VANTLE_CONTRACT(SpansContract, "Spans")
#include "SpansContract.moc"
