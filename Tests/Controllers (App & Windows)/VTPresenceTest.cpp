// SPDX-License-Identifier: MIT
#include "ApplicationFixture.h"

#include <TestRegistry.h>
#include <VTPreferencesWindow.h>
#include <VTSettings.h>

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

// Hears how often a key was announced.
class KeyListener final : public KeyValueObserver
{
public:
    KeyListener(KeyValueObject &object, const QString &key)
    {
        object.addObserver_forKeyPath_options_context(this, key);
    }
    void observeValueForKeyPath_ofObject_change_context(
        const QString & /*keyPath*/, KeyValueObject * /*object*/, const KeyValueChange & /*change*/, void *) override
    {
        ++count;
    }
    int count = 0;
};

} // namespace

// Where the application shows itself, how it hides, and how it is brought back.
class VTPresenceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startUpFollowsTheStoredStatus_data();
    void startUpFollowsTheStoredStatus();
    void switchToTaskBarOnlyRemovesTheIcon();
    void switchToMenuBarOnlyNeedsARestart_data();
    void switchToMenuBarOnlyNeedsARestart();
    void switchBackFromMenuBarOnlyShowsTheEntryAtOnce();
    void taskBarEntryIsAskedForOncePerRun();
    void sameStatusKeepsTheIcon();
    void oddStatusShowsBothAndIsKept();
    void restartIsAnnouncedToThePreferences();
    void iconIsSetUp();
    void iconIsWhiteOnADarkDesktop();
    void pressOpensTheMenuAndTwoPressesShowTheWindow();
    void menuOffersWhatTheIconDoes();
    void menuCommandsWork();
    void hidingWhenInactiveConcernsBothWindows();
    void windowThatCannotComeBackDoesNotHideByItself();
    void choicesInThePreferencesWork();
    void preferencesKnowWhatTheDesktopLacks();
    void toggleHidesTheActiveApplication();
    void toggleShowsTheInactiveApplication();
    void reopeningAlwaysShowsTheWindow_data();
    void reopeningAlwaysShowsTheWindow();
    void filesAreNotOpened();
    void launcherActionsWork();
    void keyThatStartedTheProgramShowsIt();
    void launcherTokenReachesTheWindowManager();
    void keyWindowIsAnnouncedAnew();
    void closingTheWindowEndsOnlyWhatCannotComeBack_data();
    void closingTheWindowEndsOnlyWhatCannotComeBack();
};

void VTPresenceTest::startUpFollowsTheStoredStatus_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("hasEntry");
    QTest::addColumn<bool>("hasIcon");

    QTest::newRow("both") << 0 << true << true;
    QTest::newRow("task bar only") << 1 << true << false;
    QTest::newRow("menu bar only") << 2 << false << true;
}

void VTPresenceTest::startUpFollowsTheStoredStatus()
{
    QFETCH(const int, status);
    QFETCH(const bool, hasEntry);
    QFETCH(const bool, hasIcon);
    ApplicationFixture fixture;
    fixture.defaults.setInteger_forKey(status, VTIconStatusKey);
    VTAppController app(fixture.appServices());
    QVERIFY(!app.menuBarIcon());

    app.awakeFromNib();

    QCOMPARE(app.iconStatus(), status);
    QCOMPARE(app.dockIconIsVisibleNow(), hasEntry);
    QCOMPARE(fixture.presence.taskBarEntries, QList { hasEntry ? TaskBarEntry::Visible : TaskBarEntry::Hidden });
    QCOMPARE(app.menuBarIcon() != nullptr, hasIcon);
    QVERIFY(!app.restartRequired());
    QVERIFY(app.mainWindow()->isVisible());
}

void VTPresenceTest::switchToTaskBarOnlyRemovesTheIcon()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.setIconStatus(VTInTaskBarOnly);

    QVERIFY(!app.menuBarIcon());
    QVERIFY(!fixture.statusBar.latestItem);
    QVERIFY(app.dockIconIsVisibleNow());
    QVERIFY(!app.restartRequired());
}

void VTPresenceTest::switchToMenuBarOnlyNeedsARestart_data()
{
    QTest::addColumn<int>("before");

    QTest::newRow("from both") << 0;
    QTest::newRow("from task bar only") << 1;
}

void VTPresenceTest::switchToMenuBarOnlyNeedsARestart()
{
    QFETCH(const int, before);
    ApplicationFixture fixture;
    fixture.defaults.setInteger_forKey(before, VTIconStatusKey);
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.setIconStatus(VTInMenuBarOnly);

    QVERIFY(app.menuBarIcon());
    QVERIFY(app.restartRequired());
    QVERIFY(app.dockIconIsVisibleNow());
    QCOMPARE(fixture.presence.taskBarEntries, QList { TaskBarEntry::Visible });
}

