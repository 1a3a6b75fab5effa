// SPDX-License-Identifier: MIT
#include "SwitchableKeyboardLayouts.h"
#include "TestRegistry.h"
#include "VirtualDisplay.h"

#include <NamedKeyboardLayouts.h>
#include <PTKeyCombo.h>
#include <X11KeyboardLayouts.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr quint64 allBits = ~quint64(0);
constexpr quint64 command = 0x0100;
constexpr quint64 shift = 0x0200;
constexpr quint64 option = 0x0800;
constexpr quint64 control = 0x1000;

PTKeyComboPtr combo(qint64 keyCode, quint64 modifiers)
{
    return PTKeyCombo::keyComboWithKeyCode_modifiers(keyCode, modifiers);
}

QVariantMap plist(const QVariant &keyCode, const QVariant &modifiers)
{
    return { { u"keyCode"_s, keyCode }, { u"modifiers"_s, modifiers } };
}

NamedKeyboardLayouts layoutsNamed(const char *layout)
{
    return NamedKeyboardLayouts({ .model = "pc105", .layout = layout, .variant = "" });
}

} // namespace

class PTKeyComboTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void clearComboIsClear();
    void comboWithoutKeyAndModifiersIsNeitherValidNorClear();
    void valuesAreStoredAsTheyAre();
    void copyIsTheSameObject();
    void equalWhenKeyAndModifiersAre();
    void readsPropertyList_data();
    void readsPropertyList();
    void writesPropertyList();
    void clearComboSurvivesThePropertyList();
    void keyWithAllModifiersIsValidAndShowsThemAll();
    void validity_data();
    void validity();
    void modifierMaskIsInTheOtherEncoding_data();
    void modifierMaskIsInTheOtherEncoding();
    void description_data();
    void description();
    void legacyMapNamesKeysDirectly();
    void legacyMapFallsBackToHexadecimal_data();
    void legacyMapFallsBackToHexadecimal();
    void newMapPrefersUnmappedKeys();
    void newMapPutsPadWordBeforePadKeys();
    void newMapAsksTheLayoutForOtherKeys();
    void keyCodeIsCutToSixteenBits();
    void sharpSIsUpperCased();
    void deadKeyStaysWithTheTranslator();
    void namesBesideEachOtherLendNoAccents();
    void shownNameFollowsTheLayoutOfARealServer();

private:
    std::unique_ptr<KeyboardLayouts> m_layouts;
    std::unique_ptr<ScopedKeyboardLayouts> m_scope;
};

void PTKeyComboTest::init()
{
    m_layouts
        = std::make_unique<NamedKeyboardLayouts>(KeyboardNames { .model = "pc105", .layout = "us", .variant = "" });
    m_scope = std::make_unique<ScopedKeyboardLayouts>(*m_layouts);
}

void PTKeyComboTest::cleanup()
{
    m_scope.reset();
    m_layouts.reset();
}

void PTKeyComboTest::clearComboIsClear()
{
    const PTKeyComboPtr clear = PTKeyCombo::clearKeyCombo();

    QCOMPARE(clear->keyCode(), qint64(-1));
    QCOMPARE(clear->modifiers(), allBits);
    QVERIFY(clear->isClearCombo());
    QVERIFY(!clear->isValidHotKeyCombo());
    QCOMPARE(clear->keyCodeString(), QString());
    QCOMPARE(clear->modifierMask(), quint64(0));
    QCOMPARE(clear->description(), u"(None)"_s);
}

void PTKeyComboTest::comboWithoutKeyAndModifiersIsNeitherValidNorClear()
{
    const PTKeyComboPtr none = combo(0, 0);

    QVERIFY(!none->isValidHotKeyCombo());
    QVERIFY(!none->isClearCombo());
    QCOMPARE(none->description(), u"(None)"_s);
    QCOMPARE(none->keyCodeString(), u"A"_s);
    QCOMPARE(none->modifierMask(), quint64(0));
}

void PTKeyComboTest::valuesAreStoredAsTheyAre()
{
    const PTKeyComboPtr odd = PTKeyCombo::initWithKeyCode_modifiers(-7, 0x400);

    QCOMPARE(odd->keyCode(), qint64(-7));
    QCOMPARE(odd->modifiers(), quint64(0x400));
}

