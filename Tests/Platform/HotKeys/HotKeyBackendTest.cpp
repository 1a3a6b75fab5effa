// SPDX-License-Identifier: MIT
#include "MockPortalBackEnd.h"
#include "PortalFrontEnd.h"
#include "PrivateBus.h"
#include "RecordingHotKeys.h"
#include "TestRegistry.h"
#include "VirtualDisplay.h"
#include "VirtualKeyboard.h"

#include <HotKeyBackendFactory.h>
#include <ModifierFlags.h>
#include <NoHotKeys.h>
#include <Portal/PortalHotKeys.h>
#include <Portal/PortalTrigger.h>
#include <X11/X11HotKeys.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyE = 14;
constexpr int keyK = 40;
constexpr quint32 modifiers = CarbonModifier::control | CarbonModifier::option;

const HotKeyLabel first { u"VTAddEventKeyCode"_s, u"New event"_s, u"new-event"_s };
const HotKeyLabel second { u"VTAddTaskKeyCode"_s, u"New to-do"_s, u"new-task"_s };

} // namespace

// What every back end promises, on the real parts: an X server, and the portal
// with a desktop behind it.
class HotKeyBackendTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void pressedAndReleasedAreToldById_data() { addHearing(); }
    void pressedAndReleasedAreToldById();
    void statusBecomesActive_data() { addHearing(); }
    void statusBecomesActive();
    void keysOfOneOfOursAreRefusedToAnother_data() { addHearing(); }
    void keysOfOneOfOursAreRefusedToAnother();
    void releasedHotKeyIsSilentAndUnset_data() { addHearing(); }
    void releasedHotKeyIsSilentAndUnset();
    void unknownIdsAreIgnored_data() { addAll(); }
    void unknownIdsAreIgnored();
    void modifiersThatStandForNothingAreRefused_data() { addHearing(); }
    void modifiersThatStandForNothingAreRefused();
    void withoutHotKeysTheCommandToBindIsTold();
    void bestOneIsChosen_data();
    void bestOneIsChosen();

private:
    enum class Kind { X11, Portal, None };

    void addHearing();
    void addAll();
    std::unique_ptr<HotKeyBackend> make(Kind kind) const;
    void press(Kind kind, int virtualKey);
    void release(Kind kind, int virtualKey);

    VirtualDisplay display;
    std::unique_ptr<VirtualKeyboard> keyboard;
    PrivateBus bus;
    PrivateBus emptyBus;
    QDBusConnection ours { QString() };
    QDBusConnection theirs { QString() };
    QDBusConnection emptyOurs { QString() };
    std::unique_ptr<MockPortalBackEnd> desktop;
    PortalFrontEnd portal;
};

void HotKeyBackendTest::initTestCase()
{
    QVERIFY2(display.start(), qPrintable(display.failure()));
    keyboard = std::make_unique<VirtualKeyboard>(display.name());
    QVERIFY(keyboard->isWorking());
    QVERIFY2(bus.start(), qPrintable(bus.failure()));
    QVERIFY2(emptyBus.start(), qPrintable(emptyBus.failure()));
    ours = bus.connect();
    theirs = bus.connect();
    emptyOurs = emptyBus.connect();
    desktop = std::make_unique<MockPortalBackEnd>(theirs);
    QVERIFY2(portal.start(bus.address(), ours), qPrintable(portal.failure()));
}

void HotKeyBackendTest::cleanupTestCase()
{
    portal.kill();
    desktop.reset();
    PrivateBus::disconnect(ours);
    PrivateBus::disconnect(theirs);
    PrivateBus::disconnect(emptyOurs);
    keyboard.reset();
}

void HotKeyBackendTest::addHearing()
{
    QTest::addColumn<Kind>("kind");

    QTest::newRow("X11") << Kind::X11;
    QTest::newRow("portal") << Kind::Portal;
}

void HotKeyBackendTest::addAll()
{
    addHearing();
    QTest::newRow("none") << Kind::None;
}

std::unique_ptr<HotKeyBackend> HotKeyBackendTest::make(Kind kind) const
{
    switch (kind) {
    case Kind::X11:
        return std::make_unique<X11HotKeys>(display.name());
    case Kind::Portal:
        return std::make_unique<PortalHotKeys>(ours);
    case Kind::None:
        break;
    }
    return std::make_unique<NoHotKeys>();
}

void HotKeyBackendTest::press(Kind kind, int virtualKey)
{
    if (kind == Kind::X11)
        keyboard->pressCombination(virtualKey, modifiers);
    else
        desktop->activate(desktop->shortcutWithTrigger(portalTrigger(virtualKey, modifiers)));
}

void HotKeyBackendTest::release(Kind kind, int virtualKey)
{
    if (kind == Kind::X11)
        keyboard->releaseCombination(virtualKey, modifiers);
    else
        desktop->deactivate(desktop->shortcutWithTrigger(portalTrigger(virtualKey, modifiers)));
}

void HotKeyBackendTest::pressedAndReleasedAreToldById()
{
    QFETCH(const Kind, kind);
    const auto backend = make(kind);
    QVERIFY(backend->isAvailable());
    QVERIFY(backend->grab(7, keyE, modifiers, first).isOk());
    QVERIFY(backend->grab(9, keyK, modifiers, second).isOk());
    QTRY_COMPARE(backend->status(9).kind, HotKeyStatus::Kind::Active);
    QSignalSpy presses(backend.get(), &HotKeyBackend::pressed);
    QSignalSpy releases(backend.get(), &HotKeyBackend::released);

    press(kind, keyK);
    QTRY_COMPARE(presses.count(), 1);
    QCOMPARE(releases.count(), 0);
    release(kind, keyK);
    QTRY_COMPARE(releases.count(), 1);

    QCOMPARE(presses.first().first().toUInt(), 9U);
    QCOMPARE(releases.first().first().toUInt(), 9U);
    QCOMPARE(presses.count(), 1);
}

