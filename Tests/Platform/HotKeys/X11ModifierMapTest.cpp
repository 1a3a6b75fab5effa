// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <ModifierFlags.h>
#include <X11/X11ModifierMap.h>

#include <QTest>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>

namespace
{

constexpr quint16 shift = 0x01;
constexpr quint16 lock = 0x02;
constexpr quint16 control = 0x04;
constexpr quint16 mod1 = 0x08;
constexpr quint16 mod2 = 0x10;
constexpr quint16 mod3 = 0x20;
constexpr quint16 mod4 = 0x40;

// The keys of Mod1 to Mod5.
X11KeyTables tablesWith(const std::array<QList<quint32>, 5> &keysyms)
{
    X11KeyTables tables;
    quint8 keycode = 8;
    for (std::size_t modifier = 0; modifier < keysyms.size(); ++modifier) {
        for (const quint32 keysym : keysyms.at(modifier)) {
            tables.keycodesOfModifier.at(modifier + 3).append(keycode);
            tables.keysyms.insert(keycode++, { XKB_KEY_NoSymbol, keysym });
        }
    }
    return tables;
}

X11ModifierMap usualMap()
{
    return X11ModifierMap(tablesWith({ { { XKB_KEY_Alt_L, XKB_KEY_Meta_L }, { XKB_KEY_Num_Lock }, {},
        { XKB_KEY_Super_L, XKB_KEY_Hyper_L }, { XKB_KEY_ISO_Level3_Shift } } }));
}

std::vector<quint16> sorted(std::vector<quint16> states)
{
    std::ranges::sort(states);
    return states;
}

} // namespace

class X11ModifierMapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void usualModifiersHaveTheirUsualBits();
    void modifiersAreFoundWhereTheyAre();
    void metaStandsInForAlt();
    void missingModifierIsTold();
    void nothingLeftIsNoCombination();
    void allBitsAreTheFourModifiers();
    void everyStateOfTheLocksIsThere();
    void scrollLockCountsWhereItIsAModifier();
    void lockOnAWantedModifierIsLeftOut();
    void locksDoNotTellHotKeysApart();
};

void X11ModifierMapTest::usualModifiersHaveTheirUsualBits()
{
    QCOMPARE(usualMap().stateBits(CarbonModifier::command), std::optional(mod4));
    QCOMPARE(usualMap().stateBits(CarbonModifier::option), std::optional(mod1));
    QCOMPARE(usualMap().stateBits(CarbonModifier::control), std::optional(control));
    QCOMPARE(usualMap().stateBits(CarbonModifier::shift), std::optional(shift));
}

void X11ModifierMapTest::modifiersAreFoundWhereTheyAre()
{
    const X11ModifierMap map(tablesWith({ { { XKB_KEY_Super_R }, {}, { XKB_KEY_Num_Lock }, { XKB_KEY_Alt_R }, {} } }));

    QCOMPARE(map.stateBits(CarbonModifier::command), std::optional(mod1));
    QCOMPARE(map.stateBits(CarbonModifier::option), std::optional(mod4));
    QCOMPARE(sorted(map.lockStates(mod1)), (std::vector<quint16> { 0, lock, mod3, lock | mod3 }));
}

void X11ModifierMapTest::metaStandsInForAlt()
{
    const X11ModifierMap map(tablesWith({ { { XKB_KEY_Meta_L }, {}, {}, {}, {} } }));

    QCOMPARE(map.stateBits(CarbonModifier::option), std::optional(mod1));
}

void X11ModifierMapTest::missingModifierIsTold()
{
    const X11ModifierMap map(tablesWith({ { { XKB_KEY_Alt_L }, {}, {}, {}, {} } }));

    QVERIFY(!map.stateBits(CarbonModifier::command | CarbonModifier::option));
}

void X11ModifierMapTest::nothingLeftIsNoCombination()
{
    constexpr quint32 capsLock = 0x0400;

    QVERIFY(!usualMap().stateBits(0));
    QVERIFY(!usualMap().stateBits(capsLock));
}

void X11ModifierMapTest::allBitsAreTheFourModifiers()
{
    constexpr quint32 everything = 0xFFFFFFFF;

    QCOMPARE(usualMap().stateBits(everything), std::optional<quint16>(shift | control | mod1 | mod4));
}

void X11ModifierMapTest::everyStateOfTheLocksIsThere()
{
    const std::vector<quint16> states = usualMap().lockStates(control);

    QCOMPARE(states.front(), quint16(0));
    QCOMPARE(sorted(states), (std::vector<quint16> { 0, lock, mod2, lock | mod2 }));
}

void X11ModifierMapTest::scrollLockCountsWhereItIsAModifier()
{
    const X11ModifierMap map(
        tablesWith({ { { XKB_KEY_Alt_L }, { XKB_KEY_Num_Lock }, { XKB_KEY_Scroll_Lock }, {}, {} } }));

    QCOMPARE(map.lockStates(control).size(), 8U);
}

void X11ModifierMapTest::lockOnAWantedModifierIsLeftOut()
{
    const X11ModifierMap map(tablesWith({ { { XKB_KEY_Alt_L, XKB_KEY_Num_Lock }, {}, {}, {}, {} } }));

    QCOMPARE(sorted(map.lockStates(mod1)), (std::vector<quint16> { 0, lock }));
}

void X11ModifierMapTest::locksDoNotTellHotKeysApart()
{
    constexpr quint16 firstButton = 0x100;

    QCOMPARE(usualMap().withoutLocks(control | mod1 | lock | mod2 | firstButton), quint16(control | mod1));
}

VANTLE_TEST(X11ModifierMapTest)
#include "X11ModifierMapTest.moc"
