// SPDX-License-Identifier: MIT
#include "RecordingHotKeys.h"
#include "TestRegistry.h"

#include <AssertionHandler.h>
#include <ModifierFlags.h>
#include <PTHotKeyCenter.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyK = 40;
constexpr quint64 modifiers = CarbonModifier::command | CarbonModifier::option;

// Keeps what it was sent.
class ActionTarget final : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void showWindow(QObject *sender)
    {
        senders.append(sender);
        if (center)
            center->unregisterHotKey(center->allHotKeys().constFirst());
    }

    QList<QObject *> senders;
    PTHotKeyCenter *center = nullptr; // in which the action unregisters the only hot key
};

} // namespace

class PTHotKeyCenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void idsStartAtOneAndRise();
    void registeringAgainTakesANewId();
    void desktopIsAskedWithTheCombosNumbers();
    void allModifierBitsReachTheDesktopAsThirtyTwo();
    void invalidComboIsSuccessAndRegistersNothing_data();
    void invalidComboIsSuccessAndRegistersNothing();
    void invalidComboUnregistersWhatWasRegistered();
    void refusalUsesUpItsId();
    void refusalLeavesIdAndHandleAsTheyWere();
    void refusalOfARegisteredOneLeavesItUnregistered();
    void unregisteringForgetsIdAndHandle();
    void unregisteringWhatIsNotRegisteredDoesNothing();
    void unregisteringByALookUpKeepsTheHotKeyAlive();
    void handlerIsInstalledOnceAndStays();
    void noHandlerBeforeTheFirstRegistration();
    void pressSendsTheActionOnceWithTheHotKey();
    void releaseDoesNothing();
    void pressOfAnUnregisteredOneDoesNothing();
    void goneTargetIsNoHarm();
    void actionMayUnregisterItsHotKey();
    void hotKeyIsFoundByIdentifier();
    void nilIdentifierFindsNothing();
    void hotKeyIsFoundByHandleAndById();
    void allHotKeysHasTheRegisteredOnes();
    void carbonEventsAreChecked_data();
    void carbonEventsAreChecked();
    void missingIdentityReturnsItsStatus();
    void checksGoOnUnderAForgivingHandler();
    void carbonPressInvokesAndReturnsNoError();
    void applicationEventsReachTheirHotKey_data();
    void applicationEventsReachTheirHotKey();
    void statusIsThatOfTheDesktop();
    void statusOfARefusedOneTellsWhy();
    void statusOfAnotherComboIsUnset();
    void statusChangesAreToldByIdentifier();
    void sharedCenterIsAlwaysTheSame();

private:
    PTHotKeyPtr makeHotKey(const QString &identifier, int keyCode = keyK)
    {
        auto hotKey
            = std::make_shared<PTHotKey>(identifier, PTKeyCombo::keyComboWithKeyCode_modifiers(keyCode, modifiers));
        hotKey->setTarget(target.get());
        hotKey->setAction("showWindow");
        return hotKey;
    }

    std::unique_ptr<ActionTarget> target;
    std::unique_ptr<PTHotKeyCenter> center;
    RecordingHotKeys *desktop = nullptr; // the center's
};

void PTHotKeyCenterTest::init()
{
    target = std::make_unique<ActionTarget>();
    auto backend = std::make_unique<RecordingHotKeys>();
    desktop = backend.get();
    center = std::make_unique<PTHotKeyCenter>(std::move(backend));
}

void PTHotKeyCenterTest::cleanup()
{
    center.reset();
    target.reset();
}

void PTHotKeyCenterTest::idsStartAtOneAndRise()
{
    const PTHotKeyPtr first = makeHotKey(u"first"_s);
    const PTHotKeyPtr second = makeHotKey(u"second"_s);

    QVERIFY(center->registerHotKey(first));
    QVERIFY(center->registerHotKey(second));

    QCOMPARE(first->carbonHotKeyID(), 1U);
    QCOMPARE(second->carbonHotKeyID(), 2U);
    QVERIFY(first->carbonEventHotKeyRef() != EventHotKeyRef::Null);
    QVERIFY(first->carbonEventHotKeyRef() != second->carbonEventHotKeyRef());
}

void PTHotKeyCenterTest::registeringAgainTakesANewId()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));
    QCOMPARE(hotKey->carbonHotKeyID(), 1U);

    QVERIFY(center->registerHotKey(hotKey));

    QCOMPARE(hotKey->carbonHotKeyID(), 2U);
    QCOMPARE(center->allHotKeys().size(), 1);
    QCOMPARE(desktop->grabs().size(), 1U);
    QVERIFY(desktop->grabs().contains(2));
}

