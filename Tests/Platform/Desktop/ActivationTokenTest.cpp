// SPDX-License-Identifier: MIT
#include <ActivationToken.h>
#include <TestRegistry.h>

#include <QTest>

class ActivationTokenTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timeOfALaunch_data();
    void timeOfALaunch();
    void surroundingsOfALaunch();
};

void ActivationTokenTest::timeOfALaunch_data()
{
    QTest::addColumn<QByteArray>("startupId");
    QTest::addColumn<quint32>("time");

    QTest::newRow("as launchers write it") << QByteArray("panel-42-host-vantle-0_TIME123456") << 123456U;
    QTest::newRow("name that looks like one") << QByteArray("a_TIME1_b_TIME2") << 2U;
    QTest::newRow("without a time") << QByteArray("panel-42") << 0U;
    QTest::newRow("no number") << QByteArray("panel_TIMEsoon") << 0U;
    QTest::newRow("longer than the server's clock") << QByteArray("x_TIME4294967297") << 1U;
    QTest::newRow("empty") << QByteArray() << 0U;
}

void ActivationTokenTest::timeOfALaunch()
{
    QFETCH(const QByteArray, startupId);
    QFETCH(const quint32, time);

    QCOMPARE(ActivationToken::userTimeOf(startupId), time);
}

void ActivationTokenTest::surroundingsOfALaunch()
{
    qputenv("DESKTOP_STARTUP_ID", "panel_TIME7");
    qputenv("XDG_ACTIVATION_TOKEN", "token");

    const ActivationToken token = ActivationToken::fromEnvironment();

    qunsetenv("DESKTOP_STARTUP_ID");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    QCOMPARE(token, (ActivationToken { 7, "panel_TIME7", "token" }));
    QCOMPARE(ActivationToken::fromEnvironment(), ActivationToken());
}

VANTLE_TEST(ActivationTokenTest)
#include "ActivationTokenTest.moc"
