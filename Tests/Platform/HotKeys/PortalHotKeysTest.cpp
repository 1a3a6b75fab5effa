// SPDX-License-Identifier: MIT
#include "MockPortalBackEnd.h"
#include "PortalFrontEnd.h"
#include "PrivateBus.h"
#include "TestRegistry.h"

#include <ModifierFlags.h>
#include <Portal/PortalHotKeys.h>

#include <QDBusPendingCall>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyE = 14;
constexpr int keyK = 40;
constexpr int keyN = 45;
constexpr quint32 modifiers = CarbonModifier::control | CarbonModifier::option;
constexpr int patienceInMilliseconds = 20000; // retries and a restarted portal take their time

const HotKeyLabel newEvent { u"VTAddEventKeyCode"_s, u"New event"_s, u"new-event"_s };
const HotKeyLabel newTask { u"VTAddTaskKeyCode"_s, u"New to-do"_s, u"new-task"_s };

} // namespace

// Against the real portal, with a desktop behind it that answers as the test says.
class PortalHotKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void hotKeysOfAMomentAreBoundTogether();
    void pressAndReleaseReachTheirHotKey();
    void waitsWhileTheDesktopAsks();
    void oneRefusedLeavesTheOthersActive();
    void declinedIsRefusedAndNotAskedAgain();
    void otherKeysThanWishedForAreTold();
    void withoutKeysItIsRefused();
    void keysChangedLaterAreTold();
    void changeMakesANewSession();
    void changeWithdrawsAQuestion();
    void lastReleaseEndsTheSession();
    void destructionEndsTheSession();
    void boundAgainAfterTheBackEndDied();
    void refusedWhenTheBackEndDiesWhileAsking();
    void boundAgainAfterThePortalDied();
    void boundAgainAfterTheDesktopEndedTheSession();
    void sessionThatDoesNotOpenIsTriedAgain();
    void portalWithoutHotKeysOffersNone();
    void unavailableWithoutAPortal();
    void nothingIsAskedBeforeTheFirstHotKey();

private:
    void startBackEnd();
    void stopBackEnd();
    void startPortal(PortalFrontEnd::Desktop desktop = PortalFrontEnd::Desktop::WithHotKeys);
    void grabBoth();
    HotKeyStatus::Kind kind(quint32 id) const { return hotKeys->status(id).kind; }

    std::unique_ptr<PrivateBus> bus;
    QDBusConnection ours { QString() };
    QDBusConnection theirs { QString() };
    std::unique_ptr<MockPortalBackEnd> backEnd;
    std::unique_ptr<PortalFrontEnd> portal;
    std::unique_ptr<PortalHotKeys> hotKeys;
};

void PortalHotKeysTest::init()
{
    bus = std::make_unique<PrivateBus>();
    QVERIFY2(bus->start(), qPrintable(bus->failure()));
    ours = bus->connect();
    startBackEnd();
    startPortal();
    hotKeys = std::make_unique<PortalHotKeys>(ours);
    QVERIFY(hotKeys->isAvailable());
}

void PortalHotKeysTest::cleanup()
{
    hotKeys.reset();
    portal.reset();
    stopBackEnd();
    PrivateBus::disconnect(ours);
    bus.reset();
}

void PortalHotKeysTest::startBackEnd()
{
    theirs = bus->connect();
    backEnd = std::make_unique<MockPortalBackEnd>(theirs);
    // A call that arrives while QtDBus begins to deliver calls waits for the next
    // one. Two questions, both answered, show that it has begun.
    auto question = QDBusMessage::createMethodCall(
        MockPortalBackEnd::service(), Portal::path(), u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s);
    question.setArguments({ u"org.freedesktop.impl.portal.GlobalShortcuts"_s });
    const QDBusPendingCall first = ours.asyncCall(question);
    const QDBusPendingCall second = ours.asyncCall(question);
    QTRY_VERIFY(first.isFinished() && second.isFinished());
}

void PortalHotKeysTest::stopBackEnd()
{
    backEnd.reset();
    PrivateBus::disconnect(theirs);
}

void PortalHotKeysTest::startPortal(PortalFrontEnd::Desktop desktop)
{
    portal = std::make_unique<PortalFrontEnd>();
    QVERIFY2(portal->start(bus->address(), ours, desktop), qPrintable(portal->failure()));
}

void PortalHotKeysTest::grabBoth()
{
    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());
    QVERIFY(hotKeys->grab(2, keyN, modifiers, newTask).isOk());
    QTRY_COMPARE(kind(2), HotKeyStatus::Kind::Active);
}

void PortalHotKeysTest::hotKeysOfAMomentAreBoundTogether()
{
    grabBoth();

    QCOMPARE(backEnd->sessions().size(), 1);
    QCOMPARE(backEnd->sessions().first().shortcuts.size(), 2);
    QCOMPARE(backEnd->wishedTrigger(newEvent.identifier), u"CTRL+ALT+e"_s);
    QCOMPARE(backEnd->wishedTrigger(newTask.identifier), u"CTRL+ALT+n"_s);
    QCOMPARE(backEnd->wishedDescription(newTask.identifier), u"New to-do"_s);
    QCOMPARE(hotKeys->status(1), HotKeyStatus::active(u"CTRL+ALT+e"_s));
}

