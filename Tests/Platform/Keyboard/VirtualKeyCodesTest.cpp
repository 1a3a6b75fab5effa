// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <VirtualKeyCodes.h>

#include <QTest>

#include <algorithm>
#include <set>

class VirtualKeyCodesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyHasItsEvdevCode_data();
    void keyHasItsEvdevCode();
    void everyKeyIsFoundAgainFromItsEvdevCode();
    void numberWithoutKeyHasNoCode_data();
    void numberWithoutKeyHasNoCode();
    void x11KeycodeLiesEightAboveEvdev();
    void modifiersAreTold();
    void keypadIsTold();
};

void VirtualKeyCodesTest::keyHasItsEvdevCode_data()
{
    QTest::addColumn<int>("virtualKey");
    QTest::addColumn<int>("evdev");

    QTest::newRow("A is key 0") << 0 << 30;
    QTest::newRow("V") << 9 << 47;
    QTest::newRow("key left of Z") << 10 << 86;
    QTest::newRow("E") << 14 << 18;
    QTest::newRow("5 and 6 are not in order") << 22 << 7;
    QTest::newRow("N") << 45 << 49;
    QTest::newRow("Space") << 49 << 57;
    QTest::newRow("Escape") << 53 << 1;
    QTest::newRow("Command is the Super key") << 55 << 125;
    QTest::newRow("Pad 0 is its own evdev code") << 82 << 82;
    QTest::newRow("F20") << 90 << 190;
    QTest::newRow("Help stands where a PC has Insert") << 114 << 110;
    QTest::newRow("Up is the last one") << 126 << 103;
}

void VirtualKeyCodesTest::keyHasItsEvdevCode()
{
    QFETCH(const int, virtualKey);
    QFETCH(const int, evdev);

    QCOMPARE(evdevCodeForVirtualKey(virtualKey), std::optional(evdev));
    QCOMPARE(virtualKeyForEvdevCode(evdev), std::optional(virtualKey));
}

void VirtualKeyCodesTest::everyKeyIsFoundAgainFromItsEvdevCode()
{
    const std::vector<int> keys = allVirtualKeys();
    std::set<int> evdevCodes;

    for (const int key : keys) {
        const int evdev = evdevCodeForVirtualKey(key).value();
        evdevCodes.insert(evdev);
        QCOMPARE(virtualKeyForEvdevCode(evdev), std::optional(key));
    }

    QCOMPARE(keys.size(), std::size_t(119));
    QCOMPARE(evdevCodes.size(), keys.size());
    QVERIFY(std::ranges::is_sorted(keys));
}

void VirtualKeyCodesTest::numberWithoutKeyHasNoCode_data()
{
    QTest::addColumn<qint64>("number");

    QTest::newRow("no key") << qint64(-1);
    QTest::newRow("between Backspace and Escape") << qint64(52);
    QTest::newRow("Fn is out of an X server's reach") << qint64(63);
    QTest::newRow("beyond the table") << qint64(127);
    QTest::newRow("more than 32 bits") << (qint64(1) << 32);
}

void VirtualKeyCodesTest::numberWithoutKeyHasNoCode()
{
    QFETCH(const qint64, number);

    QVERIFY(!evdevCodeForVirtualKey(number));
    QVERIFY(!x11KeycodeForVirtualKey(number));
    QVERIFY(!virtualKeyForEvdevCode(number < 0 ? 0 : number + 1000));
}

void VirtualKeyCodesTest::x11KeycodeLiesEightAboveEvdev()
{
    QCOMPARE(x11KeycodeForVirtualKey(40), std::optional(45)); // K
    QCOMPARE(virtualKeyForX11Keycode(45), std::optional(40));
    QVERIFY(!virtualKeyForX11Keycode(8)); // evdev 0 is reserved
    QVERIFY(!virtualKeyForX11Keycode(0)); // an event that came from no key
}

void VirtualKeyCodesTest::modifiersAreTold()
{
    const std::vector<int> keys = allVirtualKeys();

    QCOMPARE(std::ranges::count_if(keys, isModifierVirtualKey), 9);
    QVERIFY(isModifierVirtualKey(57)); // Caps Lock
    QVERIFY(!isModifierVirtualKey(VirtualKey::escape));
    QVERIFY(!isModifierVirtualKey(64)); // F17
}

void VirtualKeyCodesTest::keypadIsTold()
{
    const std::vector<int> keys = allVirtualKeys();

    QCOMPARE(std::ranges::count_if(keys, isKeypadVirtualKey), 19);
    QVERIFY(isKeypadVirtualKey(83)); // Pad 1
    QVERIFY(!isKeypadVirtualKey(18)); // 1
    QVERIFY(!isKeypadVirtualKey(90)); // F20 lies among them
}

VANTLE_TEST(VirtualKeyCodesTest)
#include "VirtualKeyCodesTest.moc"