void PTKeyComboTest::copyIsTheSameObject()
{
    const PTKeyComboPtr original = combo(9, option);

    QCOMPARE(original->copy(), original);
}

void PTKeyComboTest::equalWhenKeyAndModifiersAre()
{
    QVERIFY(combo(9, option | control)->isEqual(*combo(9, option | control)));
    QVERIFY(!combo(9, option)->isEqual(*combo(9, control)));
    QVERIFY(!combo(9, option)->isEqual(*combo(8, option)));
}

void PTKeyComboTest::readsPropertyList_data()
{
    QTest::addColumn<std::optional<QVariantMap>>("list");
    QTest::addColumn<qint64>("keyCode");
    QTest::addColumn<quint64>("modifiers");
    using List = std::optional<QVariantMap>;

    QTest::newRow("nothing") << List() << qint64(-1) << allBits;
    QTest::newRow("empty") << List(QVariantMap()) << qint64(-1) << allBits;
    QTest::newRow("clear") << List(plist(-1, -1)) << qint64(-1) << allBits;
    QTest::newRow("key and modifiers") << List(plist(9, 6144)) << qint64(9) << quint64(6144);
    QTest::newRow("modifiers 0 become all") << List(plist(5, 0)) << qint64(5) << allBits;
    QTest::newRow("negative modifiers become all") << List(plist(5, -300)) << qint64(5) << allBits;
    QTest::newRow("negative key is no key") << List(plist(-7, 256)) << qint64(-1) << quint64(256);
    QTest::newRow("missing key reads as 0")
        << List(QVariantMap { { u"modifiers"_s, 256 } }) << qint64(0) << quint64(256);
    QTest::newRow("missing modifiers become all") << List(QVariantMap { { u"keyCode"_s, 5 } }) << qint64(5) << allBits;
    QTest::newRow("only foreign entries") << List(QVariantMap { { u"name"_s, 5 } }) << qint64(0) << allBits;
    QTest::newRow("cut to 32 bits") << List(plist((1LL << 32) + 5, (1LL << 32) + 256)) << qint64(5) << quint64(256);
    QTest::newRow("bit 31 is a sign") << List(plist(5, 0x80000100LL)) << qint64(5) << allBits;
}

void PTKeyComboTest::readsPropertyList()
{
    QFETCH(const std::optional<QVariantMap>, list);

    const PTKeyComboPtr read = PTKeyCombo::initWithPlistRepresentation(list);

    QTEST(read->keyCode(), "keyCode");
    QTEST(read->modifiers(), "modifiers");
}

void PTKeyComboTest::writesPropertyList()
{
    const QVariantMap written = combo(9, 6144)->plistRepresentation();

    QCOMPARE(written, plist(9LL, 6144LL));
    QCOMPARE(PTKeyCombo::clearKeyCombo()->plistRepresentation(), plist(-1LL, -1LL));
}

void PTKeyComboTest::clearComboSurvivesThePropertyList()
{
    const PTKeyComboPtr clear = PTKeyCombo::clearKeyCombo();

    QVERIFY(PTKeyCombo::initWithPlistRepresentation(clear->plistRepresentation())->isClearCombo());
}

void PTKeyComboTest::keyWithAllModifiersIsValidAndShowsThemAll()
{
    const PTKeyComboPtr read = PTKeyCombo::initWithPlistRepresentation(plist(5, 0));

    QVERIFY(!read->isClearCombo());
    QVERIFY(read->isValidHotKeyCombo());
    QCOMPARE(read->description(), u"⌘⌥⌃⇧G"_s);
}

void PTKeyComboTest::validity_data()
{
    QTest::addColumn<qint64>("keyCode");
    QTest::addColumn<quint64>("modifiers");
    QTest::addColumn<bool>("isValid");
    QTest::addColumn<bool>("isClear");

    QTest::newRow("key 0 with a modifier") << qint64(0) << command << true << false;
    QTest::newRow("key without modifier") << qint64(9) << quint64(0) << false << false;
    QTest::newRow("modifier without key") << qint64(-1) << command << false << false;
    QTest::newRow("clear") << qint64(-1) << allBits << false << true;
    QTest::newRow("any bit counts as a modifier") << qint64(9) << quint64(0x0400) << true << false;
}

