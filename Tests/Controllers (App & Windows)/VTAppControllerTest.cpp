// SPDX-License-Identifier: MIT
#include "ApplicationFixture.h"

#include <KLVTheme.h>
#include <TestRegistry.h>
#include <VTSettings.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStyleFactory>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 60 * 1000; // milliseconds; the program is built with checks

// The real program, offscreen, in a home of its own.
class RunningVantle final
{
public:
    explicit RunningVantle(const QTemporaryDir &home)
        : m_home(home.path())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, m_home);
        environment.insert(u"XDG_CONFIG_HOME"_s, m_home + u"/config"_s);
        environment.insert(u"XDG_DATA_HOME"_s, m_home + u"/data"_s);
        environment.insert(u"XDG_STATE_HOME"_s, m_home + u"/state"_s);
        environment.insert(u"XDG_CACHE_HOME"_s, m_home + u"/cache"_s);
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QCoreApplication::applicationDirPath() + u"/vantle"_s, QStringList());
    }
    ~RunningVantle()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    RunningVantle(const RunningVantle &) = delete;
    RunningVantle &operator=(const RunningVantle &) = delete;

    // The default calendars are made by the start; the event loop runs right after it.
    bool hasStarted() { return m_process.waitForStarted() && QDir(m_home + u"/data/calendars"_s).exists(); }
    void send(int signal) { ::kill(static_cast<pid_t>(m_process.processId()), signal); }
    bool hasEndedWell()
    {
        return m_process.waitForFinished(patience) && m_process.exitStatus() == QProcess::NormalExit
            && m_process.exitCode() == 0;
    }
    QByteArray output() { return m_process.readAll(); }
    QString settingsPath() const { return m_home + u"/config/vantle/vantle.conf"_s; }
    QString windowStatePath() const { return m_home + u"/state/vantle/window.json"_s; }

private:
    QString m_home;
    QProcess m_process;
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class VTAppControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void awakeningShowsTheWindowWithItsDay();
    void terminationWritesSettingsAndWindowState();
    void terminationWritesSettingsInTheirOrder();
    void windowIsFoundAsItWasLeftInTheRunBefore();
    void plainStyleGetsOurColours();
    void signalWritesEverythingOnTheWayOut_data();
    void signalWritesEverythingOnTheWayOut();
    void damagedSettingsAndStateDoNotStopTheStart();
};

void VTAppControllerTest::awakeningShowsTheWindowWithItsDay()
{
    ApplicationFixture fixture;
    fixture.addEvent("event");
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    QVERIFY(app.mainWindow()->isVisible());
    QCOMPARE(app.mainWindowController()->window(), app.mainWindow());
    QCOMPARE(uidsOf(app.mainWindowController()->events()), QStringList { u"event"_s });
}

void VTAppControllerTest::terminationWritesSettingsAndWindowState()
{
    ApplicationFixture fixture;
    const WindowStateFile stateFile(fixture.folder.filePath(u"window.json"_s));
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    app.mainWindowController()->setTaskSortMethod(2);
    app.mainWindow()->resize(400, 500);

    Q_EMIT fixture.termination.willTerminate();

    const UserDefaults next(fixture.folder.filePath(u"vantle.conf"_s));
    QCOMPARE(next.integerForKey(VTSelectedTaskSortMethodKey), 2);
    QCOMPARE(stateFile.read().frame.value_or(QRect()).size(), QSize(400, 500));
}

void VTAppControllerTest::terminationWritesSettingsInTheirOrder()
{
    ApplicationFixture fixture;
    VTAppController app(fixture.appServices());
    app.awakeFromNib();
    QCOMPARE(fixture.defaults.writtenKeys, QStringList());

    Q_EMIT fixture.termination.willTerminate();

    const QStringList ofTheShell { u"VTIconStatus"_s, u"VTHidesWhenInactive"_s, u"VTHotkeyKeyCode"_s,
        u"VTHotkeyCarbonModiferFlags"_s, u"VTAddEventKeyCode"_s, u"VTAddEventCarbonModiferFlags"_s,
        u"VTAddTaskKeyCode"_s, u"VTAddTaskCarbonModiferFlags"_s };
    const QStringList ofTheWindow { u"VTIncludeAllCompletedTasks"_s, u"VTRestrictTasksToCurrentWeek"_s,
        u"VTUnselectedCalendarsUID"_s, u"VTSelectedTaskSortMethod"_s, u"VTShowCalendarDrawer"_s };
    QCOMPARE(fixture.defaults.writtenKeys, ofTheShell + ofTheWindow);
}

void VTAppControllerTest::windowIsFoundAsItWasLeftInTheRunBefore()
{
    ApplicationFixture fixture;
    const WindowStateFile stateFile(fixture.folder.filePath(u"window.json"_s));
    WindowState left;
    left.frame = QRect(50, 60, 420, 520);
    left.dividerPosition = 200;
    QVERIFY(stateFile.write(left).isOk());
    VTAppController app(fixture.appServices());

    app.awakeFromNib();
    QVERIFY(QTest::qWaitForWindowExposed(app.mainWindow()));

    QCOMPARE(app.mainWindow()->windowState().frame.value_or(QRect()), left.frame.value_or(QRect()));
    QCOMPARE(app.mainWindow()->windowState().dividerPosition.value_or(0), 200);
}

void VTAppControllerTest::plainStyleGetsOurColours()
{
    QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
    const QPalette previous = QApplication::palette();
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    ApplicationFixture fixture(dark);
    VTAppController app(fixture.appServices());

    app.awakeFromNib();

    QCOMPARE(QApplication::palette().color(QPalette::Window), KLVTheme::darkPalette().color(QPalette::Window));
    QApplication::setPalette(previous);
}

void VTAppControllerTest::signalWritesEverythingOnTheWayOut_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void VTAppControllerTest::signalWritesEverythingOnTheWayOut()
{
    QFETCH(const int, number);
    const QTemporaryDir home;
    const auto previous = std::signal(SIGHUP, SIG_DFL); // or the program would rightly ignore it under nohup
    RunningVantle vantle(home);
    std::signal(SIGHUP, previous);
    QTRY_VERIFY_WITH_TIMEOUT(vantle.hasStarted(), patience);

    vantle.send(number);

    QVERIFY2(vantle.hasEndedWell(), vantle.output().constData());
    QVERIFY(contentOf(vantle.settingsPath()).contains("VTSelectedTaskSortMethod=0"));
    QVERIFY(contentOf(vantle.windowStatePath()).contains("\"frame\""));
}

void VTAppControllerTest::damagedSettingsAndStateDoNotStopTheStart()
{
    const QTemporaryDir home;
    for (const auto &path : { u"config/vantle/vantle.conf"_s, u"state/vantle/window.json"_s }) {
        QVERIFY(QDir(home.path()).mkpath(QFileInfo(path).path()));
        QFile file(home.filePath(path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("\0[General\n\xff{{=", 14));
    }
    RunningVantle vantle(home);
    QTRY_VERIFY_WITH_TIMEOUT(vantle.hasStarted(), patience);

    vantle.send(SIGTERM);

    QVERIFY2(vantle.hasEndedWell(), vantle.output().constData());
    QVERIFY(contentOf(vantle.windowStatePath()).contains("\"frame\""));
}

VANTLE_TEST(VTAppControllerTest)
#include "VTAppControllerTest.moc"
