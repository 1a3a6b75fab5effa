// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <NamedKeyboardLayouts.h>

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QString print(KeyboardLayouts &layouts, qint64 virtualKey, quint32 &deadKeyState)
{
    return layouts.currentLayout()->translate(virtualKey, layouts.keyboardType(), deadKeyState);
}

QString print(KeyboardLayouts &layouts, qint64 virtualKey)
{
    quint32 deadKeyState = 0;
    return print(layouts, virtualKey, deadKeyState);
}

NamedKeyboardLayouts *makeLayouts(QObject *parent, const char *layout, const char *variant = "", quint32 group = 0)
{
    return new NamedKeyboardLayouts({ .model = "pc105", .layout = layout, .variant = variant }, group, parent);
}

QString writeFile(const QTemporaryDir &folder, const QByteArray &text)
{
    const QString path = folder.filePath(u"keyboard"_s);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? path : QString();
}

} // namespace

class NamedKeyboardLayoutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keyPrintsWhatTheLayoutSays_data();
    void keyPrintsWhatTheLayoutSays();
    void keypadPrintsFigures_data();
    void keypadPrintsFigures();
    void keyWithoutPicturePrintsNothing_data();
    void keyWithoutPicturePrintsNothing();
    void deadKeyWaitsForItsLetter();
    void deadKeyPrintsItsAccentEachTime();
    void deadKeyBeforeForeignKeyIsForgotten();
    void twoDeadKeysWaitTogether();
    void deadKeyStatesOfTwoCallersStayApart();
    void unknownDeadKeyStateIsNone();
    void layoutTellsItsName();
    void layoutStaysTheSameObject();
    void japaneseKeyboardHasItsOwnType();
    void unknownLayoutIsUs();
    void systemNamesComeFromTheConfiguration();
    void sessionVariablesComeFirst();
    void missingConfigurationLeavesTheChoiceOpen();
};

void NamedKeyboardLayoutsTest::init()
{
    qunsetenv("XKB_DEFAULT_LAYOUT");
    qunsetenv("XKB_DEFAULT_MODEL");
    qunsetenv("XKB_DEFAULT_VARIANT");
}

void NamedKeyboardLayoutsTest::keyPrintsWhatTheLayoutSays_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<QByteArray>("variant");
    QTest::addColumn<quint32>("group");
    QTest::addColumn<QString>("y"); // key 16
    QTest::addColumn<QString>("k"); // key 40
    QTest::addColumn<QString>("q"); // key 12
    QTest::addColumn<QString>("one"); // key 18

    QTest::newRow("us") << QByteArray("us") << QByteArray() << 0U << u"y"_s << u"k"_s << u"q"_s << u"1"_s;
    QTest::newRow("de") << QByteArray("de") << QByteArray() << 0U << u"z"_s << u"k"_s << u"q"_s << u"1"_s;
    QTest::newRow("fr") << QByteArray("fr") << QByteArray() << 0U << u"y"_s << u"k"_s << u"a"_s << u"&"_s;
    QTest::newRow("dvorak") << QByteArray("us") << QByteArray("dvorak") << 0U << u"f"_s << u"t"_s << u"'"_s << u"1"_s;
    QTest::newRow("ru") << QByteArray("ru") << QByteArray() << 0U << u"н"_s << u"л"_s << u"й"_s << u"1"_s;
    QTest::newRow("second of two") << QByteArray("us,ru") << QByteArray(",") << 1U << u"н"_s << u"л"_s << u"й"_s
                                   << u"1"_s;
}

void NamedKeyboardLayoutsTest::keyPrintsWhatTheLayoutSays()
{
    QFETCH(const QByteArray, layout);
    QFETCH(const QByteArray, variant);
    QFETCH(const quint32, group);

    auto *layouts = makeLayouts(this, layout.constData(), variant.constData(), group);

    QTEST(print(*layouts, 16), "y");
    QTEST(print(*layouts, 40), "k");
    QTEST(print(*layouts, 12), "q");
    QTEST(print(*layouts, 18), "one");
}

void NamedKeyboardLayoutsTest::keypadPrintsFigures_data()
{
    QTest::addColumn<int>("virtualKey");
    QTest::addColumn<QString>("text");

    QTest::newRow("0") << 82 << u"0"_s;
    QTest::newRow("1") << 83 << u"1"_s;
    QTest::newRow("5") << 87 << u"5"_s;
    QTest::newRow("9") << 92 << u"9"_s;
    QTest::newRow("point") << 65 << u"."_s;
    QTest::newRow("times") << 67 << u"*"_s;
    QTest::newRow("plus") << 69 << u"+"_s;
    QTest::newRow("divided by") << 75 << u"/"_s;
    QTest::newRow("minus") << 78 << u"-"_s;
    QTest::newRow("equals") << 81 << u"="_s;
}

void NamedKeyboardLayoutsTest::keypadPrintsFigures()
{
    QFETCH(const int, virtualKey);

    QTEST(print(*makeLayouts(this, "us"), virtualKey), "text");
}

void NamedKeyboardLayoutsTest::keyWithoutPicturePrintsNothing_data()
{
    QTest::addColumn<qint64>("virtualKey");

    QTest::newRow("Return is a control character") << qint64(36);
    QTest::newRow("Forward Delete is one too") << qint64(117);
    QTest::newRow("F1") << qint64(122);
    QTest::newRow("Shift") << qint64(56);
    QTest::newRow("Yen is not on this keyboard") << qint64(93);
    QTest::newRow("no such key") << qint64(200);
    QTest::newRow("no key") << qint64(-1);
}

