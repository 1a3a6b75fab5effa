// SPDX-License-Identifier: MIT
#include <MemoryStore.h>
#include <SleepWatcher.h>
#include <TestRegistry.h>
#include <VTStoreRefresher.h>

#include <QTest>
#include <QWidget>

class VTStoreRefresherTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<MemoryStore> m_calendars;

private Q_SLOTS:
    void init() { m_calendars = std::make_unique<MemoryStore>(); }
    void cleanup() { m_calendars.reset(); }

    void windowThatComesToBeSeenAsksTheServers()
    {
        QWidget window;
        const SleepWatcher sleep;
        const VTStoreRefresher refresher(m_calendars->store(), window, sleep);
        QCOMPARE(m_calendars->backend->refreshes(), 0);

        window.show();
        QCOMPARE(m_calendars->backend->refreshes(), 1);
        window.hide();
        QCOMPARE(m_calendars->backend->refreshes(), 1);
        window.show();
        QCOMPARE(m_calendars->backend->refreshes(), 2);
    }

    void machineThatWakesUpAsksTheServers()
    {
        QWidget window;
        SleepWatcher sleep;
        const VTStoreRefresher refresher(m_calendars->store(), window, sleep);

        Q_EMIT sleep.resumed();

        QCOMPARE(m_calendars->backend->refreshes(), 1);
    }
};

VANTLE_TEST(VTStoreRefresherTest)

#include "VTStoreRefresherTest.moc"
