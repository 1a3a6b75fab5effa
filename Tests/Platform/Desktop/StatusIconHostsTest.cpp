// SPDX-License-Identifier: MIT
#include <PrivateBus.h>
#include <StatusIconHosts.h>
#include <TestRegistry.h>
#include <VirtualDisplay.h>

#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

#include <cstdlib>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{

const QString watcherService = u"org.kde.StatusNotifierWatcher"_s;

// The desktop's registry of icons. Whether somebody shows them is another matter.
class Watcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)

public:
    explicit Watcher(const QDBusConnection &connection)
        : bus(connection)
    {
        bus.registerObject(u"/StatusNotifierWatcher"_s, this,
            QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals);
    }
    bool start() { return bus.registerService(watcherService); }
    ~Watcher() override
    {
        bus.unregisterService(watcherService);
        bus.unregisterObject(u"/StatusNotifierWatcher"_s);
    }

    bool isHostRegistered()
    {
        ++questions;
        return hasHost;
    }

    bool hasHost = true;
    int questions = 0;
    QDBusConnection bus;

Q_SIGNALS:
    void StatusNotifierHostRegistered();
};

// Owns the selection of a display's tray.
class Tray final
{
public:
    explicit Tray(const VirtualDisplay &display)
        : m_connection(xcb_connect(display.name().constData(), nullptr))
    {
        const xcb_window_t window = xcb_generate_id(m_connection);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
            XCB_COPY_FROM_PARENT, 0, nullptr);
        const QByteArray name = "_NET_SYSTEM_TRAY_S0";
        xcb_intern_atom_reply_t *selection = xcb_intern_atom_reply(m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.constData()), nullptr);
        xcb_set_selection_owner(m_connection, window, selection->atom, XCB_CURRENT_TIME);
        xcb_flush(m_connection);
        std::free(selection); // NOLINT: xcb hands out malloc'ed replies
    }
    ~Tray() { xcb_disconnect(m_connection); }
    Tray(const Tray &) = delete;
    Tray &operator=(const Tray &) = delete;

private:
    xcb_connection_t *m_connection;
};

} // namespace

class StatusIconHostsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nobodyIsThere();
    void hostIsThereAtTheStart();
    void hostComesLateGoesAndComesBack();
    void watcherWithoutAHostShowsNothing();
    void trayComesLateAndGoes();
    void lostDisplayShowsNothing();

private:
    PrivateBus m_bus;
};

void StatusIconHostsTest::initTestCase()
{
    QVERIFY2(m_bus.start(), qPrintable(m_bus.failure()));
}

void StatusIconHostsTest::nobodyIsThere()
{
    const StatusIconHosts withoutAnything(QDBusConnection(u"no such connection"_s), {});
    const StatusIconHosts withoutServer(m_bus.connect(), ":no such display");

    QVERIFY(!withoutAnything.hasHost());
    QVERIFY(!withoutServer.hasHost());
}

void StatusIconHostsTest::hostIsThereAtTheStart()
{
    Watcher watcher(m_bus.connect());
    QVERIFY(watcher.start());
    const StatusIconHosts hosts(m_bus.connect(), {});
    QVERIFY(!hosts.hasHost()); // it does not wait for the answer
    const QSignalSpy changes(&hosts, &StatusIconHosts::hasHostDidChange);

    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(hosts.hasHost());
}

void StatusIconHostsTest::hostComesLateGoesAndComesBack()
{
    const StatusIconHosts hosts(m_bus.connect(), {});
    {
        Watcher watcher(m_bus.connect());
        QVERIFY(watcher.start());
        QTRY_VERIFY(hosts.hasHost());
    }
    QTRY_VERIFY(!hosts.hasHost());

    Watcher watcher(m_bus.connect());
    QVERIFY(watcher.start());
    QTRY_VERIFY(hosts.hasHost());
}

void StatusIconHostsTest::watcherWithoutAHostShowsNothing()
{
    Watcher watcher(m_bus.connect());
    watcher.hasHost = false;
    QVERIFY(watcher.start());
    const StatusIconHosts hosts(m_bus.connect(), {});
    QTRY_VERIFY(watcher.questions > 0);
    QVERIFY(!hosts.hasHost());

    watcher.hasHost = true;
    Q_EMIT watcher.StatusNotifierHostRegistered();

    QTRY_VERIFY(hosts.hasHost());
}

void StatusIconHostsTest::trayComesLateAndGoes()
{
    VirtualDisplay display;
    QVERIFY2(display.start(), qPrintable(display.failure()));
    const StatusIconHosts hosts(QDBusConnection(u"no such connection"_s), display.name());
    QVERIFY(!hosts.hasHost());

    {
        const Tray tray(display);
        QTRY_VERIFY(hosts.hasHost());
    }
    QTRY_VERIFY(!hosts.hasHost());
}

void StatusIconHostsTest::lostDisplayShowsNothing()
{
    VirtualDisplay display;
    QVERIFY2(display.start(), qPrintable(display.failure()));
    const StatusIconHosts hosts(QDBusConnection(u"no such connection"_s), display.name());
    const Tray tray(display);
    QTRY_VERIFY(hosts.hasHost());

    display.stop();

    QTRY_VERIFY(!hosts.hasHost());
}

VANTLE_TEST(StatusIconHostsTest)
#include "StatusIconHostsTest.moc"