void PortalHotKeysTest::pressAndReleaseReachTheirHotKey()
{
    grabBoth();
    QSignalSpy presses(hotKeys.get(), &HotKeyBackend::pressed);
    QSignalSpy releases(hotKeys.get(), &HotKeyBackend::released);

    backEnd->activate(newTask.identifier);
    backEnd->deactivate(newTask.identifier);

    QTRY_COMPARE(releases.count(), 1);
    QCOMPARE(presses.count(), 1);
    QCOMPARE(presses.first().first().toUInt(), 2U);
    QCOMPARE(releases.first().first().toUInt(), 2U);
}

void PortalHotKeysTest::waitsWhileTheDesktopAsks()
{
    backEnd->holdBindings();

    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());

    QCOMPARE(kind(1), HotKeyStatus::Kind::WaitingForDesktop);
    QTRY_VERIFY(backEnd->isHoldingBinding());
    QCOMPARE(kind(1), HotKeyStatus::Kind::WaitingForDesktop);
    backEnd->answerHeldBinding();
    QTRY_COMPARE(kind(1), HotKeyStatus::Kind::Active);
}

void PortalHotKeysTest::oneRefusedLeavesTheOthersActive()
{
    backEnd->refuse(newEvent.identifier);
    QSignalSpy changes(hotKeys.get(), &HotKeyBackend::statusChanged);

    grabBoth();

    QCOMPARE(kind(1), HotKeyStatus::Kind::Refused);
    QVERIFY(!hotKeys->status(1).reason.isEmpty());
    QTRY_COMPARE(changes.count(), 2);
}

void PortalHotKeysTest::declinedIsRefusedAndNotAskedAgain()
{
    backEnd->answerBindings(1);
    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());
    QTRY_COMPARE(kind(1), HotKeyStatus::Kind::Refused);
    QTRY_COMPARE(backEnd->openSessions(), 0);

    // Another desktop service comes; whether it is our back end nobody tells.
    stopBackEnd();
    startBackEnd();
    QVERIFY(hotKeys->grab(2, keyN, modifiers, newTask).isOk());
    QTRY_COMPARE(kind(2), HotKeyStatus::Kind::Active);

    QCOMPARE(backEnd->sessions().size(), 1);
    QCOMPARE(kind(1), HotKeyStatus::Kind::Active);
}

void PortalHotKeysTest::otherKeysThanWishedForAreTold()
{
    backEnd->grantOther(newEvent.identifier, u"Ctrl+Shift+F9"_s);

    grabBoth();

    QCOMPARE(hotKeys->status(1), HotKeyStatus::active(u"Ctrl+Shift+F9"_s));
    QVERIFY(hotKeys->status(1).text().contains(u"Ctrl+Shift+F9"_s));
}

void PortalHotKeysTest::withoutKeysItIsRefused()
{
    backEnd->grantOther(newEvent.identifier, u""_s);

    grabBoth();

    QCOMPARE(kind(1), HotKeyStatus::Kind::Refused);
}

void PortalHotKeysTest::keysChangedLaterAreTold()
{
    grabBoth();

    backEnd->changeTrigger(newEvent.identifier, u"Meta+E"_s);

    QTRY_COMPARE(hotKeys->status(1), HotKeyStatus::active(u"Meta+E"_s));
    QCOMPARE(hotKeys->status(2), HotKeyStatus::active(u"CTRL+ALT+n"_s));
}

void PortalHotKeysTest::changeMakesANewSession()
{
    grabBoth();

    hotKeys->release(1);
    QVERIFY(hotKeys->grab(3, keyK, modifiers, newEvent).isOk());

    QTRY_COMPARE(kind(3), HotKeyStatus::Kind::Active);
    QCOMPARE(kind(1), HotKeyStatus::Kind::Unset);
    QCOMPARE(backEnd->sessions().size(), 2);
    QCOMPARE(backEnd->openSessions(), 1);
    QCOMPARE(backEnd->wishedTrigger(newEvent.identifier), u"CTRL+ALT+k"_s);
    QCOMPARE(backEnd->sessions().last().shortcuts.size(), 2);
}

void PortalHotKeysTest::changeWithdrawsAQuestion()
{
    backEnd->holdBindings();
    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());
    QTRY_VERIFY(backEnd->isHoldingBinding());

    QVERIFY(hotKeys->grab(2, keyN, modifiers, newTask).isOk());

    QTRY_COMPARE(backEnd->sessions().size(), 2);
    QTRY_COMPARE(backEnd->sessions().last().shortcuts.size(), 2);
    QCOMPARE(backEnd->openSessions(), 1);
    backEnd->answerHeldBinding();
    QTRY_COMPARE(kind(2), HotKeyStatus::Kind::Active);
    QCOMPARE(kind(1), HotKeyStatus::Kind::Active);
}

