// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVCalendarsDrawer.h>
#include <TestRegistry.h>
#include <VTDrawerFrame.h>
#include <WindowState.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr QRect screen(0, 0, 1280, 900);
constexpr QMargins frameOfWindowManager(1, 24, 1, 1);
constexpr int drawer = 190;

} // namespace

class VTDrawerFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void growth_data();
    void growth();
    void closingTakesTheGrowthBack();
    void windowGrowsByTheDrawerAndShrinksAgain();
    void windowThatFillsTheScreenKeepsItsSize();
    void rememberedFrameIsThatWithoutTheDrawer();
};

void VTDrawerFrameTest::growth_data()
{
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<VTDrawerGrowth>("expected");

    QTest::newRow("room at the right") << QRect(100, 100, 340, 600) << Qt::LeftToRight << VTDrawerGrowth { drawer, 0 };
    QTest::newRow("moves aside at the screen's edge")
        << QRect(939, 100, 340, 600) << Qt::LeftToRight << VTDrawerGrowth { drawer, drawer };
    QTest::newRow("moves no more than it needs")
        << QRect(800, 100, 340, 600) << Qt::LeftToRight << VTDrawerGrowth { drawer, 51 };
    QTest::newRow("grows as far as the screen is wide")
        << QRect(1, 24, 1200, 600) << Qt::LeftToRight << VTDrawerGrowth { 78, 0 };
    QTest::newRow("lists shrink on a full screen")
        << QRect(1, 24, 1278, 800) << Qt::LeftToRight << VTDrawerGrowth { 0, 0 };
    QTest::newRow("grows to the left where people read from there")
        << QRect(400, 100, 340, 600) << Qt::RightToLeft << VTDrawerGrowth { drawer, drawer };
    QTest::newRow("and to the right where the left is full")
        << QRect(51, 100, 340, 600) << Qt::RightToLeft << VTDrawerGrowth { drawer, 50 };
}

void VTDrawerFrameTest::growth()
{
    QFETCH(const QRect, frame);
    QFETCH(const Qt::LayoutDirection, direction);
    QFETCH(const VTDrawerGrowth, expected);

    const VTDrawerGrowth found = VTGrowthForDrawer(frame, frameOfWindowManager, screen, drawer, direction);

    QCOMPARE(found.width, expected.width);
    QCOMPARE(found.shift, expected.shift);
    QVERIFY(screen.contains(VTFrameWithDrawer(frame, found).marginsAdded(frameOfWindowManager)));
}

void VTDrawerFrameTest::closingTakesTheGrowthBack()
{
    const QRect frame(800, 100, 340, 600);
    const VTDrawerGrowth growth { drawer, 51 };

    QCOMPARE(VTFrameWithDrawer(frame, growth), QRect(749, 100, 530, 600));
    QCOMPARE(VTFrameWithoutDrawer(VTFrameWithDrawer(frame, growth), growth), frame);
}

void VTDrawerFrameTest::windowGrowsByTheDrawerAndShrinksAgain()
{
    VTMainWindow window;
    window.setGeometry(20, 40, 340, 500);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const int smallest = window.minimumWidth();
    const int width = KLVCalendarsDrawer::statedWidth();

    window.setDrawerVisible(true);
    QCOMPARE(window.geometry(), QRect(20, 40, 340 + width, 500));
    QCOMPARE(window.calendarsDrawer()->width(), width);
    QCOMPARE(window.minimumWidth(), smallest + width);

    window.setDrawerVisible(false);
    QCOMPARE(window.geometry(), QRect(20, 40, 340, 500));
    QCOMPARE(window.minimumWidth(), smallest);
}

void VTDrawerFrameTest::windowThatFillsTheScreenKeepsItsSize()
{
    VTMainWindow window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QRect full = window.geometry();

    window.setDrawerVisible(true);
    QCOMPARE(window.geometry(), full);

    window.setDrawerVisible(false);
    QCOMPARE(window.geometry(), full);
}

void VTDrawerFrameTest::rememberedFrameIsThatWithoutTheDrawer()
{
    WindowState left;
    left.frame = QRect(30, 50, 400, 500);
    VTMainWindow window;
    window.restoreWindowState(left);
    window.setDrawerVisible(true);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.width(), 400 + KLVCalendarsDrawer::statedWidth());

    QCOMPARE(window.windowState().frame.value_or(QRect()), QRect(30, 50, 400, 500));

    window.resize(window.width() + 60, 520);
    QCOMPARE(window.windowState().frame.value_or(QRect()), QRect(30, 50, 460, 520));
}

VANTLE_TEST(VTDrawerFrameTest)
#include "VTDrawerFrameTest.moc"