void NamedKeyboardLayoutsTest::keyWithoutPicturePrintsNothing()
{
    QFETCH(const qint64, virtualKey);

    QCOMPARE(print(*makeLayouts(this, "us"), virtualKey), QString());
}

void NamedKeyboardLayoutsTest::deadKeyWaitsForItsLetter()
{
    auto *german = makeLayouts(this, "de");
    quint32 deadKeyState = 0;

    QCOMPARE(print(*german, 24, deadKeyState), u"´"_s);
    QVERIFY(deadKeyState != 0);
    QCOMPARE(print(*german, 14, deadKeyState), u"é"_s);
    QCOMPARE(deadKeyState, 0U);
    QCOMPARE(print(*german, 14, deadKeyState), u"e"_s);
}

void NamedKeyboardLayoutsTest::deadKeyPrintsItsAccentEachTime()
{
    auto *german = makeLayouts(this, "de");
    quint32 deadKeyState = 0;

    for (int i = 0; i < 4; ++i)
        QCOMPARE(print(*german, 24, deadKeyState), u"´"_s);
    QCOMPARE(print(*german, 50), u"^"_s);
}

void NamedKeyboardLayoutsTest::deadKeyBeforeForeignKeyIsForgotten()
{
    auto *german = makeLayouts(this, "de");
    quint32 deadKeyState = 0;
    print(*german, 24, deadKeyState);

    QCOMPARE(print(*german, 12, deadKeyState), u"q"_s);
    QCOMPARE(deadKeyState, 0U);
}

void NamedKeyboardLayoutsTest::twoDeadKeysWaitTogether()
{
    auto *greek = makeLayouts(this, "gr", "polytonic");
    quint32 deadKeyState = 0;

    print(*greek, 30, deadKeyState); // iota below
    print(*greek, 41, deadKeyState); // acute accent

    QVERIFY(deadKeyState != 0);
    QCOMPARE(print(*greek, 0, deadKeyState), u"ᾴ"_s);
    QCOMPARE(deadKeyState, 0U);
}

void NamedKeyboardLayoutsTest::deadKeyStatesOfTwoCallersStayApart()
{
    auto *german = makeLayouts(this, "de");
    quint32 acute = 0;
    quint32 circumflex = 0;

    print(*german, 24, acute);
    print(*german, 50, circumflex);

    QCOMPARE(print(*german, 14, acute), u"é"_s);
    QCOMPARE(print(*german, 14, circumflex), u"ê"_s);
}

void NamedKeyboardLayoutsTest::unknownDeadKeyStateIsNone()
{
    quint32 deadKeyState = 4711;

    QCOMPARE(print(*makeLayouts(this, "de"), 14, deadKeyState), u"e"_s);
}

void NamedKeyboardLayoutsTest::layoutTellsItsName()
{
    QCOMPARE(makeLayouts(this, "de")->currentLayout()->name(), u"German"_s);
    QCOMPARE(makeLayouts(this, "us,ru", ",", 1)->currentLayout()->name(), u"Russian"_s);
}

void NamedKeyboardLayoutsTest::layoutStaysTheSameObject()
{
    auto *layouts = makeLayouts(this, "us");

    QCOMPARE(layouts->currentLayout().get(), layouts->currentLayout().get());
}

void NamedKeyboardLayoutsTest::japaneseKeyboardHasItsOwnType()
{
    QCOMPARE(makeLayouts(this, "us")->keyboardType(), KeyboardType::iso);
    QCOMPARE(makeLayouts(this, "jp")->keyboardType(), KeyboardType::jis);
}

void NamedKeyboardLayoutsTest::unknownLayoutIsUs()
{
    QCOMPARE(print(*makeLayouts(this, "no-such-layout"), 16), u"y"_s);
}

void NamedKeyboardLayoutsTest::systemNamesComeFromTheConfiguration()
{
    const QTemporaryDir folder;
    const QString path
        = writeFile(folder, "# comment\nXKBMODEL=\"pc104\"\nXKBLAYOUT=\"us,de\"\nXKBVARIANT='dvorak,'\n");

    const KeyboardNames names = KeyboardNames::ofThisSystem(path);

    QCOMPARE(names.model, "pc104");
    QCOMPARE(names.layout, "us,de");
    QCOMPARE(names.variant, "dvorak,");
    NamedKeyboardLayouts layouts(names);
    QCOMPARE(print(layouts, 16), u"f"_s);
}

void NamedKeyboardLayoutsTest::sessionVariablesComeFirst()
{
    const QTemporaryDir folder;
    const QString path = writeFile(folder, "XKBLAYOUT=us\n");
    qputenv("XKB_DEFAULT_LAYOUT", "fr");

    NamedKeyboardLayouts layouts(KeyboardNames::ofThisSystem(path));

    QCOMPARE(print(layouts, 12), u"a"_s);
}

void NamedKeyboardLayoutsTest::missingConfigurationLeavesTheChoiceOpen()
{
    const QTemporaryDir folder;

    NamedKeyboardLayouts layouts(KeyboardNames::ofThisSystem(folder.filePath(u"missing"_s)));

    QCOMPARE(print(layouts, 16), u"y"_s);
}

VANTLE_TEST(NamedKeyboardLayoutsTest)
#include "NamedKeyboardLayoutsTest.moc"
