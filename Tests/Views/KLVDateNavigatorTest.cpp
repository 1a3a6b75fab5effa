// SPDX-License-Identifier: MIT
#include <KLVBarButton.h>
#include <KLVDateNavigator.h>
#include <TestRegistry.h>

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class KLVDateNavigatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void tagsAreTheDaysToGoBy();
    void outerSegmentsAreFixedAndTheMiddleTakesTheRest();
    void labelNeverTouchesItsNeighbours();
    void clickSelectsTheSegment_data();
    void clickSelectsTheSegment();
    void clickDoesNotTakeTheFocus();
    void pressIsSeenAndReleaseEndsIt();
    void leavingBeforeTheReleaseTakesThePressBack();
    void labelIsShownInTheMiddle();
    void tabStopsOnceAndArrowsWalk();
    void arrowsStopAtTheEnds();
    void spaceAndReturnPressTheSegment_data();
    void spaceAndReturnPressTheSegment();
    void arrowsFollowTheReadingDirection();
    void focusIsVisible();
    void assistiveTechnologyFindsFiveNamedButtons();
    void assistiveTechnologyPressesASegment();

private:
    KLVBarButton *segment(const char *name) const
    {
        return m_navigator->findChild<KLVBarButton *>(QLatin1String(name));
    }

    std::unique_ptr<QWidget> m_window;
    KLVDateNavigator *m_navigator = nullptr;
    QWidget *m_other = nullptr;
};

void KLVDateNavigatorTest::init()
{
    m_window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(m_window.get());
    m_other = new QWidget(m_window.get());
    m_other->setFocusPolicy(Qt::StrongFocus);
    m_navigator = new KLVDateNavigator(m_window.get());
    layout->addWidget(m_other);
    layout->addWidget(m_navigator);
    m_window->resize(340, 100);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_other->setFocus();
}

void KLVDateNavigatorTest::tagsAreTheDaysToGoBy()
{
    QList<int> tags;
    for (int i = 0; i < KLVDateNavigator::segmentCount; ++i)
        tags.append(m_navigator->tagForSegment(i));

    QCOMPARE(tags, (QList<int> { -7, -1, 0, 1, 7 }));
}

void KLVDateNavigatorTest::outerSegmentsAreFixedAndTheMiddleTakesTheRest()
{
    const int middle = segment("todayButton")->width();

    m_window->resize(440, 100);

    QTRY_COMPARE(segment("todayButton")->width(), middle + 100);
    QCOMPARE(segment("previousWeekButton")->width(), segment("nextDayButton")->width());
    QCOMPARE(segment("nextWeekButton")->geometry().right(), m_navigator->rect().right());
}

// In the smallest window the outer segments give way; wherever there is room they are 46 wide.
void KLVDateNavigatorTest::labelNeverTouchesItsNeighbours()
{
    m_navigator->setLabel_forSegment(u"Wed 30 Nov"_s, 2);
    const int text = segment("todayButton")->textWidth();

    m_window->resize(280, 100);
    QTRY_COMPARE(m_window->width(), 280);

    QVERIFY(segment("todayButton")->width() >= text + 16);
    QVERIFY(segment("nextDayButton")->width() < 46);
    m_window->resize(400, 100);
    QTRY_COMPARE(segment("nextDayButton")->width(), 46);
}

void KLVDateNavigatorTest::clickSelectsTheSegment_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");

    QTest::newRow("previous week") << u"previousWeekButton"_s << 0;
    QTest::newRow("previous day") << u"previousDayButton"_s << 1;
    QTest::newRow("today") << u"todayButton"_s << 2;
    QTest::newRow("next day") << u"nextDayButton"_s << 3;
    QTest::newRow("next week") << u"nextWeekButton"_s << 4;
}

void KLVDateNavigatorTest::clickSelectsTheSegment()
{
    QFETCH(const QString, name);
    QFETCH(const int, index);
    const QSignalSpy triggered(m_navigator, &KLVDateNavigator::triggered);

    QTest::mouseClick(m_navigator->findChild<KLVBarButton *>(name), Qt::LeftButton);

    QCOMPARE(triggered.count(), 1);
    QCOMPARE(m_navigator->selectedSegment(), index);
}

void KLVDateNavigatorTest::clickDoesNotTakeTheFocus()
{
    QTest::mouseClick(segment("nextDayButton"), Qt::LeftButton);

    QVERIFY(m_other->hasFocus());
}