void PTKeyComboTest::validity()
{
    QFETCH(const qint64, keyCode);
    QFETCH(const quint64, modifiers);

    QTEST(combo(keyCode, modifiers)->isValidHotKeyCombo(), "isValid");
    QTEST(combo(keyCode, modifiers)->isClearCombo(), "isClear");
}

void PTKeyComboTest::modifierMaskIsInTheOtherEncoding_data()
{
    QTest::addColumn<quint64>("modifiers");
    QTest::addColumn<quint64>("mask");

    QTest::newRow("Command, Option") << quint64(0x0900) << quint64(0x180000);
    QTest::newRow("Control, Shift") << (control | shift) << quint64(0x060000);
    QTest::newRow("Caps Lock is dropped") << quint64(0x0500) << quint64(0x100000);
    QTest::newRow("all bits beside a key") << allBits << quint64(0x1E0000);
}

void PTKeyComboTest::modifierMaskIsInTheOtherEncoding()
{
    QFETCH(const quint64, modifiers);

    QTEST(combo(5, modifiers)->modifierMask(), "mask");
}

void PTKeyComboTest::description_data()
{
    QTest::addColumn<qint64>("keyCode");
    QTest::addColumn<quint64>("modifiers");
    QTest::addColumn<QString>("text");

    QTest::newRow("Command and Option") << qint64(40) << (command | option) << u"⌘⌥K"_s;
    QTest::newRow("Command and Shift") << qint64(40) << (command | shift) << u"⌘⇧K"_s;
    QTest::newRow("Command, Shift, Control") << qint64(40) << quint64(0x1300) << u"⌘⌃⇧K"_s;
    QTest::newRow("Control and Option with a named key") << qint64(49) << (control | option) << u"⌥⌃Space"_s;
    QTest::newRow("keypad") << qint64(83) << control << u"⌃Pad 1"_s;
    QTest::newRow("unknown modifier shows nothing") << qint64(40) << quint64(0x0400) << u"K"_s;
    QTest::newRow("no modifier") << qint64(40) << quint64(0) << u"(None)"_s;
    QTest::newRow("negative key") << qint64(-2) << command << u"(None)"_s;
}

void PTKeyComboTest::description()
{
    QFETCH(const qint64, keyCode);
    QFETCH(const quint64, modifiers);

    QTEST(combo(keyCode, modifiers)->description(), "text");
}

void PTKeyComboTest::legacyMapNamesKeysDirectly()
{
    const QVariantMap table { { u"36"_s, u"Return"_s }, { u"-1"_s, u"nothing"_s } };

    QCOMPARE(PTKeyCombo::_stringForKeyCode_legacyKeyCodeMap(36, table), u"Return"_s);
    QCOMPARE(PTKeyCombo::_stringForKeyCode_legacyKeyCodeMap(-1, table), u"nothing"_s);
}

void PTKeyComboTest::legacyMapFallsBackToHexadecimal_data()
{
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<QString>("name");

    QTest::newRow("255") << 255 << u"FF"_s;
    QTest::newRow("10") << 10 << u"A"_s;
    QTest::newRow("0") << 0 << u"0"_s;
    QTest::newRow("negative has 32 bits") << -1 << u"FFFFFFFF"_s;
}

void PTKeyComboTest::legacyMapFallsBackToHexadecimal()
{
    QFETCH(const int, keyCode);

    QTEST(PTKeyCombo::_stringForKeyCode_legacyKeyCodeMap(static_cast<qint16>(keyCode), {}), "name");
}

