// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <TestRegistry.h>
#include <VTSettings.h>

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class VTSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyHasAFactoryValueOfItsType_data();
    void everyKeyHasAFactoryValueOfItsType();
    void factoryValuesAreNotWrittenToTheFile();
    void missingResourceRegistersNothing();
    void startUpReadsTheFiveSettings();
    void terminationWritesTheFiveSettings();
    void nothingIsWrittenBeforeTermination();
    void unknownSortMethodIsKept();
    void deletedCalendarsStayUnselected();
    void settingsOfTheShellKeepTheirStoredValues();
    void oddSettingsFileGivesFactoryValues_data();
    void oddSettingsFileGivesFactoryValues();
    void numberWherePeopleExpectASwitchReadsAsTrue();
    void unwritableFileDoesNotStopTheEnd();
};

void VTSettingsTest::everyKeyHasAFactoryValueOfItsType_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("sort method") << u"VTSelectedTaskSortMethod"_s << QVariant(0LL);
    QTest::newRow("restrict to week") << u"VTRestrictTasksToCurrentWeek"_s << QVariant(false);
    QTest::newRow("all completed") << u"VTIncludeAllCompletedTasks"_s << QVariant(false);
    QTest::newRow("hidden calendars") << u"VTUnselectedCalendarsUID"_s << QVariant(QStringList());
    QTest::newRow("drawer") << u"VTShowCalendarDrawer"_s << QVariant(false);
    QTest::newRow("hides when inactive") << u"VTHidesWhenInactive"_s << QVariant(false);
    QTest::newRow("icon status") << u"VTIconStatus"_s << QVariant(0LL);
    QTest::newRow("show key") << u"VTHotkeyKeyCode"_s << QVariant(9LL);
    QTest::newRow("show modifiers") << u"VTHotkeyCarbonModiferFlags"_s << QVariant(0x1800LL);
    QTest::newRow("event key") << u"VTAddEventKeyCode"_s << QVariant(14LL);
    QTest::newRow("event modifiers") << u"VTAddEventCarbonModiferFlags"_s << QVariant(0x1800LL);
    QTest::newRow("to-do key") << u"VTAddTaskKeyCode"_s << QVariant(45LL);
    QTest::newRow("to-do modifiers") << u"VTAddTaskCarbonModiferFlags"_s << QVariant(0x1800LL);
}

void VTSettingsTest::everyKeyHasAFactoryValueOfItsType()
{
    QFETCH(const QString, key);
    QFETCH(const QVariant, value);
    const MainWindowFixture fixture;

    const QVariant read = fixture.defaults.objectForKey(key);

    QCOMPARE(read.typeId(), value.typeId());
    QCOMPARE(read, value);
}

void VTSettingsTest::factoryValuesAreNotWrittenToTheFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"vantle.conf"_s);
    {
        UserDefaults defaults(path);
        VTAppController::initialize(defaults);
    }

    QVERIFY(!QFile::exists(path));
}

void VTSettingsTest::missingResourceRegistersNothing()
{
    const QTemporaryDir folder;
    UserDefaults defaults(folder.filePath(u"vantle.conf"_s));

    VTAppController::initialize(defaults, u":/nowhere.plist"_s);

    QVERIFY(!defaults.objectForKey(VTIconStatusKey).isValid());
    QCOMPARE(defaults.integerForKey(VTSelectedTaskSortMethodKey), 0);
    QVERIFY(!defaults.boolForKey(VTShowCalendarDrawerKey));
    QVERIFY(!defaults.arrayForKey(VTUnselectedCalendarsUIDKey));
}

void VTSettingsTest::startUpReadsTheFiveSettings()
{
    MainWindowFixture fixture;
    fixture.defaults.setBool_forKey(true, VTIncludeAllCompletedTasksKey);
    fixture.defaults.setBool_forKey(true, VTRestrictTasksToCurrentWeekKey);
    fixture.defaults.setArray_forKey(QStringList { u"Work"_s }, VTUnselectedCalendarsUIDKey);
    fixture.defaults.setInteger_forKey(1, VTSelectedTaskSortMethodKey);
    fixture.defaults.setBool_forKey(true, VTShowCalendarDrawerKey);

    const VTMainWindowController &controller = fixture.wake();

    QVERIFY(controller.showAllCompletedTasks());
    QVERIFY(controller.hideTasksDueAfterThisWeek());
    QCOMPARE(controller.unselectedCalendarsUID().value_or(QStringList()), QStringList { u"Work"_s });
    QCOMPARE(controller.taskSortMethod(), 1);
    QVERIFY(controller.showCalendarDrawer());
}

void VTSettingsTest::terminationWritesTheFiveSettings()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wake();
    controller.setShowAllCompletedTasks(true);
    controller.setHideTasksDueAfterThisWeek(true);
    controller.setUnselectedCalendarsUID(QStringList { u"Home"_s });
    controller.setTaskSortMethod(2);
    controller.setShowCalendarDrawer(true);

    Q_EMIT fixture.termination.willTerminate();
    QVERIFY(fixture.defaults.synchronize().isOk());

    const UserDefaults next(fixture.folder.filePath(u"vantle.conf"_s));
    QVERIFY(next.boolForKey(VTIncludeAllCompletedTasksKey));
    QVERIFY(next.boolForKey(VTRestrictTasksToCurrentWeekKey));
    QCOMPARE(next.arrayForKey(VTUnselectedCalendarsUIDKey).value_or(QStringList()), QStringList { u"Home"_s });
    QCOMPARE(next.integerForKey(VTSelectedTaskSortMethodKey), 2);
    QVERIFY(next.boolForKey(VTShowCalendarDrawerKey));
}

