// SPDX-License-Identifier: MIT
#include "BareGrabClient.h"
#include "TestRegistry.h"
#include "VirtualDisplay.h"
#include "VirtualKeyboard.h"
#include "WindowManager.h"

#include <ModifierFlags.h>
#include <X11/X11HotKeys.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyE = 14;
constexpr int keyK = 40;
constexpr int keyTab = 48;
constexpr int keyF4 = 118;
constexpr quint32 controlOption = CarbonModifier::control | CarbonModifier::option;
constexpr quint16 controlMod1 = 0x04 | 0x08; // the same as state bits of the usual configuration
constexpr quint16 shiftBit = 0x01;

const HotKeyLabel label { u"VTHotkeyKeyCode"_s, u"Show or hide Vantle"_s, u"show"_s };

} // namespace

// Real key presses on a real X server with a window manager, and other clients
// that want the same keys.
class X11HotKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    // First, because the window manager's keys do not outlive the moving of modifiers.
    void keysOfTheWindowManagerAreRefused();
    void pressAndReleaseAreTold();
    void heldKeyIsPressedOnce();
    void heldKeyIsPressedOnceThoughTheLayoutChanges();
    void keyHeldSinceBeforeItsGrabIsNoPress();
    void quickPressesAllCount();
    void otherModifiersDoNotFire();
    void locksDoNotMatter_data();
    void locksDoNotMatter();
    void layoutsDoNotMatter_data();
    void layoutsDoNotMatter();
    void otherGroupDoesNotMatter();
    void modifiersMovedByTheConfigurationAreFollowed();
    void keysOfAnotherClientAreRefused();
    void keysOfAnotherClientInOneLockStateAreRefused();
    void keysAreFreeAgainWhenTheOtherClientLeaves();
    void keysLostToAnotherClientAreToldRefused();
    void releasedKeysAreFreeForOthers();
    void destroyedOnesAreFreeForOthers();
    void combinationWithoutUsableModifierIsRefused();
    void keyThatNoKeyboardHasIsRefused();
    void withoutServerNothingIsOffered();
    void lostServerIsTold();
    void actionMayEndTheBackEnd();

private:
    void choose(const QStringList &layout) { QVERIFY2(display->run(u"setxkbmap"_s, layout), failure()); }
    const char *failure()
    {
        failureText = display->failure().toLocal8Bit();
        return failureText.constData();
    }

    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<WindowManager> windowManager;
    std::unique_ptr<VirtualKeyboard> keyboard;
    std::unique_ptr<X11HotKeys> hotKeys;
    std::unique_ptr<QSignalSpy> presses;
    std::unique_ptr<QSignalSpy> releases;
    QByteArray failureText;
};

void X11HotKeysTest::initTestCase()
{
    display = std::make_unique<VirtualDisplay>();
    QVERIFY2(display->start(), failure());
    windowManager = std::make_unique<WindowManager>();
    QVERIFY2(windowManager->start(*display), qPrintable(windowManager->failure()));
    keyboard = std::make_unique<VirtualKeyboard>(display->name());
    QVERIFY(keyboard->isWorking());
}

void X11HotKeysTest::cleanupTestCase()
{
    keyboard.reset();
    windowManager.reset();
    display.reset();
}

void X11HotKeysTest::init()
{
    choose({ u"us"_s, u"-option"_s, u""_s });
    keyboard->setCapsLock(false);
    keyboard->setNumLock(false);
    hotKeys = std::make_unique<X11HotKeys>(display->name());
    QVERIFY(hotKeys->isAvailable());
    presses = std::make_unique<QSignalSpy>(hotKeys.get(), &HotKeyBackend::pressed);
    releases = std::make_unique<QSignalSpy>(hotKeys.get(), &HotKeyBackend::released);
}

void X11HotKeysTest::cleanup()
{
    presses.reset();
    releases.reset();
    hotKeys.reset();
}

void X11HotKeysTest::keysOfTheWindowManagerAreRefused()
{
    const auto isRefused = [this](int key) {
        const Result<void> grabbed = hotKeys->grab(1, key, CarbonModifier::option, label);
        hotKeys->release(1);
        return !grabbed.isOk();
    };

    QTRY_VERIFY(isRefused(keyTab)); // it says that it is ready before it has its keys
    QTRY_VERIFY(isRefused(keyF4));
}

