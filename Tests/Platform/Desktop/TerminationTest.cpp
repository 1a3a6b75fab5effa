// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <Termination.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QSessionManager>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <array>
#include <csignal>
#include <cstddef>

#include <unistd.h>

class TerminationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalEndsTheEventLoopWithANotice_data();
    void signalEndsTheEventLoopWithANotice();
    void signalEndsAnOpenDialogToo();
    void quitCommandGivesNotice();
    void sessionEndGivesNotice();
    void ignoredHangUpStaysIgnored();
    void signalsWorkAsBeforeOnceItIsGone();
};

void TerminationTest::signalEndsTheEventLoopWithANotice_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TerminationTest::signalEndsTheEventLoopWithANotice()
{
    QFETCH(const int, number);
    // A test that was started with nohup must be able to see the hang-up.
    const auto previous = std::signal(number, SIG_DFL);
    {
        const SystemTermination termination;
        const QSignalSpy notices(&termination, &Termination::willTerminate);

        QTimer::singleShot(0, this, [number] { ::kill(::getpid(), number); });
        QApplication::exec();

        QCOMPARE(notices.count(), 1);
    }
    std::signal(number, previous);
}

// A window that refuses to close can keep the quit command waiting, but not the one who sent the signal.
void TerminationTest::signalEndsAnOpenDialogToo()
{
    class Refusing : public QDialog
    {
    public:
        using QDialog::QDialog;

    protected:
        void closeEvent(QCloseEvent *event) override { event->ignore(); }
    };
    const SystemTermination termination;
    const QSignalSpy notices(&termination, &Termination::willTerminate);
    Refusing dialog;

    QTimer::singleShot(0, this, [&dialog] {
        QTimer::singleShot(0, &dialog, [] { ::kill(::getpid(), SIGTERM); });
        dialog.exec();
    });
    QApplication::exec();

    QCOMPARE(notices.count(), 1);
}

void TerminationTest::quitCommandGivesNotice()
{
    const SystemTermination termination;
    const QSignalSpy notices(&termination, &Termination::willTerminate);

    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();

    QCOMPARE(notices.count(), 1);
}

void TerminationTest::sessionEndGivesNotice()
{
    const SystemTermination termination;
    const QSignalSpy notices(&termination, &Termination::sessionMayEnd);
    const QSignalSpy ends(&termination, &Termination::willTerminate);

    // Qt sends this with a session manager that it alone can make; nobody here looks at it.
    std::array<std::byte, sizeof(void *)> unread {};
    auto &manager = *reinterpret_cast<QSessionManager *>(unread.data()); // NOLINT
    QVERIFY(
        QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection, Q_ARG(QSessionManager &, manager)));

    QCOMPARE(notices.count(), 1);
    QCOMPARE(ends.count(), 0);
}

void TerminationTest::ignoredHangUpStaysIgnored()
{
    const auto previous = std::signal(SIGHUP, SIG_IGN);
    {
        const SystemTermination termination;
        const QSignalSpy notices(&termination, &Termination::willTerminate);

        QTimer::singleShot(0, this, [] { ::kill(::getpid(), SIGHUP); });
        QTimer::singleShot(0, this, [&notices] {
            QCOMPARE(notices.count(), 0);
            QCoreApplication::quit();
        });
        QApplication::exec();
    }
    std::signal(SIGHUP, previous);
}

void TerminationTest::signalsWorkAsBeforeOnceItIsGone()
{
    {
        const SystemTermination termination;
    }

    struct sigaction action = {};
    QCOMPARE(sigaction(SIGTERM, nullptr, &action), 0);
    QVERIFY(action.sa_handler == SIG_DFL);
}

VANTLE_TEST(TerminationTest)
#include "TerminationTest.moc"