void KLVDateNavigatorTest::pressIsSeenAndReleaseEndsIt()
{
    const QImage atRest = m_navigator->grab().toImage();

    QTest::mousePress(segment("nextDayButton"), Qt::LeftButton);
    const QImage pressed = m_navigator->grab().toImage();
    QTest::mouseRelease(segment("nextDayButton"), Qt::LeftButton);
    const QImage released = m_navigator->grab().toImage();

    QVERIFY(pressed != atRest);
    QVERIFY(released != pressed);
}

void KLVDateNavigatorTest::leavingBeforeTheReleaseTakesThePressBack()
{
    const QSignalSpy triggered(m_navigator, &KLVDateNavigator::triggered);
    KLVBarButton *const button = segment("nextDayButton");

    QTest::mousePress(button, Qt::LeftButton);
    QTest::mouseMove(button, QPoint(-40, 200));
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-40, 200));

    QCOMPARE(triggered.count(), 0);
}

void KLVDateNavigatorTest::labelIsShownInTheMiddle()
{
    m_navigator->setLabel_forSegment(u"Fri 20 Nov"_s, KLVDateNavigator::middleSegment);

    QCOMPARE(m_navigator->labelForSegment(2), u"Fri 20 Nov"_s);
    QCOMPARE(segment("todayButton")->text(), u"Fri 20 Nov"_s);
}

void KLVDateNavigatorTest::tabStopsOnceAndArrowsWalk()
{
    QTest::keyClick(m_other, Qt::Key_Tab);
    QVERIFY(segment("todayButton")->hasFocus());

    QTest::keyClick(segment("todayButton"), Qt::Key_Right);
    QVERIFY(segment("nextDayButton")->hasFocus());

    QTest::keyClick(segment("nextDayButton"), Qt::Key_Tab);
    QVERIFY(m_other->hasFocus());

    QTest::keyClick(m_other, Qt::Key_Backtab);
    QVERIFY(segment("nextDayButton")->hasFocus());
}

void KLVDateNavigatorTest::arrowsStopAtTheEnds()
{
    segment("nextWeekButton")->setFocus();

    QTest::keyClick(segment("nextWeekButton"), Qt::Key_Right);

    QVERIFY(segment("nextWeekButton")->hasFocus());
}

void KLVDateNavigatorTest::spaceAndReturnPressTheSegment_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

void KLVDateNavigatorTest::spaceAndReturnPressTheSegment()
{
    QFETCH(const Qt::Key, key);
    const QSignalSpy triggered(m_navigator, &KLVDateNavigator::triggered);
    segment("previousDayButton")->setFocus();

    QTest::keyClick(segment("previousDayButton"), key);

    QCOMPARE(triggered.count(), 1);
    QCOMPARE(m_navigator->selectedSegment(), 1);
}

void KLVDateNavigatorTest::arrowsFollowTheReadingDirection()
{
    m_window->setLayoutDirection(Qt::RightToLeft);
    segment("todayButton")->setFocus();

    QTest::keyClick(segment("todayButton"), Qt::Key_Left);

    QVERIFY(segment("nextDayButton")->hasFocus());
    QVERIFY(segment("nextDayButton")->x() < segment("todayButton")->x());
}

void KLVDateNavigatorTest::focusIsVisible()
{
    const QImage without = m_navigator->grab().toImage();

    segment("todayButton")->setFocus();

    QVERIFY(m_navigator->grab().toImage() != without);
}

void KLVDateNavigatorTest::assistiveTechnologyFindsFiveNamedButtons()
{
    const QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(m_navigator);
    QCOMPARE(interface->childCount(), 5);

    QStringList names;
    for (int i = 0; i < interface->childCount(); ++i) {
        QCOMPARE(interface->child(i)->role(), QAccessible::Button);
        names.append(interface->child(i)->text(QAccessible::Name));
    }
    QCOMPARE(names, (QStringList { u"Previous Week"_s, u"Previous Day"_s, u"Today"_s, u"Next Day"_s, u"Next Week"_s }));
}

void KLVDateNavigatorTest::assistiveTechnologyPressesASegment()
{
    const QSignalSpy triggered(m_navigator, &KLVDateNavigator::triggered);
    QAccessibleInterface *const button = QAccessible::queryAccessibleInterface(segment("nextWeekButton"));

    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    QTRY_COMPARE(triggered.count(), 1);
    QCOMPARE(m_navigator->selectedSegment(), 4);
}

VANTLE_TEST(KLVDateNavigatorTest)
#include "KLVDateNavigatorTest.moc"