void PTHotKeyCenterTest::desktopIsAskedWithTheCombosNumbers()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"VTAddEventKeyCode"_s);
    hotKey->setName(u"New event"_s);
    hotKey->setDesktopAction(u"new-event"_s);

    QVERIFY(center->registerHotKey(hotKey));

    const RecordingHotKeys::Grab &grab = desktop->grabs().at(1);
    QCOMPARE(grab.virtualKey, keyK);
    QCOMPARE(grab.modifiers, 0x0900U);
    QCOMPARE(grab.label.identifier, u"VTAddEventKeyCode"_s);
    QCOMPARE(grab.label.name, u"New event"_s);
    QCOMPARE(grab.label.desktopAction, u"new-event"_s);
}

void PTHotKeyCenterTest::allModifierBitsReachTheDesktopAsThirtyTwo()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    hotKey->setKeyCombo(PTKeyCombo::keyComboWithKeyCode_modifiers(5, ~quint64(0)));

    QVERIFY(center->registerHotKey(hotKey));

    QCOMPARE(desktop->grabs().at(1).modifiers, 0xFFFFFFFFU);
}

void PTHotKeyCenterTest::invalidComboIsSuccessAndRegistersNothing_data()
{
    QTest::addColumn<qint64>("keyCode");
    QTest::addColumn<quint64>("modifierBits");

    QTest::newRow("clear") << qint64(-1) << ~quint64(0);
    QTest::newRow("no modifiers") << qint64(keyK) << quint64(0);
    QTest::newRow("no key") << qint64(-1) << modifiers;
}

void PTHotKeyCenterTest::invalidComboIsSuccessAndRegistersNothing()
{
    QFETCH(const qint64, keyCode);
    QFETCH(const quint64, modifierBits);
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    hotKey->setKeyCombo(PTKeyCombo::keyComboWithKeyCode_modifiers(keyCode, modifierBits));

    QVERIFY(center->registerHotKey(hotKey));

    QVERIFY(center->allHotKeys().isEmpty());
    QVERIFY(desktop->attemptedIds().isEmpty());
    QCOMPARE(hotKey->carbonHotKeyID(), 0U);
    // It was no attempt, so it used up no id.
    const PTHotKeyPtr next = makeHotKey(u"next"_s);
    QVERIFY(center->registerHotKey(next));
    QCOMPARE(next->carbonHotKeyID(), 1U);
}

void PTHotKeyCenterTest::invalidComboUnregistersWhatWasRegistered()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));

    hotKey->setKeyCombo(nullptr);
    QVERIFY(center->registerHotKey(hotKey));

    QVERIFY(center->allHotKeys().isEmpty());
    QVERIFY(desktop->grabs().empty());
    QCOMPARE(hotKey->carbonHotKeyID(), 0U);
    QCOMPARE(hotKey->carbonEventHotKeyRef(), EventHotKeyRef::Null);
}

void PTHotKeyCenterTest::refusalUsesUpItsId()
{
    const PTHotKeyPtr refused = makeHotKey(u"refused"_s);
    const PTHotKeyPtr granted = makeHotKey(u"granted"_s);
    desktop->refuseGrabs(u"Taken."_s);
    QVERIFY(!center->registerHotKey(refused));
    desktop->allowGrabs();

    QVERIFY(center->registerHotKey(granted));

    QCOMPARE(granted->carbonHotKeyID(), 2U);
    QCOMPARE(desktop->attemptedIds(), (QList<quint32> { 1, 2 }));
}

void PTHotKeyCenterTest::refusalLeavesIdAndHandleAsTheyWere()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    constexpr EventHotKeyRef previousHandle { 4711 };
    hotKey->setCarbonHotKeyID(4711);
    hotKey->setCarbonEventHotKeyRef(previousHandle);
    desktop->refuseGrabs(u"Taken."_s);

    QVERIFY(!center->registerHotKey(hotKey));

    QCOMPARE(hotKey->carbonHotKeyID(), 4711U);
    QCOMPARE(hotKey->carbonEventHotKeyRef(), previousHandle);
    QVERIFY(center->allHotKeys().isEmpty());
}