void PTKeyComboTest::newMapPrefersUnmappedKeys()
{
    const QVariantMap table { { u"unmappedKeys"_s, QVariantMap { { u"83"_s, u"the One"_s }, { u"0"_s, u"first"_s } } },
        { u"padKeys"_s, QVariantList { u"83"_s } }, { u"padKeyString"_s, u"Pad"_s } };

    QCOMPARE(PTKeyCombo::_stringForKeyCode_newKeyCodeMap(83, table), u"the One"_s);
    QCOMPARE(PTKeyCombo::_stringForKeyCode_newKeyCodeMap(0, table), u"first"_s);
}

void PTKeyComboTest::newMapPutsPadWordBeforePadKeys()
{
    const QVariantMap table { { u"padKeys"_s, QVariantList { u"83"_s, u"0"_s } }, { u"padKeyString"_s, u"Num"_s } };

    QCOMPARE(PTKeyCombo::_stringForKeyCode_newKeyCodeMap(83, table), u"Num 1"_s);
    QCOMPARE(PTKeyCombo::_stringForKeyCode_newKeyCodeMap(0, table), u"Num A"_s);
}

void PTKeyComboTest::newMapAsksTheLayoutForOtherKeys()
{
    NamedKeyboardLayouts german = layoutsNamed("de");
    const ScopedKeyboardLayouts scope(german);

    QCOMPARE(PTKeyCombo::_stringForKeyCode_newKeyCodeMap(16, {}), u"Z"_s);
    QCOMPARE(PTKeyCombo::_stringForKeyCode_newKeyCodeMap(41, {}), u"Ö"_s);
}

void PTKeyComboTest::keyCodeIsCutToSixteenBits()
{
    QCOMPARE(combo(0x10000 + 40, command)->keyCodeString(), u"K"_s);
}

void PTKeyComboTest::sharpSIsUpperCased()
{
    NamedKeyboardLayouts german = layoutsNamed("de");
    const ScopedKeyboardLayouts scope(german);

    QCOMPARE(combo(27, command)->keyCodeString(), u"SS"_s);
}

void PTKeyComboTest::deadKeyStaysWithTheTranslator()
{
    NamedKeyboardLayouts german = layoutsNamed("de");
    const ScopedKeyboardLayouts scope(german);

    QCOMPARE(combo(24, command)->description(), u"⌘´"_s);
    QCOMPARE(combo(14, command)->description(), u"⌘É"_s);
    QCOMPARE(combo(14, command)->description(), u"⌘E"_s);
}

void PTKeyComboTest::namesBesideEachOtherLendNoAccents()
{
    NamedKeyboardLayouts german = layoutsNamed("de");
    const ScopedKeyboardLayouts scope(german);

    QCOMPARE(PTKeyCombo::nameForKeyCode(24), u"´"_s);
    QCOMPARE(PTKeyCombo::nameForKeyCode(14), u"E"_s);
    QCOMPARE(PTKeyCombo::nameForKeyCode(126), u"Up"_s);
}

void PTKeyComboTest::shownNameFollowsTheLayoutOfARealServer()
{
    VirtualDisplay display;
    QVERIFY2(display.start(), qPrintable(display.failure()));
    const std::unique_ptr<X11KeyboardLayouts> layouts = X11KeyboardLayouts::create(display.name());
    QVERIFY(layouts);
    const ScopedKeyboardLayouts scope(*layouts);
    const PTKeyComboPtr onY = combo(16, option | control);
    const PTKeyComboPtr onQ = combo(12, option | control);

    const auto shown = [&](const QStringList &layout) {
        return display.run(u"setxkbmap"_s, layout) ? onY->description() + u' ' + onQ->description() : display.failure();
    };

    QCOMPARE(shown({ u"us"_s }), u"⌥⌃Y ⌥⌃Q"_s);
    QCOMPARE(shown({ u"de"_s }), u"⌥⌃Z ⌥⌃Q"_s);
    QCOMPARE(shown({ u"fr"_s }), u"⌥⌃Y ⌥⌃A"_s);
    QCOMPARE(shown({ u"us"_s, u"dvorak"_s }), u"⌥⌃F ⌥⌃'"_s);
    QCOMPARE(shown({ u"ru"_s }), u"⌥⌃Н ⌥⌃Й"_s);
}

VANTLE_TEST(PTKeyComboTest)
#include "PTKeyComboTest.moc"
