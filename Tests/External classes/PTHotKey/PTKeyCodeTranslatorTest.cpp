// SPDX-License-Identifier: MIT
#include "SwitchableKeyboardLayouts.h"
#include "TestRegistry.h"

#include <NamedKeyboardLayouts.h>
#include <PTKeyCodeTranslator.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint16 keyA = 0;
constexpr qint16 keyE = 14;
constexpr qint16 keyAccent = 24;

std::shared_ptr<PlainKeyboardLayout> plainLayout()
{
    return std::make_shared<PlainKeyboardLayout>(u"Plain"_s,
        QHash<qint64, QString> { { keyA, u"a"_s }, { keyE, u"e"_s }, { 5, u"xyz"_s } },
        QHash<qint64, QString> { { keyAccent, u"´"_s } });
}

KeyboardLayoutPtr german()
{
    return NamedKeyboardLayouts({ .model = "pc105", .layout = "de", .variant = "" }).currentLayout();
}

} // namespace

class PTKeyCodeTranslatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameLayoutKeepsItsTranslator();
    void switchGivesANewTranslator();
    void oldTranslatorLetsItsLayoutGo();
    void equalLayoutUnderAnotherIdentityIsASwitch();
    void answerIsExactlyOneCharacter_data();
    void answerIsExactlyOneCharacter();
    void deadKeyIsCarriedToTheNextKey();
    void newTranslatorKnowsNoDeadKey();
    void keyboardTypeReachesTheLayout();
    void descriptionNamesNoLayout();
};

void PTKeyCodeTranslatorTest::sameLayoutKeepsItsTranslator()
{
    SwitchableKeyboardLayouts layouts(plainLayout());
    const ScopedKeyboardLayouts scope(layouts);

    const PTKeyCodeTranslatorPtr first = PTKeyCodeTranslator::currentTranslator();

    QCOMPARE(PTKeyCodeTranslator::currentTranslator(), first);
    QCOMPARE(first->keyboardLayout(), layouts.currentLayout());
}

void PTKeyCodeTranslatorTest::switchGivesANewTranslator()
{
    SwitchableKeyboardLayouts layouts(plainLayout());
    const ScopedKeyboardLayouts scope(layouts);
    const PTKeyCodeTranslatorPtr first = PTKeyCodeTranslator::currentTranslator();

    layouts.switchTo(german());

    const PTKeyCodeTranslatorPtr second = PTKeyCodeTranslator::currentTranslator();
    QVERIFY(second != first);
    QCOMPARE(second->translateKeyCode(16), u"z"_s);
    QCOMPARE(PTKeyCodeTranslator::currentTranslator(), second);
}

void PTKeyCodeTranslatorTest::oldTranslatorLetsItsLayoutGo()
{
    std::shared_ptr<PlainKeyboardLayout> layout = plainLayout();
    const std::weak_ptr<PlainKeyboardLayout> watched = layout;
    SwitchableKeyboardLayouts layouts(std::move(layout));
    const ScopedKeyboardLayouts scope(layouts);
    PTKeyCodeTranslator::currentTranslator();

    layouts.switchTo(german());
    QVERIFY(!watched.expired());
    PTKeyCodeTranslator::currentTranslator();

    QVERIFY(watched.expired());
}

void PTKeyCodeTranslatorTest::equalLayoutUnderAnotherIdentityIsASwitch()
{
    SwitchableKeyboardLayouts layouts(plainLayout());
    const ScopedKeyboardLayouts scope(layouts);
    const PTKeyCodeTranslatorPtr first = PTKeyCodeTranslator::currentTranslator();

    layouts.switchTo(plainLayout());

    QVERIFY(PTKeyCodeTranslator::currentTranslator() != first);
}

void PTKeyCodeTranslatorTest::answerIsExactlyOneCharacter_data()
{
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<QString>("character");

    QTest::newRow("a letter in lower case") << int(keyA) << u"a"_s;
    QTest::newRow("the first of several") << 5 << u"x"_s;
    QTest::newRow("a key that prints nothing") << 122 << u"\uFFFD"_s;
    QTest::newRow("no key") << -1 << u"\uFFFD"_s;
}

void PTKeyCodeTranslatorTest::answerIsExactlyOneCharacter()
{
    QFETCH(const int, keyCode);
    const auto translator = PTKeyCodeTranslator::initWithKeyboardLayout(plainLayout());

    QTEST(translator->translateKeyCode(static_cast<qint16>(keyCode)), "character");
}

void PTKeyCodeTranslatorTest::deadKeyIsCarriedToTheNextKey()
{
    const auto translator = PTKeyCodeTranslator::initWithKeyboardLayout(german());

    QCOMPARE(translator->translateKeyCode(keyAccent), u"´"_s);
    QCOMPARE(translator->translateKeyCode(keyE), u"é"_s);
    QCOMPARE(translator->translateKeyCode(keyE), u"e"_s);
}

void PTKeyCodeTranslatorTest::newTranslatorKnowsNoDeadKey()
{
    const KeyboardLayoutPtr layout = german();
    PTKeyCodeTranslator::initWithKeyboardLayout(layout)->translateKeyCode(keyAccent);

    QCOMPARE(PTKeyCodeTranslator::initWithKeyboardLayout(layout)->translateKeyCode(keyE), u"e"_s);
}

void PTKeyCodeTranslatorTest::keyboardTypeReachesTheLayout()
{
    const std::shared_ptr<PlainKeyboardLayout> layout = plainLayout();
    SwitchableKeyboardLayouts layouts(layout);
    layouts.setKeyboardType(KeyboardType::jis);
    const ScopedKeyboardLayouts scope(layouts);

    PTKeyCodeTranslator::currentTranslator()->translateKeyCode(keyA);

    QCOMPARE(layout->lastKeyboardType, KeyboardType::jis);
}

void PTKeyCodeTranslatorTest::descriptionNamesNoLayout()
{
    QCOMPARE(
        PTKeyCodeTranslator::initWithKeyboardLayout(german())->description(), u"PTKeyCodeTranslator layout= (uchr)"_s);
}

VANTLE_TEST(PTKeyCodeTranslatorTest)
#include "PTKeyCodeTranslatorTest.moc"