void PTHotKeyCenterTest::refusalOfARegisteredOneLeavesItUnregistered()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));
    desktop->refuseGrabs(u"Taken."_s);

    QVERIFY(!center->registerHotKey(hotKey));

    QCOMPARE(hotKey->carbonHotKeyID(), 0U);
    QCOMPARE(hotKey->carbonEventHotKeyRef(), EventHotKeyRef::Null);
    QVERIFY(desktop->grabs().empty());
}

void PTHotKeyCenterTest::unregisteringForgetsIdAndHandle()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    const PTHotKeyPtr other = makeHotKey(u"other"_s);
    QVERIFY(center->registerHotKey(hotKey));
    QVERIFY(center->registerHotKey(other));

    center->unregisterHotKey(hotKey);

    QCOMPARE(hotKey->carbonHotKeyID(), 0U);
    QCOMPARE(hotKey->carbonEventHotKeyRef(), EventHotKeyRef::Null);
    QCOMPARE(center->allHotKeys(), QList<PTHotKeyPtr> { other });
    QVERIFY(!desktop->grabs().contains(1));
    QVERIFY(desktop->grabs().contains(2));
}

void PTHotKeyCenterTest::unregisteringWhatIsNotRegisteredDoesNothing()
{
    const PTHotKeyPtr never = makeHotKey(u"never"_s);
    const PTHotKeyPtr twice = makeHotKey(u"twice"_s);
    const PTHotKeyPtr other = makeHotKey(u"other"_s);
    QVERIFY(center->registerHotKey(twice));
    QVERIFY(center->registerHotKey(other));
    never->setCarbonHotKeyID(2);
    never->setCarbonEventHotKeyRef(other->carbonEventHotKeyRef());

    center->unregisterHotKey(never);
    center->unregisterHotKey(twice);
    center->unregisterHotKey(twice);
    center->unregisterHotKey(nullptr);

    QCOMPARE(center->allHotKeys(), QList<PTHotKeyPtr> { other });
    QVERIFY(desktop->grabs().contains(2));
}

void PTHotKeyCenterTest::unregisteringByALookUpKeepsTheHotKeyAlive()
{
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));

    center->unregisterHotKey(center->hotKeyWithIdentifier(u"show"_s));

    QVERIFY(center->allHotKeys().isEmpty());
    center->unregisterHotKey(center->hotKeyWithIdentifier(u"show"_s));
}

void PTHotKeyCenterTest::handlerIsInstalledOnceAndStays()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));
    QCOMPARE(desktop->pressListeners(), 1);

    center->unregisterHotKey(hotKey);
    QCOMPARE(desktop->pressListeners(), 1);
    QVERIFY(center->registerHotKey(hotKey));
    QVERIFY(center->registerHotKey(makeHotKey(u"other"_s)));

    QCOMPARE(desktop->pressListeners(), 1);
    QCOMPARE(desktop->releaseListeners(), 1);
    desktop->press(2);
    QCOMPARE(target->senders.size(), 1);
}

void PTHotKeyCenterTest::noHandlerBeforeTheFirstRegistration()
{
    QVERIFY(center->registerHotKey(std::make_shared<PTHotKey>()));

    QCOMPARE(desktop->pressListeners(), 0);
}

void PTHotKeyCenterTest::pressSendsTheActionOnceWithTheHotKey()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(makeHotKey(u"other"_s)));
    QVERIFY(center->registerHotKey(hotKey));

    desktop->press(2);

    QCOMPARE(target->senders, QList<QObject *> { hotKey.get() });
}

void PTHotKeyCenterTest::releaseDoesNothing()
{
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));
    desktop->press(1);

    desktop->releaseKeys(1);

    QCOMPARE(target->senders.size(), 1);
}

void PTHotKeyCenterTest::pressOfAnUnregisteredOneDoesNothing()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));
    center->unregisterHotKey(hotKey);

    desktop->press(1);
    desktop->press(99);

    QVERIFY(target->senders.isEmpty());
}

void PTHotKeyCenterTest::goneTargetIsNoHarm()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));
    target.reset();

    desktop->press(1);

    QCOMPARE(hotKey->target(), nullptr);
}

void PTHotKeyCenterTest::actionMayUnregisterItsHotKey()
{
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));
    target->center = center.get();

    desktop->press(1);

    QCOMPARE(target->senders.size(), 1);
    QVERIFY(center->allHotKeys().isEmpty());
}

void PTHotKeyCenterTest::hotKeyIsFoundByIdentifier()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(makeHotKey(u"other"_s)));
    QVERIFY(center->registerHotKey(hotKey));

    QCOMPARE(center->hotKeyWithIdentifier(u"show"_s), hotKey);
    QCOMPARE(center->hotKeyWithIdentifier(u"Show"_s), nullptr);
}

