// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <ModifierFlags.h>

#include <QTest>

using namespace Qt::StringLiterals;

class ModifierFlagsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsAreConvertedBothWays_data();
    void flagsAreConvertedBothWays();
    void bitsOutsideTheTableAreDropped();
    void everyCombinationComesBack();
    void glyphsAndWordsStandInTheirOrder();
};

void ModifierFlagsTest::flagsAreConvertedBothWays_data()
{
    QTest::addColumn<quint64>("carbon");
    QTest::addColumn<quint64>("cocoa");

    QTest::newRow("none") << quint64(0) << quint64(0);
    QTest::newRow("Command") << quint64(0x0100) << quint64(0x100000);
    QTest::newRow("Option") << quint64(0x0800) << quint64(0x080000);
    QTest::newRow("Control") << quint64(0x1000) << quint64(0x040000);
    QTest::newRow("Shift") << quint64(0x0200) << quint64(0x020000);
    QTest::newRow("Command, Option") << quint64(0x0900) << quint64(0x180000);
}

void ModifierFlagsTest::flagsAreConvertedBothWays()
{
    QFETCH(const quint64, carbon);
    QFETCH(const quint64, cocoa);

    QCOMPARE(SRCarbonToCocoaFlags(carbon), cocoa);
    QCOMPARE(SRCocoaToCarbonFlags(cocoa), carbon);
}

void ModifierFlagsTest::bitsOutsideTheTableAreDropped()
{
    constexpr quint64 allowedInRecorder = 64256; // with the right-hand keys' bits
    constexpr quint64 everyBit = ~quint64(0);

    QCOMPARE(SRCarbonToCocoaFlags(allowedInRecorder), CocoaModifier::all);
    QCOMPARE(SRCarbonToCocoaFlags(everyBit), CocoaModifier::all);
    QCOMPARE(SRCarbonToCocoaFlags(0x0400), quint64(0)); // Caps Lock
    QCOMPARE(SRCocoaToCarbonFlags(everyBit), CarbonModifier::all);
}

void ModifierFlagsTest::everyCombinationComesBack()
{
    for (quint64 carbon = 0; carbon <= CarbonModifier::all; carbon += 0x100)
        QCOMPARE(SRCocoaToCarbonFlags(SRCarbonToCocoaFlags(carbon)), carbon & CarbonModifier::all);
}

void ModifierFlagsTest::glyphsAndWordsStandInTheirOrder()
{
    QCOMPARE(modifierGlyphs(0x1300), u"⌘⌃⇧"_s);
    QCOMPARE(modifierGlyphs(~quint64(0)), u"⌘⌥⌃⇧"_s);
    QCOMPARE(modifierGlyphs(0), QString());
    QCOMPARE(modifierWords(CarbonModifier::all), u"Super+Alt+Ctrl+Shift"_s);
    QCOMPARE(modifierWords(0x1800), u"Alt+Ctrl"_s);
    QCOMPARE(modifierWords(0), QString());
}

VANTLE_TEST(ModifierFlagsTest)
#include "ModifierFlagsTest.moc"
