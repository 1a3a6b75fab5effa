// SPDX-License-Identifier: MIT
#include <PrivateBus.h>
#include <SingleInstance.h>
#include <TestRegistry.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void firstStartHoldsTheName();
    void endGivesTheNameAway();
    void withoutABusItRunsAlone();
    void nameHeldBySomebodyWhoIsNoneOfUs();
    void launcherActivates();
    void launcherPerformsAnAction();
    void launcherOpensFiles();
    void requestThatStartedTheProgramIsTheFirstOne();

private:
    QDBusMessage send(const QString &method, const QVariantList &arguments);

    PrivateBus m_bus;
};

void SingleInstanceTest::initTestCase()
{
    QVERIFY2(m_bus.start(), qPrintable(m_bus.failure()));
}

// Like a launcher; the answer, once it is there.
QDBusMessage SingleInstanceTest::send(const QString &method, const QVariantList &arguments)
{
    QDBusConnection launcher = m_bus.connect();
    QDBusMessage call = QDBusMessage::createMethodCall(
        SingleInstance::serviceName(), SingleInstance::objectPath(), u"org.freedesktop.Application"_s, method);
    call.setArguments(arguments);
    QDBusPendingCall answer = launcher.asyncCall(call);
    [&] { QTRY_VERIFY(answer.isFinished()); }();
    PrivateBus::disconnect(launcher);
    return answer.reply();
}

void SingleInstanceTest::firstStartHoldsTheName()
{
    const QDBusConnection bus = m_bus.connect();
    SingleInstance instance(bus);
    QVERIFY(!instance.isReachable());

    QCOMPARE(instance.begin({}), SingleInstance::Start::First);

    QVERIFY(instance.isReachable());
    QCOMPARE(bus.interface()->serviceOwner(u"org.vantle.Vantle"_s).value(), bus.baseService());
}

void SingleInstanceTest::endGivesTheNameAway()
{
    const QDBusConnection bus = m_bus.connect();
    {
        SingleInstance instance(bus);
        QCOMPARE(instance.begin({}), SingleInstance::Start::First);
    }

    QVERIFY(!bus.interface()->isServiceRegistered(SingleInstance::serviceName()));
}

void SingleInstanceTest::withoutABusItRunsAlone()
{
    SingleInstance instance(QDBusConnection(u"no such connection"_s));

    QCOMPARE(instance.begin({}), SingleInstance::Start::Alone);
    QVERIFY(!instance.isReachable());
}

void SingleInstanceTest::nameHeldBySomebodyWhoIsNoneOfUs()
{
    QDBusConnection other = m_bus.connect();
    QVERIFY(other.registerService(SingleInstance::serviceName()));
    SingleInstance instance(m_bus.connect());

    QCOMPARE(instance.begin({}), SingleInstance::Start::Unanswered);
    QVERIFY(other.unregisterService(SingleInstance::serviceName()));
}

void SingleInstanceTest::launcherActivates()
{
    SingleInstance instance(m_bus.connect());
    QCOMPARE(instance.begin({}), SingleInstance::Start::First);
    QSignalSpy requests(&instance, &LauncherRequests::activationRequested);

    const QDBusMessage answer = send(u"Activate"_s,
        { QVariantMap { { u"desktop-startup-id"_s, u"panel_TIME99"_s }, { u"activation-token"_s, u"token"_s } } });

    QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(requests.count(), 1);
    QCOMPARE(requests.first().first().value<ActivationToken>(), (ActivationToken { 99, "panel_TIME99", "token" }));
}

void SingleInstanceTest::launcherPerformsAnAction()
{
    SingleInstance instance(m_bus.connect());
    QCOMPARE(instance.begin({}), SingleInstance::Start::First);
    QSignalSpy requests(&instance, &LauncherRequests::actionRequested);

    const QDBusMessage answer = send(u"ActivateAction"_s, { u"new-event"_s, QVariantList(), QVariantMap() });

    QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(requests.count(), 1);
    QCOMPARE(requests.first().first().toString(), u"new-event"_s);
    QCOMPARE(requests.first().at(1).value<ActivationToken>(), ActivationToken());
}

void SingleInstanceTest::launcherOpensFiles()
{
    SingleInstance instance(m_bus.connect());
    QCOMPARE(instance.begin({}), SingleInstance::Start::First);
    QSignalSpy requests(&instance, &LauncherRequests::openRequested);

    const QDBusMessage answer = send(u"Open"_s, { QStringList { u"file:///x.ics"_s }, QVariantMap() });

    QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    QTRY_COMPARE(requests.count(), 1);
    QCOMPARE(requests.first().first().toStringList(), QStringList { u"file:///x.ics"_s });
}

void SingleInstanceTest::requestThatStartedTheProgramIsTheFirstOne()
{
    qputenv("DBUS_STARTER_ADDRESS", "unix:path=/of/the/bus");
    SingleInstance instance(m_bus.connect());
    qunsetenv("DBUS_STARTER_ADDRESS");
    QCOMPARE(instance.begin({}), SingleInstance::Start::First);
    QList<bool> starting;
    connect(&instance, &LauncherRequests::actionRequested, this, [&] { starting << instance.isStarting(); });

    send(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    QTRY_COMPARE(starting.size(), 1);
    send(u"ActivateAction"_s, { u"toggle"_s, QVariantList(), QVariantMap() });
    QTRY_COMPARE(starting.size(), 2);

    QCOMPARE(starting, (QList { true, false }));
}

VANTLE_TEST(SingleInstanceTest)
#include "SingleInstanceTest.moc"