void X11HotKeysTest::pressAndReleaseAreTold()
{
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    QVERIFY(hotKeys->grab(2, keyE, controlOption, label).isOk());

    keyboard->pressCombination(keyE, controlOption);
    QTRY_COMPARE(presses->count(), 1);
    QCOMPARE(presses->first().first().toUInt(), 2U);
    QCOMPARE(releases->count(), 0);

    // Fingers leave in any order.
    keyboard->release(58);
    keyboard->release(59);
    keyboard->release(keyE);
    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(releases->first().first().toUInt(), 2U);
    QCOMPARE(presses->count(), 1);
    QCOMPARE(hotKeys->status(1), HotKeyStatus::active());
    QCOMPARE(hotKeys->status(3), HotKeyStatus());
}

void X11HotKeysTest::heldKeyIsPressedOnce()
{
    // The server does repeat: another client's held key tells how long that takes.
    BareGrabClient other(display->name());
    QVERIFY(other.grab(keyE, controlMod1));
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    constexpr int repeats = 10;
    int seenByOther = 0;
    QElapsedTimer timer;

    timer.start();
    keyboard->pressCombination(keyE, controlOption);
    QTRY_VERIFY((seenByOther += other.takePresses()) > repeats);
    keyboard->releaseCombination(keyE, controlOption);
    const auto holding = static_cast<int>(timer.elapsed());

    keyboard->pressCombination(keyK, controlOption);
    QVERIFY(presses->wait());
    QVERIFY(!presses->wait(holding));
    keyboard->releaseCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(presses->count(), 1);
}

void X11HotKeysTest::heldKeyIsPressedOnceThoughTheLayoutChanges()
{
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    keyboard->pressCombination(keyK, controlOption);
    QTRY_COMPARE(presses->count(), 1);

    choose({ u"de"_s });
    QVERIFY(!presses->wait(1000));
    keyboard->releaseCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(presses->count(), 1);
}

// A recorder field registers a combination while it is still held, and the held key repeats.
void X11HotKeysTest::keyHeldSinceBeforeItsGrabIsNoPress()
{
    keyboard->pressCombination(keyK, controlOption);
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    const bool isPressHeard = presses->wait(1200);
    keyboard->releaseCombination(keyK, controlOption);
    QVERIFY(!isPressHeard);

    keyboard->typeCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(presses->count(), 1);
}

void X11HotKeysTest::quickPressesAllCount()
{
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());

    for (int i = 0; i < 5; ++i)
        keyboard->typeCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 5);
    QCOMPARE(presses->count(), 5);
}

void X11HotKeysTest::otherModifiersDoNotFire()
{
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    QVERIFY(hotKeys->grab(2, keyK, controlOption | CarbonModifier::shift, label).isOk());
    QVERIFY(hotKeys->grab(3, keyK, CarbonModifier::all, label).isOk());

    keyboard->typeCombination(keyK, CarbonModifier::control);
    keyboard->typeCombination(keyK, controlOption | CarbonModifier::command);
    keyboard->typeCombination(keyK, controlOption | CarbonModifier::shift);
    keyboard->typeCombination(keyK, CarbonModifier::all);

    QTRY_COMPARE(releases->count(), 2);
    QCOMPARE(presses->count(), 2);
    QCOMPARE(presses->at(0).first().toUInt(), 2U);
    QCOMPARE(presses->at(1).first().toUInt(), 3U);
}

void X11HotKeysTest::locksDoNotMatter_data()
{
    QTest::addColumn<bool>("caps");
    QTest::addColumn<bool>("num");
    QTest::addColumn<int>("locked");

    QTest::newRow("neither") << false << false << 0;
    QTest::newRow("Caps Lock") << true << false << 0x02;
    QTest::newRow("Num Lock") << false << true << 0x10;
    QTest::newRow("both") << true << true << 0x12;
}

