// SPDX-License-Identifier: MIT
#include "ApplicationFixture.h"

#include <ModifierFlags.h>
#include <TestRegistry.h>
#include <VTSettings.h>

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

// From the settings to the recorders, from there to the desktop, and back at the end.
class VTHotKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startUpRegistersTheStoredCombinations();
    void startUpPreparesTheRecorders();
    void storedCombinationWithoutModifiersIsNotRegistered();
    void newCombinationTakesThePlaceOfTheOldOne();
    void clearedHotKeyIsUnregisteredAndSavedAsSuch();
    void refusedHotKeyIsToldAndSaved();
    void hotKeysOpenSheets();
    void timeOfThePressReachesTheWindowManager();
    void endGivesAllHotKeysBack();
    void sessionThatMayEndKeepsThem();
    void endWritesTheEightSettings();
    void hotKeysAreGivenBackBeforeTheShellWritesItsOwn();
    void missingFactorySettingsRegisterNothing();
};

void VTHotKeysTest::startUpRegistersTheStoredCombinations()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    constexpr quint32 optionControl = CarbonModifier::option | CarbonModifier::control;
    const std::pair<QString, int> expected[] { { VTHotkeyKeyCodeKey, 9 }, { VTAddEventKeyCodeKey, 14 },
        { VTAddTaskKeyCodeKey, 45 } };
    for (const auto &[identifier, keyCode] : expected) {
        const RecordingHotKeys::Grab *grab = fixture.grab(identifier);
        QVERIFY(grab);
        QCOMPARE(grab->virtualKey, keyCode);
        QCOMPARE(grab->modifiers, optionControl);
    }
    QCOMPARE(fixture.grab(VTHotkeyKeyCodeKey)->label.desktopAction, u"toggle"_s);
    QCOMPARE(fixture.grab(VTAddEventKeyCodeKey)->label.desktopAction, u"new-event"_s);
    QCOMPARE(fixture.grab(VTAddTaskKeyCodeKey)->label.desktopAction, u"new-todo"_s);
}

void VTHotKeysTest::startUpPreparesTheRecorders()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    const SRKeyCombo stored { CocoaModifier::option | CocoaModifier::control, 9 };
    QCOMPARE(app.showAppShortcutRecorder()->keyCombo(), stored);
    QCOMPARE(app.addEventShortcutRecorder()->keyCombo().code, 14);
    QCOMPARE(app.addTaskShortcutRecorder()->keyCombo().code, 45);
    for (const SRRecorderControl *recorder :
        { app.showAppShortcutRecorder(), app.addEventShortcutRecorder(), app.addTaskShortcutRecorder() })
        QCOMPARE(recorder->allowedFlags(), CocoaModifier::all);
}

void VTHotKeysTest::storedCombinationWithoutModifiersIsNotRegistered()
{
    ApplicationFixture fixture;
    fixture.defaults.setInteger_forKey(0, VTAddEventCarbonModiferFlagsKey);
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    QVERIFY(!fixture.grab(VTAddEventKeyCodeKey));
    QCOMPARE(fixture.hotKeys->grabs().size(), 2U);
}

void VTHotKeysTest::newCombinationTakesThePlaceOfTheOldOne()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.addTaskShortcutRecorder()->setKeyCombo({ CocoaModifier::command | CocoaModifier::shift, 40 });

    QCOMPARE(fixture.hotKeys->grabs().size(), 3U);
    QCOMPARE(fixture.grab(VTAddTaskKeyCodeKey)->virtualKey, 40);
    QCOMPARE(fixture.grab(VTAddTaskKeyCodeKey)->modifiers, quint32(CarbonModifier::command | CarbonModifier::shift));
    QCOMPARE(fixture.grab(VTAddEventKeyCodeKey)->virtualKey, 14);
}

void VTHotKeysTest::clearedHotKeyIsUnregisteredAndSavedAsSuch()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.addEventShortcutRecorder()->clear();
    QVERIFY(!fixture.grab(VTAddEventKeyCodeKey));

    Q_EMIT fixture.termination.willTerminate();
    const UserDefaults next(fixture.folder.filePath(u"vantle.conf"_s));
    QCOMPARE(next.integerForKey(VTAddEventKeyCodeKey), -1);
    QCOMPARE(next.integerForKey(VTHotkeyKeyCodeKey), 9);
}

void VTHotKeysTest::refusedHotKeyIsToldAndSaved()
{
    ApplicationFixture fixture;
    fixture.hotKeys->refuseGrabs(u"Somebody has it."_s);
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    const HotKeyStatus status = fixture.center.status(VTHotkeyKeyCodeKey,
        *PTKeyCombo::keyComboWithKeyCode_modifiers(9, CarbonModifier::option | CarbonModifier::control));
    QCOMPARE(status.kind, HotKeyStatus::Kind::Refused);

    Q_EMIT fixture.termination.willTerminate();
    QCOMPARE(fixture.defaults.integerForKey(VTHotkeyKeyCodeKey), 9);
}