void PTHotKeyCenterTest::nilIdentifierFindsNothing()
{
    QVERIFY(center->registerHotKey(makeHotKey(QString())));

    QCOMPARE(center->hotKeyWithIdentifier(QString()), nullptr);
    QCOMPARE(center->hotKeyWithIdentifier(u""_s), nullptr);
}

void PTHotKeyCenterTest::hotKeyIsFoundByHandleAndById()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(makeHotKey(u"other"_s)));
    QVERIFY(center->registerHotKey(hotKey));

    QCOMPARE(center->_hotKeyForCarbonHotKey(hotKey->carbonEventHotKeyRef()), hotKey);
    QCOMPARE(center->_hotKeyForCarbonHotKey(EventHotKeyRef { 99 }), nullptr);
    // The signature is not looked at.
    QCOMPARE(center->_hotKeyForCarbonHotKeyID({ .signature = 0, .id = 2 }), hotKey);
    QCOMPARE(center->_hotKeyForCarbonHotKeyID({ .signature = HotKeyEvents::signature, .id = 3 }), nullptr);
}

void PTHotKeyCenterTest::allHotKeysHasTheRegisteredOnes()
{
    const PTHotKeyPtr first = makeHotKey(u"first"_s);
    const PTHotKeyPtr second = makeHotKey(u"second"_s);
    QVERIFY(center->registerHotKey(first));
    QVERIFY(center->registerHotKey(second));

    const QList<PTHotKeyPtr> all = center->allHotKeys();

    QCOMPARE(all.size(), 2);
    QVERIFY(all.contains(first) && all.contains(second));
}

void PTHotKeyCenterTest::carbonEventsAreChecked_data()
{
    QTest::addColumn<quint32>("eventClass");
    QTest::addColumn<quint32>("kind");
    QTest::addColumn<quint32>("signature");
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("line");

    constexpr quint32 keyboard = 0x6B657962;
    constexpr quint32 ours = 0x5054486B;
    QTest::newRow("class") << 1U << 5U << ours << 1U << u"Unknown event class"_s << 221;
    QTest::newRow("class before everything else") << 1U << 9U << 1U << 0U << u"Unknown event class"_s << 221;
    QTest::newRow("signature") << keyboard << 5U << 1U << 1U << u"Invalid hot key id"_s << 234;
    QTest::newRow("id") << keyboard << 5U << ours << 0U << u"Invalid hot key id"_s << 235;
    QTest::newRow("signature before id") << keyboard << 5U << 1U << 0U << u"Invalid hot key id"_s << 234;
    QTest::newRow("kind") << keyboard << 7U << ours << 1U << u"Unknown event kind"_s << 250;
}

void PTHotKeyCenterTest::carbonEventsAreChecked()
{
    QFETCH(const quint32, eventClass);
    QFETCH(const quint32, kind);
    QFETCH(const quint32, signature);
    QFETCH(const quint32, id);
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));

    try {
        center->sendCarbonEvent(
            { .eventClass = eventClass, .eventKind = kind, .directObject = { .signature = signature, .id = id } });
        QFAIL("nothing was thrown");
    } catch (const AssertionFailure &failure) {
        QTEST(failure.message(), "message");
        QCOMPARE(failure.sourceName(), u"External classes/PTHotKey/PTHotKeyCenter"_s);
        QTEST(failure.line(), "line");
    }
    QVERIFY(target->senders.isEmpty());
}

void PTHotKeyCenterTest::missingIdentityReturnsItsStatus()
{
    constexpr OSStatus parameterNotFound = -9870;

    QCOMPARE(center->sendCarbonEvent({ .eventClass = HotKeyEvents::keyboardClass,
                 .eventKind = 99,
                 .directObject = {},
                 .directObjectStatus = parameterNotFound }),
        parameterNotFound);
}

void PTHotKeyCenterTest::checksGoOnUnderAForgivingHandler()
{
    class Counting final : public AssertionHandler
    {
    public:
        void handleFailure(const QString & /*message*/, const QString & /*sourceName*/, int line) override
        {
            lines.append(line);
        }
        QList<int> lines;
    } counting;
    const ScopedAssertionHandler scope(counting);

    QCOMPARE(center->sendCarbonEvent({ .eventClass = 1, .eventKind = 7, .directObject = {} }), noErr);

    QCOMPARE(counting.lines, (QList<int> { 221, 234, 235, 250 }));
}

