// SPDX-License-Identifier: MIT
#include "ApplicationFixture.h"

#include <TestRegistry.h>
#include <VTAboutWindow.h>
#include <VTFeedbackWindow.h>
#include <VTMainMenu.h>
#include <VTPreferencesWindow.h>

#include <QAction>
#include <QFile>
#include <QPlainTextEdit>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

struct ProgramFixture : ApplicationFixture {
    QString tracePath = folder.filePath(u"crash-trace.txt"_s);
    std::unique_ptr<VTAppController> app;

    void leaveTrace() const
    {
        QFile trace(tracePath);
        if (!trace.open(QIODevice::WriteOnly))
            qFatal("No trace");
        trace.write("Vantle 1\nsignal 11\nframe 0x1 main+0x2\n");
    }
    void start(const DesktopEntries::Folders &programs = {})
    {
        VTAppController::Services appServices = ApplicationFixture::appServices();
        appServices.help.crashReport = CrashReportFile(tracePath);
        appServices.help.softwareCentre = SoftwareCentre(DesktopEntries(programs));
        app = std::make_unique<VTAppController>(appServices);
        app->awakeFromNib();
    }
    QAction *command(const char *name) const { return app->mainWindow()->menu()->command(name); }
    template <typename Window> Window *shown(const QString &name = {}) const
    {
        auto *const found = app->mainWindow()->findChild<Window *>(name);
        return found && found->isVisible() ? found : nullptr;
    }
};

} // namespace

class VTProgramWindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void menuOpensEachWindowOnce_data();
    void menuOpensEachWindowOnce();
    void messageBeingWrittenIsKept();
    void startWithoutCrashOffersNothing();
    void crashIsOfferedAtTheNextStartAlone();
    void updatesAreOfferedWhereThereIsASoftwareCentre();
    void calendarApplicationIsBroughtToTheFront();
};

void VTProgramWindowsTest::menuOpensEachWindowOnce_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("window");

    QTest::newRow("preferences") << QByteArray("showPreferences") << u"preferencesWindow"_s;
    QTest::newRow("about") << QByteArray("showAbout") << u"aboutWindow"_s;
    QTest::newRow("feedback") << QByteArray("showFeedbackWindow") << u"feedbackWindow"_s;
}

void VTProgramWindowsTest::menuOpensEachWindowOnce()
{
    QFETCH(const QByteArray, command);
    QFETCH(const QString, window);
    ProgramFixture fixture;
    fixture.start();
    const auto count = [&window] {
        return std::ranges::count_if(QApplication::topLevelWidgets(),
            [&window](const QWidget *each) { return each->isVisible() && each->objectName() == window; });
    };
    QCOMPARE(count(), 0);

    fixture.command(command.constData())->trigger();
    fixture.command(command.constData())->trigger();

    QCOMPARE(count(), 1);
    QCOMPARE(fixture.presence.calls.last(), QString(u"bringToFront "_s + window));
}

void VTProgramWindowsTest::messageBeingWrittenIsKept()
{
    ProgramFixture fixture;
    fixture.start();
    fixture.command("showFeedbackWindow")->trigger();
    auto *const window = fixture.shown<VTFeedbackWindow>();
    QVERIFY(window);
    window->findChild<QPlainTextEdit *>(u"message"_s)->setPlainText(u"It is"_s);

    fixture.command("showFeedbackWindow")->trigger();

    QVERIFY(window->report().startsWith(u"It is\n"_s));
    QVERIFY(window->report().contains(u"Vantle: "_s));
}

void VTProgramWindowsTest::startWithoutCrashOffersNothing()
{
    ProgramFixture fixture;

    fixture.start();

    QVERIFY(!fixture.shown<VTFeedbackWindow>());
}

void VTProgramWindowsTest::crashIsOfferedAtTheNextStartAlone()
{
    ProgramFixture fixture;
    fixture.leaveTrace();

    fixture.start();
    const auto *window = fixture.shown<VTFeedbackWindow>(u"crashReportWindow"_s);
    QVERIFY(window);
    QVERIFY(window->report().contains(u"Ended by signal 11 SIGSEGV\n  0  main + 0x2"_s));
    QVERIFY(!QFile::exists(fixture.tracePath));

    fixture.start();
    QVERIFY(!fixture.shown<VTFeedbackWindow>());
}

void VTProgramWindowsTest::updatesAreOfferedWhereThereIsASoftwareCentre()
{
    const QTemporaryDir programs;
    ProgramFixture fixture;
    fixture.start({ .configurations = {}, .applications = { programs.path() }, .desktops = {} });
    Q_EMIT fixture.app->mainWindow()->menu()->aboutToShow();
    QVERIFY(!fixture.command("checkForUpdates")->isVisible());

    QFile entry(programs.filePath(u"centre.desktop"_s));
    QVERIFY(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nExec=true %U\n");
    entry.close();
    QFile cache(programs.filePath(u"mimeinfo.cache"_s));
    QVERIFY(cache.open(QIODevice::WriteOnly));
    cache.write("[MIME Cache]\nx-scheme-handler/appstream=centre.desktop;\n");
    cache.close();
    Q_EMIT fixture.app->mainWindow()->menu()->aboutToShow();

    QVERIFY(fixture.command("checkForUpdates")->isVisible());
}

void VTProgramWindowsTest::calendarApplicationIsBroughtToTheFront()
{
    ProgramFixture fixture;
    fixture.start();
    QVERIFY(fixture.command("launchICal")->isVisible());

    fixture.command("launchICal")->trigger();

    QCOMPARE(fixture.calendarApplication.commands(), QStringList { u"activate"_s });
}

VANTLE_TEST(VTProgramWindowsTest)
#include "VTProgramWindowsTest.moc"