void VTPresenceTest::switchBackFromMenuBarOnlyShowsTheEntryAtOnce()
{
    ApplicationFixture fixture;
    fixture.defaults.setInteger_forKey(VTInMenuBarOnly, VTIconStatusKey);
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.setIconStatus(VTInTaskBarAndMenuBar);

    QVERIFY(app.dockIconIsVisibleNow());
    QVERIFY(!app.restartRequired());
    QCOMPARE(fixture.presence.taskBarEntries, (QList { TaskBarEntry::Hidden, TaskBarEntry::Visible }));
    QVERIFY(fixture.presence.calls.contains(u"activate"_s));
}

void VTPresenceTest::taskBarEntryIsAskedForOncePerRun()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.setIconStatus(VTInMenuBarOnly);
    app.setIconStatus(VTInTaskBarAndMenuBar);

    QVERIFY(!app.restartRequired());
    QCOMPARE(fixture.presence.taskBarEntries, QList { TaskBarEntry::Visible });
}

void VTPresenceTest::sameStatusKeepsTheIcon()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    app.setIconStatus(VTInTaskBarAndMenuBar);
    app.setIconStatus(VTInMenuBarOnly);

    QCOMPARE(fixture.statusBar.itemsMade, 1);
}

void VTPresenceTest::oddStatusShowsBothAndIsKept()
{
    ApplicationFixture fixture;
    fixture.defaults.setInteger_forKey(9, VTIconStatusKey);
    VTAppController app(fixture.appServices());

    app.awakeFromNib();
    Q_EMIT fixture.termination.willTerminate();

    QVERIFY(app.menuBarIcon());
    QVERIFY(app.dockIconIsVisibleNow());
    QCOMPARE(fixture.defaults.integerForKey(VTIconStatusKey), 9);
}

void VTPresenceTest::restartIsAnnouncedToThePreferences()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const KeyListener listener(app, u"restartRequired"_s);
    const auto *note = app.preferencesWindow()->findChild<QWidget *>(u"presenceNote"_s);

    app.setIconStatus(VTInMenuBarOnly);

    QCOMPARE(listener.count, 1);
    QVERIFY(!note->isHidden());
    app.setIconStatus(VTInTaskBarOnly);
    QCOMPARE(listener.count, 2);
    QVERIFY(note->isHidden());
}

void VTPresenceTest::iconIsSetUp()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    const RecordingStatusItem &item = *fixture.statusBar.latestItem;
    QCOMPARE(item.target(), &app);
    QCOMPARE(item.action(), QByteArray("showStatusBarMenu"));
    QCOMPARE(item.doubleAction(), QByteArray("showWindowAndMakeActiveApp"));
    QCOMPARE(item.menu, app.statusbarMenu());
    const QList sizes = item.image.availableSizes();
    for (const int size : { 16, 22, 24, 32, 48 })
        QVERIFY(sizes.contains(QSize(size, size)));
}

void VTPresenceTest::iconIsWhiteOnADarkDesktop()
{
    const auto ink = [](const QIcon &icon) { return icon.pixmap(16, 16).toImage().pixelColor(7, 4); };
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    ApplicationFixture onLight;
    ApplicationFixture onDark(dark);
    VTAppController lightApp(onLight.appServices());
    VTAppController darkApp(onDark.appServices());

    lightApp.awakeFromNib();
    darkApp.awakeFromNib();

    QVERIFY(ink(onLight.statusBar.latestItem->image).lightness() < 80);
    QVERIFY(ink(onDark.statusBar.latestItem->image).lightness() > 220);
    // Highlighted it is white everywhere.
    QVERIFY(ink(onLight.statusBar.latestItem->alternateImage).lightness() > 220);
}

void VTPresenceTest::pressOpensTheMenuAndTwoPressesShowTheWindow()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    RecordingStatusItem &item = *fixture.statusBar.latestItem;

    item.press();
    QCOMPARE(item.poppedUpMenus, QList { app.statusbarMenu() });
    QVERIFY(!fixture.presence.calls.contains(u"bringToFront mainWindow"_s));

    item.pressTwice();
    QVERIFY(fixture.presence.calls.contains(u"bringToFront mainWindow"_s));
}

