// SPDX-License-Identifier: MIT
#include <PrivateBus.h>
#include <SleepWatcher.h>
#include <TestRegistry.h>

#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Speaks as the system's login service does.
class LoginService final
{
public:
    explicit LoginService(const QDBusConnection &bus)
        : m_bus(bus)
    {
        QVERIFY(m_bus.registerService(u"org.freedesktop.login1"_s));
    }

    void prepareForSleep(bool isAboutToSleep)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
        signal << isAboutToSleep;
        QVERIFY(m_bus.send(signal));
    }

private:
    QDBusConnection m_bus;
};

} // namespace

class SleepWatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wakingUpIsToldAndFallingAsleepIsNot()
    {
        PrivateBus bus;
        QVERIFY2(bus.start(), qPrintable(bus.failure()));
        LoginService login(bus.connect());
        SleepWatcher watcher;
        QSignalSpy resumed(&watcher, &SleepWatcher::resumed);
        watcher.watch(bus.connect());

        login.prepareForSleep(true);
        login.prepareForSleep(false);

        QTRY_COMPARE(resumed.size(), 1);
        login.prepareForSleep(false);
        QTRY_COMPARE(resumed.size(), 2);
    }

    void systemWithoutALoginServiceIsSilent()
    {
        SleepWatcher watcher;
        const QSignalSpy resumed(&watcher, &SleepWatcher::resumed);

        watcher.watch(QDBusConnection(u"there is no such bus"_s));

        QVERIFY(resumed.isEmpty());
    }
};

VANTLE_TEST(SleepWatcherTest)

#include "SleepWatcherTest.moc"