void PTHotKeyCenterTest::carbonPressInvokesAndReturnsNoError()
{
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));
    CarbonEvent event { .eventClass = HotKeyEvents::keyboardClass,
        .eventKind = HotKeyEvents::hotKeyPressed,
        .directObject = { .signature = HotKeyEvents::signature, .id = 1 } };

    QCOMPARE(center->sendCarbonEvent(event), noErr);
    QCOMPARE(target->senders.size(), 1);
    event.eventKind = HotKeyEvents::hotKeyReleased;
    QCOMPARE(center->sendCarbonEvent(event), noErr);
    QCOMPARE(target->senders.size(), 1);
}

void PTHotKeyCenterTest::applicationEventsReachTheirHotKey_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("subtype");
    QTest::addColumn<quint64>("handle");
    QTest::addColumn<int>("actions");

    QTest::newRow("press") << 14 << 6 << quint64(1) << 1;
    QTest::newRow("release") << 14 << 9 << quint64(1) << 0;
    QTest::newRow("other subtype") << 14 << 7 << quint64(1) << 0;
    QTest::newRow("other type") << 13 << 6 << quint64(1) << 0;
    QTest::newRow("no handle") << 14 << 6 << quint64(0) << 0;
    QTest::newRow("unknown handle") << 14 << 6 << quint64(99) << 0;
}

void PTHotKeyCenterTest::applicationEventsReachTheirHotKey()
{
    QFETCH(const int, type);
    QFETCH(const int, subtype);
    QFETCH(const quint64, handle);
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));

    center->sendEvent({ .type = type, .subtype = subtype, .data1 = EventHotKeyRef { handle } });

    QTEST(int(target->senders.size()), "actions");
}

void PTHotKeyCenterTest::statusIsThatOfTheDesktop()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    QVERIFY(center->registerHotKey(hotKey));
    QCOMPARE(center->status(u"show"_s, *hotKey->keyCombo()), HotKeyStatus::active());

    desktop->setStatus(1, HotKeyStatus::notOffered(u"show"_s));

    QCOMPARE(center->status(u"show"_s, *hotKey->keyCombo()), HotKeyStatus::notOffered(u"show"_s));
}

void PTHotKeyCenterTest::statusOfARefusedOneTellsWhy()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    desktop->refuseGrabs(u"Taken."_s);
    QVERIFY(!center->registerHotKey(hotKey));
    QCOMPARE(center->status(u"show"_s, *hotKey->keyCombo()), HotKeyStatus::refused(u"Taken."_s));

    desktop->allowGrabs();
    QVERIFY(center->registerHotKey(hotKey));

    QCOMPARE(center->status(u"show"_s, *hotKey->keyCombo()), HotKeyStatus::active());
}

void PTHotKeyCenterTest::statusOfAnotherComboIsUnset()
{
    const PTHotKeyPtr hotKey = makeHotKey(u"show"_s);
    desktop->refuseGrabs(u"Taken."_s);
    QVERIFY(!center->registerHotKey(hotKey));

    QCOMPARE(center->status(u"show"_s, *PTKeyCombo::clearKeyCombo()), HotKeyStatus());
    QCOMPARE(center->status(u"other"_s, *hotKey->keyCombo()), HotKeyStatus());
}

void PTHotKeyCenterTest::statusChangesAreToldByIdentifier()
{
    QSignalSpy changes(center.get(), &PTHotKeyCenter::statusChanged);
    QVERIFY(center->registerHotKey(makeHotKey(u"show"_s)));
    desktop->setStatus(1, HotKeyStatus::waitingForDesktop());
    desktop->refuseGrabs(u"Taken."_s);
    QVERIFY(!center->registerHotKey(makeHotKey(u"other"_s)));
    center->unregisterHotKey(center->hotKeyWithIdentifier(u"show"_s));

    QStringList told;
    for (const QList<QVariant> &change : changes)
        told << change.first().toString();

    QCOMPARE(told, (QStringList { u"show"_s, u"show"_s, u"other"_s, u"show"_s }));
}

void PTHotKeyCenterTest::sharedCenterIsAlwaysTheSame()
{
    PTHotKeyCenter &shared = PTHotKeyCenter::sharedCenter();

    QCOMPARE(&PTHotKeyCenter::sharedCenter(), &shared);
}

VANTLE_TEST(PTHotKeyCenterTest)
#include "PTHotKeyCenterTest.moc"
