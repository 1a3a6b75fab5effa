// SPDX-License-Identifier: MIT
#include "MemoryStore.h"
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalCalendarStore+VTHelper.h>

#include <QTest>

using namespace Qt::StringLiterals;

class CalCalendarStoreVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultCalendarIsTheFirst();
    void defaultCalendarMayBeReadOnly();
    void storeWithoutCalendarsHasNoDefault();
    void identifiersAreInTheStoresOrder();
    void calendarsOfAllIdentifiersAreTheStoresCalendars();
    void calendarsKeepTheOrderAskedFor();
    void unknownIdentifierIsLeftOut();
    void identifiersOfCalendarsKeepTheirOrder();
    void emptyListsGiveEmptyLists();
};

void CalCalendarStoreVTHelperTest::defaultCalendarIsTheFirst()
{
    const MemoryStore memory;

    QCOMPARE(defaultCalendar(memory.store())->uid(), u"Home"_s);
}

void CalCalendarStoreVTHelperTest::defaultCalendarMayBeReadOnly()
{
    const MemoryStore memory = MemoryStore::empty();
    memory.backend->addCalendar(makeReadOnlyCalendar(u"holidays"_s));

    QCOMPARE(defaultCalendar(memory.store())->uid(), u"holidays"_s);
}

void CalCalendarStoreVTHelperTest::storeWithoutCalendarsHasNoDefault()
{
    const MemoryStore memory = MemoryStore::empty();

    QVERIFY(!defaultCalendar(memory.store()));
    QVERIFY(calendarsUID(memory.store()).isEmpty());
}

void CalCalendarStoreVTHelperTest::identifiersAreInTheStoresOrder()
{
    const MemoryStore memory;
    memory.backend->addCalendar(makeCalendar(u"Alpha"_s));

    QCOMPARE(calendarsUID(memory.store()), (QStringList { u"Home"_s, u"Work"_s, u"Alpha"_s }));
}

void CalCalendarStoreVTHelperTest::calendarsOfAllIdentifiersAreTheStoresCalendars()
{
    const MemoryStore memory;

    QCOMPARE(calendarsForUIDs(memory.store(), calendarsUID(memory.store())), memory.store().calendars());
}

void CalCalendarStoreVTHelperTest::calendarsKeepTheOrderAskedFor()
{
    const MemoryStore memory;

    const CalCalendarList calendars = calendarsForUIDs(memory.store(), { u"Work"_s, u"Home"_s, u"Work"_s });

    QCOMPARE(UIDsForCalendars(memory.store(), calendars), (QStringList { u"Work"_s, u"Home"_s, u"Work"_s }));
}

void CalCalendarStoreVTHelperTest::unknownIdentifierIsLeftOut()
{
    const MemoryStore memory;

    const CalCalendarList calendars = calendarsForUIDs(memory.store(), { u"Gone"_s, u"Work"_s });

    QCOMPARE(UIDsForCalendars(memory.store(), calendars), QStringList(u"Work"_s));
}

void CalCalendarStoreVTHelperTest::identifiersOfCalendarsKeepTheirOrder()
{
    const MemoryStore memory;

    const QStringList uids = UIDsForCalendars(memory.store(), { makeCalendar(u"b"_s), makeCalendar(u"a"_s) });

    QCOMPARE(uids, (QStringList { u"b"_s, u"a"_s }));
}

void CalCalendarStoreVTHelperTest::emptyListsGiveEmptyLists()
{
    const MemoryStore memory;

    QVERIFY(calendarsForUIDs(memory.store(), {}).isEmpty());
    QVERIFY(UIDsForCalendars(memory.store(), {}).isEmpty());
}

VANTLE_TEST(CalCalendarStoreVTHelperTest)
#include "CalCalendarStoreVTHelperTest.moc"