void VTPresenceTest::menuOffersWhatTheIconDoes()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    const QMenu *menu = app.statusbarMenu();

    QCOMPARE(menu->actions().constFirst()->objectName(), u"showVantle"_s);
    QCOMPARE(menu->defaultAction(), menu->actions().constFirst());
    QStringList names;
    for (const QAction *action : menu->actions()) {
        if (!action->isSeparator())
            names << action->objectName();
    }
    QCOMPARE(names,
        (QStringList {
            u"showVantle"_s, u"newEvent"_s, u"newTask"_s, u"goToToday"_s, u"showPreferences"_s, u"quit"_s }));
}

void VTPresenceTest::menuCommandsWork()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const auto use = [&](const QString &name) { app.statusbarMenu()->findChild<QAction *>(name)->trigger(); };

    use(u"showVantle"_s);
    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);

    app.mainWindowController()->setDate(localInstant("2026-11-25T10:00"));
    use(u"goToToday"_s);
    QCOMPARE(app.mainWindowController()->date().date(), QDate(2026, 11, 20));

    use(u"showPreferences"_s);
    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront preferencesWindow"_s);

    use(u"newEvent"_s);
    QVERIFY(app.mainWindowController()->eventEditController()->isOpen());
}

void VTPresenceTest::hidingWhenInactiveConcernsBothWindows()
{
    ApplicationFixture fixture;
    fixture.defaults.setBool_forKey(true, VTHidesWhenInactiveKey);
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const QMap<QString, bool> hidden { { u"mainWindow"_s, true }, { u"preferencesWindow"_s, true } };
    QVERIFY(app.hidesWhenInactive());
    QCOMPARE(fixture.presence.hidesOnDeactivate, hidden);

    app.setHidesWhenInactive(false);

    const QMap<QString, bool> shown { { u"mainWindow"_s, false }, { u"preferencesWindow"_s, false } };
    QCOMPARE(fixture.presence.hidesOnDeactivate, shown);
}

// No icon, no hot key, and no further start that could reach this one.
void VTPresenceTest::windowThatCannotComeBackDoesNotHideByItself()
{
    class Unreachable : public LauncherRequests
    {
    public:
        bool isReachable() const override { return false; }
    };
    ApplicationFixture fixture;
    fixture.defaults.setBool_forKey(true, VTHidesWhenInactiveKey);
    fixture.statusBar.setAvailable(false);
    fixture.hotKeys->refuseGrabs(u"taken"_s);
    Unreachable launcher;
    VTAppController::Services services = fixture.appServices();
    VTAppController app({ services.window, services.appearance, services.windowState, services.statusBar,
        services.hotKeyCenter, services.keyboardLayouts, launcher });
    app.awakeFromNib();
    QVERIFY(app.hidesWhenInactive());
    QVERIFY(!fixture.presence.hidesOnDeactivate[u"mainWindow"_s]);

    fixture.statusBar.setAvailable(true);

    QVERIFY(fixture.presence.hidesOnDeactivate[u"mainWindow"_s]);
}

void VTPresenceTest::choicesInThePreferencesWork()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const auto click
        = [&](const QString &name) { app.preferencesWindow()->findChild<QAbstractButton *>(name)->click(); };

    click(u"menuBarOnly"_s);
    click(u"hidesWhenInactive"_s);

    QCOMPARE(app.iconStatus(), VTInMenuBarOnly);
    QVERIFY(app.hidesWhenInactive());
}

void VTPresenceTest::preferencesKnowWhatTheDesktopLacks()
{
    ApplicationFixture fixture;
    fixture.statusBar.setAvailable(false);
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const auto *note = app.preferencesWindow()->findChild<QWidget *>(u"presenceNote"_s);
    QVERIFY(!note->isHidden());

    fixture.statusBar.setAvailable(true);

    QVERIFY(note->isHidden());
}

void VTPresenceTest::toggleHidesTheActiveApplication()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    fixture.presence.applicationIsActive = true;

    fixture.press(VTHotkeyKeyCodeKey);

    QCOMPARE(fixture.presence.calls.constLast(), u"hide"_s);
}

void VTPresenceTest::toggleShowsTheInactiveApplication()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    fixture.press(VTHotkeyKeyCodeKey);

    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);
}

void VTPresenceTest::reopeningAlwaysShowsTheWindow_data()
{
    QTest::addColumn<bool>("hasVisibleWindows");

    QTest::newRow("nothing to be seen") << false;
    QTest::newRow("something to be seen") << true;
}

void VTPresenceTest::reopeningAlwaysShowsTheWindow()
{
    QFETCH(const bool, hasVisibleWindows);
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    app.mainWindow()->setVisible(hasVisibleWindows);

    Q_EMIT fixture.launcher.activationRequested({});

    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);
    QVERIFY(!app.applicationShouldHandleReopen_hasVisibleWindows(qApp, hasVisibleWindows));
}

