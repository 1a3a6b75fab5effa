// SPDX-License-Identifier: MIT
#include <DesktopPresence.h>
#include <TestRegistry.h>

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

// As when another program comes to the front.
void deactivate()
{
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
}
void activate()
{
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
}

} // namespace

class DesktopPresenceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hidingTakesEveryWindowAndShowingBringsThemBack();
    void closedWindowStaysClosed();
    void windowThatIsGoneIsForgotten();
    void questionIsNotHidden();
    void inactiveApplicationHidesMarkedWindowsAlone();
    void dialogKeepsItsWindow();
    void minimizedWindowComesBack();
    void withoutAnXServerEntriesStay();
};

void DesktopPresenceTest::hidingTakesEveryWindowAndShowingBringsThemBack()
{
    DesktopPresence presence;
    QWidget window;
    QWidget other;
    presence.manage(window);
    window.show();
    other.show();
    QDialog dialog(&window);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QVERIFY(presence.isActive());

    presence.hide();
    QVERIFY(!window.isVisible() && !other.isVisible() && !dialog.isVisible());
    QVERIFY(!presence.isActive());

    presence.bringToFront(window);
    QVERIFY(window.isVisible() && other.isVisible() && dialog.isVisible());
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QVERIFY(presence.isActive());
}

void DesktopPresenceTest::closedWindowStaysClosed()
{
    DesktopPresence presence;
    QWidget window;
    QWidget closed;
    window.show();
    closed.show();
    closed.close();

    presence.hide();
    presence.bringToFront(window);

    QVERIFY(window.isVisible());
    QVERIFY(!closed.isVisible());
}

void DesktopPresenceTest::windowThatIsGoneIsForgotten()
{
    DesktopPresence presence;
    QWidget window;
    {
        QWidget passing;
        presence.manage(passing);
        presence.setHidesOnDeactivate(passing, true);
        passing.show();
        presence.hide();
    }

    presence.setTaskBarEntry(TaskBarEntry::Hidden);
    deactivate();
    presence.bringToFront(window);

    QVERIFY(window.isVisible());
}

// To hide it would be to answer it.
void DesktopPresenceTest::questionIsNotHidden()
{
    DesktopPresence presence;
    QWidget window;
    window.show();
    QDialog question;
    bool wasVisible = false;
    QTimer::singleShot(0, &question, [&] {
        presence.hide();
        wasVisible = question.isVisible();
        question.accept();
    });

    QCOMPARE(question.exec(), int(QDialog::Accepted));
    QVERIFY(wasVisible);
    QVERIFY(window.isVisible());
}

void DesktopPresenceTest::inactiveApplicationHidesMarkedWindowsAlone()
{
    DesktopPresence presence;
    QWidget marked;
    QWidget closed;
    QWidget plain;
    presence.setHidesOnDeactivate(marked, true);
    presence.setHidesOnDeactivate(closed, true);
    marked.show();
    plain.show();

    deactivate();
    QVERIFY(!marked.isVisible());
    QVERIFY(plain.isVisible());
    activate();
    QVERIFY(marked.isVisible());
    QVERIFY(!closed.isVisible());

    presence.setHidesOnDeactivate(marked, false);
    deactivate();
    QVERIFY(marked.isVisible());
}

void DesktopPresenceTest::dialogKeepsItsWindow()
{
    DesktopPresence presence;
    QWidget window;
    presence.setHidesOnDeactivate(window, true);
    window.show();
    QDialog chooser(&window);
    chooser.setWindowModality(Qt::WindowModal);
    chooser.show();

    deactivate();

    QVERIFY(window.isVisible());
}

void DesktopPresenceTest::minimizedWindowComesBack()
{
    DesktopPresence presence;
    QWidget window;
    window.showMinimized();

    presence.bringToFront(window);

    QVERIFY(!window.isMinimized());
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

void DesktopPresenceTest::withoutAnXServerEntriesStay()
{
    DesktopPresence presence;
    QWidget window;
    presence.manage(window);

    presence.setTaskBarEntry(TaskBarEntry::Hidden);
    window.show();

    QVERIFY(!presence.canHideTaskBarEntry());
}

VANTLE_TEST(DesktopPresenceTest)
#include "DesktopPresenceTest.moc"
