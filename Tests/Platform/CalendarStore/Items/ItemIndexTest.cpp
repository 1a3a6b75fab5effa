// SPDX-License-Identifier: MIT
#include "ItemSets.h"

#include <ItemIndex.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;
using Items::ItemIndex;
using Items::ItemSetPtr;

class ItemIndexTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aUidOfItsOwnNeedsNoDistinction();
    void theFirstByNameOfSeveralIsTheOneWithoutDistinction();
    void whatIsLeftOfSeveralIsAsIfItHadAlwaysBeenAlone();
    void aReplacedSetTakesThePlaceOfTheOld();
};

namespace
{

// Sets of one event each, all of the same UID.
struct Twins {
    ItemSetPtr made(const QString &name) { return sets.event(name, "UID:same\r\nDTSTART:20260311T090000Z"); }
    ItemSetPtr added(const QString &name)
    {
        ItemSetPtr set = made(name);
        index.add(*set);
        return set;
    }
    QString distinctionOf(const ItemSetPtr &set) const { return index.distinctionOf({ set.get(), 0 }); }

    ItemSets sets;
    ItemIndex index;
};

} // namespace

void ItemIndexTest::aUidOfItsOwnNeedsNoDistinction()
{
    Twins twins;
    const auto set = twins.added(u"a"_s);

    QVERIFY(twins.index.holdsUid(u"same"_s));
    QVERIFY(!twins.index.holdsUid(u"a"_s));
    QVERIFY(!twins.index.hasSharedUids());
    QCOMPARE(twins.distinctionOf(set), QString());

    twins.index.remove(*set);
    QVERIFY(!twins.index.holdsUid(u"same"_s));
}

void ItemIndexTest::theFirstByNameOfSeveralIsTheOneWithoutDistinction()
{
    Twins twins;
    const auto middle = twins.added(u"m"_s);
    const auto last = twins.added(u"z"_s);
    const auto first = twins.added(u"a"_s);

    QVERIFY(twins.index.hasSharedUids());
    QCOMPARE(twins.distinctionOf(first), QString());
    QCOMPARE(twins.distinctionOf(middle), u"m"_s);
    QCOMPARE(twins.distinctionOf(last), u"z"_s);

    twins.index.remove(*first);
    QVERIFY(twins.index.hasSharedUids());
    QCOMPARE(twins.distinctionOf(middle), QString());
    QCOMPARE(twins.distinctionOf(last), u"z"_s);
}

void ItemIndexTest::whatIsLeftOfSeveralIsAsIfItHadAlwaysBeenAlone()
{
    Twins twins;
    const auto first = twins.added(u"a"_s);
    const auto last = twins.added(u"z"_s);

    twins.index.remove(*first);
    QVERIFY(twins.index.holdsUid(u"same"_s));
    QVERIFY(!twins.index.hasSharedUids());
    QCOMPARE(twins.distinctionOf(last), QString());

    twins.index.remove(*last);
    QVERIFY(!twins.index.holdsUid(u"same"_s));
}

void ItemIndexTest::aReplacedSetTakesThePlaceOfTheOld()
{
    Twins twins;
    const auto first = twins.added(u"a"_s);
    const auto last = twins.added(u"z"_s);

    twins.index.remove(*first);
    const auto again = twins.added(u"a"_s);

    QCOMPARE(twins.distinctionOf(again), QString());
    QCOMPARE(twins.distinctionOf(last), u"z"_s);
}

VANTLE_TEST(ItemIndexTest)
#include "ItemIndexTest.moc"