void VTHotKeysTest::hotKeysOpenSheets()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    fixture.press(VTAddEventKeyCodeKey);

    QVERIFY(app.mainWindowController()->eventEditController()->isOpen());
    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);
}

void VTHotKeysTest::timeOfThePressReachesTheWindowManager()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    fixture.hotKeys->setTimeOfPresses(4711);

    fixture.press(VTHotkeyKeyCodeKey);

    QCOMPARE(fixture.presence.tokens, QList { ActivationToken::fromUserTime(4711) });
}

void VTHotKeysTest::endGivesAllHotKeysBack()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    Q_EMIT fixture.termination.willTerminate();

    QVERIFY(fixture.hotKeys->grabs().empty());
}

void VTHotKeysTest::sessionThatMayEndKeepsThem()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    app.setIconStatus(VTInTaskBarOnly);
    app.mainWindowController()->setTaskSortMethod(2);

    Q_EMIT fixture.termination.sessionMayEnd();

    QCOMPARE(fixture.hotKeys->grabs().size(), 3U);
    const UserDefaults next(fixture.folder.filePath(u"vantle.conf"_s));
    QCOMPARE(next.integerForKey(VTIconStatusKey), 1);
    QCOMPARE(next.integerForKey(VTSelectedTaskSortMethodKey), 2);
}

void VTHotKeysTest::endWritesTheEightSettings()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    app.setIconStatus(VTInMenuBarOnly);
    app.setHidesWhenInactive(true);
    app.showAppShortcutRecorder()->setKeyCombo({ CocoaModifier::command, 0 });
    app.addEventShortcutRecorder()->setKeyCombo({ CocoaModifier::shift | CocoaModifier::control, 122 });

    Q_EMIT fixture.termination.willTerminate();

    const UserDefaults next(fixture.folder.filePath(u"vantle.conf"_s));
    QCOMPARE(next.integerForKey(VTIconStatusKey), 2);
    QVERIFY(next.boolForKey(VTHidesWhenInactiveKey));
    QCOMPARE(next.integerForKey(VTHotkeyKeyCodeKey), 0);
    QCOMPARE(next.integerForKey(VTHotkeyCarbonModiferFlagsKey), qint64(CarbonModifier::command));
    QCOMPARE(next.integerForKey(VTAddEventKeyCodeKey), 122);
    QCOMPARE(
        next.integerForKey(VTAddEventCarbonModiferFlagsKey), qint64(CarbonModifier::shift | CarbonModifier::control));
    QCOMPARE(next.integerForKey(VTAddTaskKeyCodeKey), 45);
    QCOMPARE(
        next.integerForKey(VTAddTaskCarbonModiferFlagsKey), qint64(CarbonModifier::option | CarbonModifier::control));
}

void VTHotKeysTest::hotKeysAreGivenBackBeforeTheShellWritesItsOwn()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    app.setIconStatus(VTInTaskBarOnly);
    app.mainWindowController()->setTaskSortMethod(2);
    std::optional<qint64> writtenByThen;
    connect(&fixture.center, &PTHotKeyCenter::statusChanged, &fixture.termination, [&] {
        if (fixture.center.allHotKeys().isEmpty())
            writtenByThen = fixture.defaults.integerForKey(VTIconStatusKey);
    });

    app.applicationWillTerminate();

    QCOMPARE(writtenByThen, std::optional<qint64>(0));
    QCOMPARE(fixture.defaults.integerForKey(VTIconStatusKey), 1);
    // The window's settings come after that.
    QCOMPARE(fixture.defaults.integerForKey(VTSelectedTaskSortMethodKey), 0);
}

void VTHotKeysTest::missingFactorySettingsRegisterNothing()
{
    ApplicationFixture fixture;
    // As absent values read.
    for (const QString &key : { VTHotkeyKeyCodeKey, VTAddEventKeyCodeKey, VTAddTaskKeyCodeKey,
             VTHotkeyCarbonModiferFlagsKey, VTAddEventCarbonModiferFlagsKey, VTAddTaskCarbonModiferFlagsKey })
        fixture.defaults.setInteger_forKey(0, key);
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    QVERIFY(fixture.hotKeys->grabs().empty());
    QCOMPARE(app.iconStatus(), VTInTaskBarAndMenuBar);
}

VANTLE_TEST(VTHotKeysTest)
#include "VTHotKeysTest.moc"