void X11HotKeysTest::locksDoNotMatter()
{
    QFETCH(const bool, caps);
    QFETCH(const bool, num);
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());

    keyboard->setCapsLock(caps);
    keyboard->setNumLock(num);
    QTEST(int(keyboard->lockedModifiers()), "locked");
    keyboard->typeCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(presses->count(), 1);
}

void X11HotKeysTest::layoutsDoNotMatter_data()
{
    QTest::addColumn<QStringList>("layout");

    QTest::newRow("us") << QStringList { u"us"_s };
    QTest::newRow("de") << QStringList { u"de"_s };
    QTest::newRow("fr") << QStringList { u"fr"_s };
    QTest::newRow("dvorak") << QStringList { u"us"_s, u"dvorak"_s };
    QTest::newRow("ru") << QStringList { u"ru"_s };
}

// A hot key is a place on the keyboard, whatever is printed there.
void X11HotKeysTest::layoutsDoNotMatter()
{
    QFETCH(const QStringList, layout);
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());

    choose(layout);
    keyboard->typeCombination(keyK, controlOption);
    QTRY_COMPARE(releases->count(), 1);
    keyboard->setNumLock(true);
    keyboard->typeCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 2);
    QCOMPARE(presses->count(), 2);
    QCOMPARE(hotKeys->status(1), HotKeyStatus::active());
}

void X11HotKeysTest::otherGroupDoesNotMatter()
{
    choose({ u"us,ru"_s });
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());

    keyboard->lockGroup(1);
    keyboard->typeCombination(keyK, controlOption);

    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(presses->count(), 1);
}

// Alt and Super change places: the same modifier is now on another key.
void X11HotKeysTest::modifiersMovedByTheConfigurationAreFollowed()
{
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());

    QVERIFY(hotKeys->grab(2, keyE, CarbonModifier::control, label).isOk());
    choose({ u"us"_s, u"-option"_s, u"altwin:swap_alt_win"_s });
    keyboard->typeCombination(keyK, CarbonModifier::control | CarbonModifier::command); // by their usual places

    QTRY_COMPARE(releases->count(), 1);
    QCOMPARE(presses->count(), 1);

    // And the bit of the modifier itself may be another one.
    QVERIFY2(display->run(u"xmodmap"_s,
                 { u"-e"_s, u"clear mod1"_s, u"-e"_s, u"clear mod4"_s, u"-e"_s, u"add mod3 = Alt_L"_s, u"-e"_s,
                     u"add mod5 = Super_L"_s }),
        failure());
    keyboard->typeCombination(keyE, CarbonModifier::control); // is heard after the change
    QTRY_COMPARE(releases->count(), 2);
    BareGrabClient other(display->name());
    constexpr quint16 mod3 = 0x20;
    QVERIFY(!other.grab(keyK, 0x04 | mod3));
    QVERIFY(other.grab(keyK, controlMod1));
    QCOMPARE(hotKeys->status(1), HotKeyStatus::active());
}

void X11HotKeysTest::keysOfAnotherClientAreRefused()
{
    BareGrabClient other(display->name());
    QVERIFY(other.grab(keyK, controlMod1));

    const Result<void> grabbed = hotKeys->grab(1, keyK, controlOption, label);

    QVERIFY(!grabbed.isOk());
    QCOMPARE(grabbed.error().message, HotKeyRefusal::keysAreTaken().message);
    QCOMPARE(hotKeys->status(1), HotKeyStatus());
    keyboard->typeCombination(keyK, controlOption);
    other.waitForRelease();
    QCoreApplication::processEvents();
    QCOMPARE(presses->count(), 0);
}

// All or nothing: nobody wants a hot key that works without Num Lock only.
void X11HotKeysTest::keysOfAnotherClientInOneLockStateAreRefused()
{
    constexpr quint16 numLockBit = 0x10;
    BareGrabClient other(display->name());
    QVERIFY(other.grab(keyK, controlMod1 | numLockBit));

    QVERIFY(!hotKeys->grab(1, keyK, controlOption, label).isOk());

    QTRY_VERIFY(other.grab(keyK, controlMod1));
}