void PortalHotKeysTest::lastReleaseEndsTheSession()
{
    grabBoth();
    QSignalSpy presses(hotKeys.get(), &HotKeyBackend::pressed);

    hotKeys->release(1);
    hotKeys->release(2);

    QTRY_COMPARE(backEnd->openSessions(), 0);
    QCOMPARE(backEnd->sessions().size(), 1);
    backEnd->activate(newEvent.identifier);
    QCOMPARE(presses.count(), 0);
}

void PortalHotKeysTest::destructionEndsTheSession()
{
    grabBoth();

    hotKeys.reset();

    QTRY_COMPARE(backEnd->openSessions(), 0);
}

void PortalHotKeysTest::boundAgainAfterTheBackEndDied()
{
    grabBoth();

    stopBackEnd();
    QTRY_COMPARE(kind(1), HotKeyStatus::Kind::WaitingForDesktop);
    startBackEnd();

    QTRY_COMPARE_WITH_TIMEOUT(kind(1), HotKeyStatus::Kind::Active, patienceInMilliseconds);
    QCOMPARE(backEnd->sessions().size(), 1);
    QSignalSpy presses(hotKeys.get(), &HotKeyBackend::pressed);
    backEnd->activate(newEvent.identifier);
    QTRY_COMPARE(presses.count(), 1);
}

void PortalHotKeysTest::refusedWhenTheBackEndDiesWhileAsking()
{
    backEnd->holdBindings();
    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());
    QTRY_VERIFY(backEnd->isHoldingBinding());

    stopBackEnd();
    QTRY_COMPARE(kind(1), HotKeyStatus::Kind::Refused);
    startBackEnd();

    QTRY_COMPARE_WITH_TIMEOUT(kind(1), HotKeyStatus::Kind::Active, patienceInMilliseconds);
}

void PortalHotKeysTest::boundAgainAfterThePortalDied()
{
    grabBoth();

    portal->kill();
    QTRY_COMPARE(kind(1), HotKeyStatus::Kind::WaitingForDesktop);
    startPortal();

    QTRY_COMPARE_WITH_TIMEOUT(kind(1), HotKeyStatus::Kind::Active, patienceInMilliseconds);
    QSignalSpy presses(hotKeys.get(), &HotKeyBackend::pressed);
    backEnd->activate(newEvent.identifier);
    QTRY_COMPARE(presses.count(), 1);
}

void PortalHotKeysTest::boundAgainAfterTheDesktopEndedTheSession()
{
    grabBoth();

    backEnd->endSession();

    QTRY_COMPARE(kind(1), HotKeyStatus::Kind::WaitingForDesktop);
    QTRY_COMPARE_WITH_TIMEOUT(kind(1), HotKeyStatus::Kind::Active, patienceInMilliseconds);
    QCOMPARE(backEnd->sessions().size(), 2);
}

void PortalHotKeysTest::sessionThatDoesNotOpenIsTriedAgain()
{
    backEnd->answerSessions(2);
    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());
    QTRY_COMPARE(backEnd->refusedSessions(), 1);
    QCOMPARE(kind(1), HotKeyStatus::Kind::WaitingForDesktop);

    backEnd->answerSessions(0);

    QTRY_COMPARE_WITH_TIMEOUT(kind(1), HotKeyStatus::Kind::Active, patienceInMilliseconds);
}

void PortalHotKeysTest::portalWithoutHotKeysOffersNone()
{
    portal->kill();
    startPortal(PortalFrontEnd::Desktop::WithoutHotKeys);
    hotKeys = std::make_unique<PortalHotKeys>(ours);

    QVERIFY(hotKeys->grab(1, keyE, modifiers, newEvent).isOk());

    QTRY_COMPARE(hotKeys->status(1), HotKeyStatus::notOffered(u"new-event"_s));
    QVERIFY(!hotKeys->isAvailable());
    QVERIFY(hotKeys->grab(2, keyN, modifiers, newTask).isOk());
    QCOMPARE(hotKeys->status(2).command, u"gapplication action org.vantle.Vantle new-task"_s);
}

void PortalHotKeysTest::unavailableWithoutAPortal()
{
    portal->kill();

    QTRY_VERIFY(!hotKeys->isAvailable());
    QVERIFY(!PortalHotKeys(QDBusConnection(u"no such connection"_s)).isAvailable());
}

void PortalHotKeysTest::nothingIsAskedBeforeTheFirstHotKey()
{
    QVERIFY(!hotKeys->grab(1, -1, modifiers, newEvent).isOk());
    QVERIFY(!hotKeys->grab(1, keyE, 0, newEvent).isOk());
    hotKeys->release(1);
    stopBackEnd();
    startBackEnd();
    QCoreApplication::processEvents();

    grabBoth();

    QCOMPARE(backEnd->sessions().size(), 1);
}

VANTLE_TEST(PortalHotKeysTest)
#include "PortalHotKeysTest.moc"