void VTSettingsTest::nothingIsWrittenBeforeTermination()
{
    MainWindowFixture fixture;
    fixture.wake().setTaskSortMethod(2);

    QCOMPARE(fixture.defaults.integerForKey(VTSelectedTaskSortMethodKey), 0);
    QVERIFY(!QFile::exists(fixture.folder.filePath(u"vantle.conf"_s)));
}

void VTSettingsTest::unknownSortMethodIsKept()
{
    MainWindowFixture fixture;
    fixture.defaults.setInteger_forKey(7, VTSelectedTaskSortMethodKey);
    fixture.addTask("b");
    fixture.addTask("a");

    const VTMainWindowController &controller = fixture.wake();
    Q_EMIT fixture.termination.willTerminate();

    QCOMPARE(controller.taskSortMethod(), 7);
    QCOMPARE(uidsOf(controller.tasks()), (QStringList { u"a"_s, u"b"_s }));
    QCOMPARE(fixture.defaults.integerForKey(VTSelectedTaskSortMethodKey), 7);
}

void VTSettingsTest::deletedCalendarsStayUnselected()
{
    MainWindowFixture fixture;
    const QStringList unselected { u"deleted long ago"_s, u"Work"_s };
    fixture.defaults.setArray_forKey(unselected, VTUnselectedCalendarsUIDKey);
    fixture.addTask("shown");

    const VTMainWindowController &controller = fixture.wake();
    Q_EMIT fixture.termination.willTerminate();

    QCOMPARE(uidsOf(controller.tasks()), QStringList { u"shown"_s });
    QCOMPARE(fixture.defaults.arrayForKey(VTUnselectedCalendarsUIDKey).value_or(QStringList()), unselected);
}

void VTSettingsTest::settingsOfTheShellKeepTheirStoredValues()
{
    MainWindowFixture fixture;
    const QString path = fixture.folder.filePath(u"own.conf"_s);
    {
        UserDefaults earlier(path);
        VTAppController::initialize(earlier);
        // A hot key that the person has cleared.
        earlier.setInteger_forKey(-1, VTAddEventKeyCodeKey);
        earlier.setInteger_forKey(2, VTIconStatusKey);
    }
    {
        UserDefaults defaults(path);
        VTAppController::initialize(defaults);
        VTMainWindowServices services = fixture.services();
        VTMainWindowController controller({ services.store, defaults, services.clock, services.beeper,
            services.workspace, services.termination, services.alerts, services.fileChooser, services.sounds });
        controller.awakeFromNib();
        Q_EMIT fixture.termination.willTerminate();
    }

    UserDefaults later(path);
    VTAppController::initialize(later);
    QCOMPARE(later.integerForKey(VTAddEventKeyCodeKey), -1);
    QCOMPARE(later.integerForKey(VTIconStatusKey), 2);
    QCOMPARE(later.integerForKey(VTHotkeyKeyCodeKey), 9);
}

void VTSettingsTest::oddSettingsFileGivesFactoryValues_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << QByteArray("[General]\nVTSelectedTaskSort");
    QTest::newRow("binary") << QByteArray("\0\x01\xff\xfe[", 5);
    QTest::newRow("wrong types") << QByteArray(
        "[General]\nVTSelectedTaskSortMethod=by title\nVTIncludeAllCompletedTasks=@Point(1 2)\n"
        "VTShowCalendarDrawer=\nVTRestrictTasksToCurrentWeek=maybe\n");
}

void VTSettingsTest::oddSettingsFileGivesFactoryValues()
{
    QFETCH(const QByteArray, content);
    MainWindowFixture fixture;
    const QString path = fixture.folder.filePath(u"odd.conf"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    UserDefaults defaults(path);
    VTAppController::initialize(defaults);
    VTMainWindowServices services = fixture.services();

    VTMainWindowController controller({ services.store, defaults, services.clock, services.beeper, services.workspace,
        services.termination, services.alerts, services.fileChooser, services.sounds });
    controller.awakeFromNib();

    QCOMPARE(controller.taskSortMethod(), 0);
    QVERIFY(!controller.showAllCompletedTasks());
    QVERIFY(!controller.hideTasksDueAfterThisWeek());
    QVERIFY(!controller.showCalendarDrawer());
}

void VTSettingsTest::numberWherePeopleExpectASwitchReadsAsTrue()
{
    MainWindowFixture fixture;
    fixture.defaults.setInteger_forKey(5, VTIncludeAllCompletedTasksKey);

    QVERIFY(fixture.wake().showAllCompletedTasks());
}

void VTSettingsTest::unwritableFileDoesNotStopTheEnd()
{
    MainWindowFixture fixture;
    UserDefaults defaults(u"/proc/vantle/vantle.conf"_s);
    VTAppController::initialize(defaults);
    VTMainWindowServices services = fixture.services();
    VTMainWindowController controller({ services.store, defaults, services.clock, services.beeper, services.workspace,
        services.termination, services.alerts, services.fileChooser, services.sounds });
    controller.awakeFromNib();

    Q_EMIT fixture.termination.willTerminate();

    QVERIFY(!defaults.synchronize().isOk());
}

VANTLE_TEST(VTSettingsTest)
#include "VTSettingsTest.moc"