void X11HotKeysTest::keysAreFreeAgainWhenTheOtherClientLeaves()
{
    auto other = std::make_unique<BareGrabClient>(display->name());
    QVERIFY(other->grab(keyK, controlMod1));
    QVERIFY(!hotKeys->grab(1, keyK, controlOption, label).isOk());

    other.reset();

    bool isGranted = false;
    QTRY_VERIFY(isGranted || (isGranted = hotKeys->grab(2, keyK, controlOption, label).isOk()));
    keyboard->typeCombination(keyK, controlOption);
    QTRY_COMPARE(presses->count(), 1);
    QCOMPARE(presses->first().first().toUInt(), 2U);
}

void X11HotKeysTest::keysLostToAnotherClientAreToldRefused()
{
    constexpr quint16 mod3 = 0x20;
    BareGrabClient other(display->name());
    QVERIFY(other.grab(keyK, 0x04 | mod3));
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    QSignalSpy changes(hotKeys.get(), &HotKeyBackend::statusChanged);

    QVERIFY2(display->run(u"xmodmap"_s, { u"-e"_s, u"clear mod1"_s, u"-e"_s, u"add mod3 = Alt_L"_s }), failure());

    QTRY_COMPARE(hotKeys->status(1), HotKeyStatus::refused(HotKeyRefusal::keysAreTaken().message));
    QTRY_COMPARE(changes.count(), 1);
}

void X11HotKeysTest::releasedKeysAreFreeForOthers()
{
    BareGrabClient other(display->name());
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    QVERIFY(!other.grab(keyK, controlMod1));

    hotKeys->release(1);
    hotKeys->release(1);

    QTRY_VERIFY(other.grab(keyK, controlMod1));
    QVERIFY(other.grab(keyK, controlMod1 | 0x12));
}

void X11HotKeysTest::destroyedOnesAreFreeForOthers()
{
    BareGrabClient other(display->name());
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());

    hotKeys.reset();

    QTRY_VERIFY(other.grab(keyK, controlMod1));
}

void X11HotKeysTest::combinationWithoutUsableModifierIsRefused()
{
    constexpr quint32 capsLock = 0x0400;

    QVERIFY(!hotKeys->grab(1, keyK, 0, label).isOk());
    QVERIFY(!hotKeys->grab(2, keyK, capsLock, label).isOk());

    BareGrabClient other(display->name());
    QVERIFY(other.grab(keyK, 0));
    QVERIFY(other.grab(keyK, shiftBit));
}

void X11HotKeysTest::keyThatNoKeyboardHasIsRefused()
{
    constexpr int functionModifier = 63;

    QVERIFY(!hotKeys->grab(1, -1, controlOption, label).isOk());
    QVERIFY(!hotKeys->grab(2, functionModifier, controlOption, label).isOk());
    QVERIFY(!hotKeys->grab(3, 30000, controlOption, label).isOk());
}

void X11HotKeysTest::withoutServerNothingIsOffered()
{
    X11HotKeys none(":64999");

    QVERIFY(!none.isAvailable());
    QVERIFY(!none.grab(1, keyK, controlOption, label).isOk());
}

void X11HotKeysTest::lostServerIsTold()
{
    VirtualDisplay fleeting;
    QVERIFY2(fleeting.start(), qPrintable(fleeting.failure()));
    X11HotKeys there(fleeting.name());
    QVERIFY(there.grab(1, keyK, controlOption, label).isOk());
    QSignalSpy changes(&there, &HotKeyBackend::statusChanged);

    fleeting.stop();

    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(!there.isAvailable());
    QCOMPARE(there.status(1), HotKeyStatus::notOffered(u"show"_s));
    QVERIFY(!there.grab(2, keyE, controlOption, label).isOk());
    there.release(1);
}

void X11HotKeysTest::actionMayEndTheBackEnd()
{
    QVERIFY(hotKeys->grab(1, keyK, controlOption, label).isOk());
    connect(hotKeys.get(), &HotKeyBackend::pressed, this, [this] { hotKeys.reset(); });

    keyboard->typeCombination(keyK, controlOption);

    QTRY_VERIFY(!hotKeys);
}

VANTLE_TEST(X11HotKeysTest)
#include "X11HotKeysTest.moc"