void VTPresenceTest::filesAreNotOpened()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();

    Q_EMIT fixture.launcher.openRequested({ u"file:///somewhere/x.ics"_s }, {});

    QVERIFY(!app.application_openFile(qApp, u"/somewhere/x.ics"_s));
    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);
    QVERIFY(fixture.alerts.messages.isEmpty());
}

void VTPresenceTest::launcherActionsWork()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const auto ask = [&](const QString &name) { Q_EMIT fixture.launcher.actionRequested(name, {}); };

    app.mainWindowController()->setDate(localInstant("2026-11-25T10:00"));
    ask(u"today"_s);
    QCOMPARE(app.mainWindowController()->date().date(), QDate(2026, 11, 20));
    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);

    ask(u"preferences"_s);
    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront preferencesWindow"_s);

    fixture.presence.applicationIsActive = true;
    ask(u"toggle"_s);
    QCOMPARE(fixture.presence.calls.constLast(), u"hide"_s);

    const int calls = static_cast<int>(fixture.presence.calls.size());
    ask(u"no such action"_s);
    QCOMPARE(fixture.presence.calls.size(), calls);

    ask(u"new-todo"_s);
    QVERIFY(app.mainWindowController()->taskEditController()->isOpen());
}

void VTPresenceTest::keyThatStartedTheProgramShowsIt()
{
    class Starting : public LauncherRequests
    {
    public:
        bool isStarting() const override { return true; }
    };
    ApplicationFixture fixture;
    Starting launcher;
    VTAppController::Services services = fixture.appServices();
    VTAppController app({ services.window, services.appearance, services.windowState, services.statusBar,
        services.hotKeyCenter, services.keyboardLayouts, launcher });
    app.awakeFromNib();
    fixture.presence.applicationIsActive = true;

    Q_EMIT launcher.actionRequested(u"toggle"_s, {});

    QCOMPARE(fixture.presence.calls.constLast(), u"bringToFront mainWindow"_s);
}

void VTPresenceTest::launcherTokenReachesTheWindowManager()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    const ActivationToken token { 42, "launcher_TIME42", "wayland" };

    Q_EMIT fixture.launcher.actionRequested(u"today"_s, token);

    QCOMPARE(fixture.presence.tokens, QList { token });
}

void VTPresenceTest::keyWindowIsAnnouncedAnew()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    QVERIFY(QTest::qWaitForWindowActive(app.mainWindow()));
    QVERIFY(app.mainWindowIsKeyWindow());
    const KeyListener listener(app, u"mainWindowIsKeyWindow"_s);

    app.showPreferences();
    QVERIFY(QTest::qWaitForWindowActive(app.preferencesWindow()));

    QCOMPARE(listener.count, 1);
    QVERIFY(!app.mainWindowIsKeyWindow());
}

void VTPresenceTest::closingTheWindowEndsOnlyWhatCannotComeBack_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("hasHost");
    QTest::addColumn<bool>("hasHotKeys");
    QTest::addColumn<bool>("ends");

    QTest::newRow("icon and hot keys") << 0 << true << true << false;
    QTest::newRow("icon only") << 0 << true << false << false;
    QTest::newRow("hot keys only") << 1 << true << true << false;
    QTest::newRow("icon that nobody shows") << 2 << false << false << true;
    QTest::newRow("neither") << 1 << true << false << true;
}

void VTPresenceTest::closingTheWindowEndsOnlyWhatCannotComeBack()
{
    QFETCH(const int, status);
    QFETCH(const bool, hasHost);
    QFETCH(const bool, hasHotKeys);
    QFETCH(const bool, ends);
    const bool before = QGuiApplication::quitOnLastWindowClosed();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    ApplicationFixture fixture;
    fixture.defaults.setInteger_forKey(status, VTIconStatusKey);
    fixture.statusBar.setAvailable(hasHost);
    if (!hasHotKeys)
        fixture.hotKeys->refuseGrabs(u"taken"_s);
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    QVERIFY(QTest::qWaitForWindowExposed(app.mainWindow()));
    const QSignalSpy quits(qApp, &QCoreApplication::aboutToQuit);

    QTimer::singleShot(0, app.mainWindow(), [&app] { app.mainWindow()->close(); });
    // Reached only when the close has ended nothing.
    QTimer::singleShot(0, qApp, [] { QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(7); }); });
    const int result = QApplication::exec();

    QCOMPARE(result, ends ? 0 : 7);
    QGuiApplication::setQuitOnLastWindowClosed(before);
}

VANTLE_TEST(VTPresenceTest)
#include "VTPresenceTest.moc"
