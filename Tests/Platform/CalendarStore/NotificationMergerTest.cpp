// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <NotificationMerger.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class NotificationMergerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstChangeIsAnnouncedWithTheNextTurn();
    void changesOfOneTurnAreOneNotification();
    void namesStayApartAndInOrder();
    void secondChangeWaitsForTheInterval();
    void endlessBurstIsAnnouncedEveryInterval();
    void changeCausedByAReceiverIsNotLost();
};

namespace
{

// What a spy has seen, as "name: calendar, calendar".
QStringList described(const QSignalSpy &spy)
{
    QStringList all;
    for (const QList<QVariant> &arguments : spy) {
        const auto notification = arguments.first().value<CalNotification>();
        QStringList uids(notification.calendarUids.cbegin(), notification.calendarUids.cend());
        uids.sort();
        all.append(u"%1: %2"_s.arg(notification.name).arg(uids.join(u", "_s)));
    }
    return all;
}

} // namespace

void NotificationMergerTest::firstChangeIsAnnouncedWithTheNextTurn()
{
    NotificationMerger merger;
    QSignalSpy spy(&merger, &NotificationMerger::notificationPosted);

    merger.add(CalTasksChangedNotification, { u"Home"_s });
    QCOMPARE(spy.count(), 0);
    QCoreApplication::processEvents();

    QCOMPARE(described(spy), QStringList(u"2: Home"_s));
}

void NotificationMergerTest::changesOfOneTurnAreOneNotification()
{
    NotificationMerger merger;
    QSignalSpy spy(&merger, &NotificationMerger::notificationPosted);

    merger.add(CalTasksChangedNotification, { u"Home"_s });
    merger.add(CalTasksChangedNotification, { u"Work"_s });
    merger.add(CalTasksChangedNotification, {});
    QTRY_VERIFY(!spy.isEmpty());

    QCOMPARE(described(spy), QStringList(u"2: Home, Work"_s));
}

void NotificationMergerTest::namesStayApartAndInOrder()
{
    NotificationMerger merger;
    QSignalSpy spy(&merger, &NotificationMerger::notificationPosted);

    merger.add(CalTasksChangedExternallyNotification, { u"Home"_s });
    merger.add(CalTasksChangedNotification, { u"Home"_s });
    merger.add(CalCalendarsChangedNotification, {});
    QTRY_VERIFY(!spy.isEmpty());

    QCOMPARE(described(spy), (QStringList { u"0: "_s, u"2: Home"_s, u"5: Home"_s }));
}

void NotificationMergerTest::secondChangeWaitsForTheInterval()
{
    NotificationMerger merger;
    QSignalSpy spy(&merger, &NotificationMerger::notificationPosted);
    merger.add(CalTasksChangedNotification, {});
    QTRY_COMPARE(spy.count(), 1);
    QElapsedTimer sinceFirst;
    sinceFirst.start();

    merger.add(CalTasksChangedNotification, { u"Home"_s });
    QTRY_COMPARE(spy.count(), 2);

    // The merger began to count a moment before this test did.
    QVERIFY(sinceFirst.elapsed() >= NotificationMerger::interval.count() / 2);
}

void NotificationMergerTest::endlessBurstIsAnnouncedEveryInterval()
{
    NotificationMerger merger;
    QSignalSpy spy(&merger, &NotificationMerger::notificationPosted);
    QTimer burst;
    int changes = 0;
    connect(&burst, &QTimer::timeout, &merger,
        [&] { merger.add(CalEventsChangedExternallyNotification, { QString::number(changes++) }); });
    QElapsedTimer elapsed;
    elapsed.start();

    burst.start(1);
    QTRY_VERIFY(spy.count() >= 4);
    const qint64 atMost = elapsed.elapsed() / NotificationMerger::interval.count() + 2;
    burst.stop();

    QVERIFY2(spy.count() <= atMost, qPrintable(QString::number(spy.count())));
    QVERIFY(changes > spy.count());
    QSet<QString> announced;
    const auto gather = [&] {
        announced.clear();
        for (const QList<QVariant> &arguments : spy)
            announced.unite(arguments.first().value<CalNotification>().calendarUids);
        return announced.size();
    };
    QTRY_COMPARE(gather(), changes);
}

void NotificationMergerTest::changeCausedByAReceiverIsNotLost()
{
    NotificationMerger merger;
    QSignalSpy spy(&merger, &NotificationMerger::notificationPosted);
    connect(&merger, &NotificationMerger::notificationPosted, &merger, [&](const CalNotification &notification) {
        if (notification.calendarUids.contains(u"first"_s))
            merger.add(CalTasksChangedNotification, { u"second"_s });
    });

    merger.add(CalTasksChangedNotification, { u"first"_s });

    QTRY_COMPARE(described(spy), (QStringList { u"2: first"_s, u"2: second"_s }));
}

VANTLE_TEST(NotificationMergerTest)
#include "NotificationMergerTest.moc"