void HotKeyBackendTest::statusBecomesActive()
{
    QFETCH(const Kind, kind);
    const auto backend = make(kind);

    QVERIFY(backend->grab(7, keyE, modifiers, first).isOk());

    QTRY_COMPARE(backend->status(7).kind, HotKeyStatus::Kind::Active);
    QVERIFY(!backend->status(7).text().isEmpty());
}

void HotKeyBackendTest::keysOfOneOfOursAreRefusedToAnother()
{
    QFETCH(const Kind, kind);
    const auto backend = make(kind);
    QVERIFY(backend->grab(7, keyE, modifiers, first).isOk());

    const Result<void> grabbed = backend->grab(8, keyE, modifiers, second);

    QVERIFY(!grabbed.isOk());
    QCOMPARE(grabbed.error().message, HotKeyRefusal::keysAreTakenByUs().message);
    QTRY_COMPARE(backend->status(7).kind, HotKeyStatus::Kind::Active);
    QSignalSpy presses(backend.get(), &HotKeyBackend::pressed);
    press(kind, keyE);
    QTRY_COMPARE(presses.count(), 1);
    QCOMPARE(presses.first().first().toUInt(), 7U);
    release(kind, keyE);
}

void HotKeyBackendTest::releasedHotKeyIsSilentAndUnset()
{
    QFETCH(const Kind, kind);
    const auto backend = make(kind);
    QVERIFY(backend->grab(7, keyE, modifiers, first).isOk());
    QVERIFY(backend->grab(9, keyK, modifiers, second).isOk());
    QTRY_COMPARE(backend->status(9).kind, HotKeyStatus::Kind::Active);
    QSignalSpy presses(backend.get(), &HotKeyBackend::pressed);

    backend->release(7);

    QCOMPARE(backend->status(7), HotKeyStatus());
    if (kind == Kind::Portal) // there the others move to a new session
        QTRY_COMPARE(desktop->sessions().last().shortcuts.size(), 1);
    QTRY_COMPARE(backend->status(9).kind, HotKeyStatus::Kind::Active);
    press(kind, keyE);
    release(kind, keyE);
    press(kind, keyK);
    release(kind, keyK);
    QTRY_VERIFY(!presses.isEmpty());
    QCOMPARE(presses.last().first().toUInt(), 9U);
    QCOMPARE(presses.count(), 1);
}

void HotKeyBackendTest::unknownIdsAreIgnored()
{
    QFETCH(const Kind, kind);
    const auto backend = make(kind);

    backend->release(4711);

    QCOMPARE(backend->status(4711), HotKeyStatus());
    QCOMPARE(backend->status(4711).kind, HotKeyStatus::Kind::Unset);
}

void HotKeyBackendTest::modifiersThatStandForNothingAreRefused()
{
    QFETCH(const Kind, kind);
    const auto backend = make(kind);
    constexpr quint32 capsLock = 0x0400;

    QVERIFY(!backend->grab(7, keyE, capsLock, first).isOk());
    QVERIFY(backend->grab(7, keyE, capsLock | CarbonModifier::control, first).isOk());
}

void HotKeyBackendTest::withoutHotKeysTheCommandToBindIsTold()
{
    const auto backend = make(Kind::None);

    QVERIFY(backend->grab(7, keyE, modifiers, first).isOk());

    QVERIFY(!backend->isAvailable());
    QCOMPARE(backend->status(7).kind, HotKeyStatus::Kind::NotOffered);
    QCOMPARE(backend->status(7).command, u"gapplication action org.vantle.Vantle new-event"_s);
    QVERIFY(backend->status(7).text().contains(backend->status(7).command));
    backend->release(7);
    QCOMPARE(backend->status(7), HotKeyStatus());
}

void HotKeyBackendTest::bestOneIsChosen_data()
{
    QTest::addColumn<bool>("hasServer");
    QTest::addColumn<bool>("isWayland");
    QTest::addColumn<bool>("hasPortal");
    QTest::addColumn<QByteArray>("chosen");

    QTest::newRow("grabs before the portal") << true << false << true << QByteArray("X11HotKeys");
    QTest::newRow("no grabs on Wayland, though there is an X server")
        << true << true << true << QByteArray("PortalHotKeys");
    QTest::newRow("no server") << false << false << true << QByteArray("PortalHotKeys");
    QTest::newRow("no portal") << true << true << false << QByteArray("NoHotKeys");
    QTest::newRow("nothing at all") << false << false << false << QByteArray("NoHotKeys");
}

void HotKeyBackendTest::bestOneIsChosen()
{
    QFETCH(const bool, hasServer);
    QFETCH(const bool, isWayland);
    QFETCH(const bool, hasPortal);

    const auto backend = makeHotKeyBackend({ .xDisplay = hasServer ? display.name() : QByteArray(":64999"),
        .isWayland = isWayland,
        .sessionBus = hasPortal ? ours : emptyOurs });

    QTEST(QByteArray(backend->metaObject()->className()), "chosen");
}

VANTLE_TEST(HotKeyBackendTest)
#include "HotKeyBackendTest.moc"
