// SPDX-License-Identifier: MIT
#include "AccordionDoubles.h"
#include "TestRegistry.h"

#include <KLVAccordionScrollArea.h>
#include <KLVKeyBindings.h>

#include <QAccessible>
#include <QLineEdit>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

class Responder final : public QObject
{
    Q_OBJECT

public:
    QStringList actions;

    Q_INVOKABLE void moveUp(QObject * /*sender*/) { actions.append(u"moveUp"_s); }
    Q_INVOKABLE void moveDown(QObject * /*sender*/) { actions.append(u"moveDown"_s); }
    Q_INVOKABLE void insertNewline() { actions.append(u"insertNewline"_s); }
};

// The area of a widget that is painted again.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }

    int paints = 0;
    QRegion region;

protected:
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints;
            region += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};

class ResponderObserver final : public KeyValueObserver
{
public:
    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange & /*change*/, void * /*context*/) override
    {
        values.append(object->valueForKey(keyPath).toBool());
    }

    QList<bool> values;
};

} // namespace

class KLVAccordionInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void clickOnAControlActsAtReleaseAndReportsThePress();
    void clickSurvivesTheShrinkingOfAnotherRow();
    void draggedPressOnAControlDoesNothing();
    void pressWithAModifierDoesNotUseTheControl();
    void rightPressDoesNotUseTheControl();
    void disabledControlIsNotUsed();
    void secondPressIsReportedForTheItemOfTheFirst();
    void doubleClickOnAControlCountsEachPressForItself();
    void tabWalksTheControlsOfTheSelectedRow();
    void currentControlSurvivesARebuild();
    void spaceWithoutACurrentControlGoesOn();
    void arrowsAndReturnTravelUpToTheResponder();
    void pageAndHomeKeysScroll();
    void pressGivesNoFocusByItself();
    void firstResponderIsAnnounced();
    void refetchKeepsOffsetSelectionAndFocusAndPaintsNothing();
    void refetchPaintsOnlyTheRowThatLooksDifferent();
    void newWidthRebuildsOnce();
    void accessibleRowsKeepTheirIdentityAcrossRebuilds();
    void accessibleControlsActDirectly();
    void accessibleRowsTakeTheFocusWhenAsked();

private:
    void press(const QPoint &point)
    {
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, inWindow(point));
    }
    void release(const QPoint &point)
    {
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, inWindow(point));
    }
    QPoint inWindow(const QPoint &point) const { return m_accordion->mapTo(m_window.get(), point); }
    PlainRow &row(int index) const { return dynamic_cast<PlainRow &>(*m_accordion->accordionViewItems().at(index)); }

    std::unique_ptr<RecordingDelegate> m_delegate;
    std::unique_ptr<Responder> m_responder;
    std::unique_ptr<QWidget> m_window;
    KLVAccordionView *m_accordion = nullptr;
    KLVAccordionScrollArea *m_area = nullptr;
    QLineEdit *m_other = nullptr;
    KLVRepresentedObjects m_objects;
};

void KLVAccordionInputTest::init()
{
    PlainRow::totalClicks = 0;
    m_delegate = std::make_unique<RecordingDelegate>();
    m_delegate->selectsOnPress = true;
    m_delegate->drawsSelected = true;
    m_responder = std::make_unique<Responder>();
    m_window = std::make_unique<QWidget>();
    m_window->resize(220, 160);
    auto *const layout = new QVBoxLayout(m_window.get());
    m_accordion = new KLVAccordionView;
    m_area = new KLVAccordionScrollArea(m_accordion);
    m_other = new QLineEdit;
    layout->addWidget(m_area);
    layout->addWidget(m_other);
    KLVKeyBindings::setNextResponder(m_window.get(), m_responder.get());
    m_accordion->setDelegate(m_delegate.get());
    m_objects = listObjects(12);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_accordion->setRepresentedObjects(m_objects);
    m_other->setFocus();
    QCoreApplication::processEvents();
}

void KLVAccordionInputTest::cleanup()
{
    m_window.reset();
}

void KLVAccordionInputTest::clickOnAControlActsAtReleaseAndReportsThePress()
{
    press({ 15, 10 });
    QCOMPARE(row(0).clicks, 0);
    QCOMPARE(m_delegate->presses.size(), 1);

    release({ 15, 10 });

    QCOMPARE(row(0).clicks, 1);
}

void KLVAccordionInputTest::clickSurvivesTheShrinkingOfAnotherRow()
{
    m_accordion->setSelectedObject(m_objects.at(0));
    const QPoint point(15, 60 + 10); // the button of the second row, before the first one shrinks

    press(point);
    QCOMPARE(row(1).view()->frame().y(), 30.0);
    release(point);

    QCOMPARE(row(1).clicks, 1);
    QCOMPARE(PlainRow::totalClicks, 1);
}

void KLVAccordionInputTest::draggedPressOnAControlDoesNothing()
{
    press({ 15, 10 });
    QTest::mouseMove(m_window->windowHandle(), inWindow({ 15, 50 }));
    release({ 15, 50 });

    QCOMPARE(PlainRow::totalClicks, 0);
}

void KLVAccordionInputTest::pressWithAModifierDoesNotUseTheControl()
{
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, Qt::ControlModifier, inWindow({ 15, 10 }));

    QCOMPARE(PlainRow::totalClicks, 0);
    QCOMPARE(m_delegate->presses.first().event.modifiers, Qt::ControlModifier);
}

void KLVAccordionInputTest::rightPressDoesNotUseTheControl()
{
    QTest::mouseClick(m_window->windowHandle(), Qt::RightButton, {}, inWindow({ 15, 10 }));

    QCOMPARE(PlainRow::totalClicks, 0);
    QCOMPARE(m_delegate->presses.size(), 1);
}

void KLVAccordionInputTest::disabledControlIsNotUsed()
{
    row(0).button->setEnabled(false);

    press({ 15, 10 });
    release({ 15, 10 });

    QCOMPARE(PlainRow::totalClicks, 0);
    QCOMPARE(m_delegate->presses.size(), 1);
}

void KLVAccordionInputTest::secondPressIsReportedForTheItemOfTheFirst()
{
    m_accordion->setSelectedObject(m_objects.at(0));
    const QPoint point(100, 60 + 20); // second row; the third one comes there when the first shrinks

    QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, inWindow(point));

    QCOMPARE(m_delegate->presses.last().event.clickCount, 2);
    QCOMPARE(m_delegate->presses.first().object, m_objects.at(1));
    QCOMPARE(m_delegate->presses.last().object, m_objects.at(1));
}

void KLVAccordionInputTest::doubleClickOnAControlCountsEachPressForItself()
{
    QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, inWindow({ 15, 10 }));

    for (const auto &press : std::as_const(m_delegate->presses))
        QCOMPARE(press.event.clickCount, 1);
    QCOMPARE(row(0).clicks, 2);
}

void KLVAccordionInputTest::tabWalksTheControlsOfTheSelectedRow()
{
    m_accordion->setSelectedObject(m_objects.at(2));
    m_accordion->setFocus();

    QTest::keyClick(m_accordion, Qt::Key_Tab);
    QCOMPARE(m_accordion->currentControl().name, u"button"_s);
    QTest::keyClick(m_accordion, Qt::Key_Tab);
    QCOMPARE(m_accordion->currentControl().name, u"detail"_s);
    QTest::keyClick(m_accordion, Qt::Key_Space);
    QCOMPARE(row(2).detailClicks, 1);
    QTest::keyClick(m_accordion, Qt::Key_Tab);

    QVERIFY(m_other->hasFocus());
    QVERIFY(m_accordion->currentControl().isNull());
}

void KLVAccordionInputTest::currentControlSurvivesARebuild()
{
    m_accordion->setSelectedObject(m_objects.at(2));
    m_accordion->setFocus();
    QTest::keyClick(m_accordion, Qt::Key_Tab);

    m_accordion->setRepresentedObjects(listObjects(12));
    m_accordion->setSelectedObject(m_accordion->representedObjects().at(2));
    QTest::keyClick(m_accordion, Qt::Key_Space);

    QCOMPARE(row(2).clicks, 1);
}

void KLVAccordionInputTest::spaceWithoutACurrentControlGoesOn()
{
    m_accordion->setFocus();
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, {});

    QCoreApplication::sendEvent(m_accordion, &space);

    QCOMPARE(PlainRow::totalClicks, 0);
    QVERIFY(!space.isAccepted());
}

void KLVAccordionInputTest::arrowsAndReturnTravelUpToTheResponder()
{
    m_accordion->setFocus();

    QTest::keyClick(m_accordion, Qt::Key_Up);
    QTest::keyClick(m_accordion, Qt::Key_Down);
    QTest::keyClick(m_accordion, Qt::Key_Return);
    QTest::keyClick(m_accordion, Qt::Key_Up, Qt::ControlModifier);

    QCOMPARE(m_responder->actions, (QStringList { u"moveUp"_s, u"moveDown"_s, u"insertNewline"_s }));
}

void KLVAccordionInputTest::pageAndHomeKeysScroll()
{
    m_accordion->setFocus();

    QTest::keyClick(m_accordion, Qt::Key_End);
    QCOMPARE(m_area->verticalScrollBar()->value(), m_area->verticalScrollBar()->maximum());
    QTest::keyClick(m_accordion, Qt::Key_Home);

    QCOMPARE(m_area->verticalScrollBar()->value(), 0);
    QVERIFY(m_responder->actions.isEmpty());
}

void KLVAccordionInputTest::pressGivesNoFocusByItself()
{
    press({ 100, 10 });
    release({ 100, 10 });

    QVERIFY(!m_accordion->isFirstResponder());
}

void KLVAccordionInputTest::firstResponderIsAnnounced()
{
    ResponderObserver observer;
    m_accordion->addObserver_forKeyPath_options_context(&observer, u"isFirstResponder"_s);

    m_accordion->setFocus();
    m_other->setFocus();

    QCOMPARE(observer.values, (QList<bool> { true, false }));
}

void KLVAccordionInputTest::refetchKeepsOffsetSelectionAndFocusAndPaintsNothing()
{
    m_accordion->setSelectedObject(m_objects.at(1));
    m_accordion->setFocus();
    m_area->verticalScrollBar()->setValue(150);
    QCoreApplication::processEvents();
    const QImage before = m_window->grab().toImage();
    QCoreApplication::processEvents();
    const PaintCounter counter(*m_accordion);

    const auto fresh = listObjects(12);
    m_accordion->setRepresentedObjects(fresh);
    m_accordion->setSelectedObjects({ fresh.at(1) });
    QCoreApplication::processEvents();

    QCOMPARE(counter.paints, 0);
    QCOMPARE(m_area->verticalScrollBar()->value(), 150);
    QVERIFY(m_accordion->hasFocus());
    QVERIFY(m_accordion->accordionViewItems().at(1)->isSelected());
    QCOMPARE(m_window->grab().toImage(), before);
}

void KLVAccordionInputTest::refetchPaintsOnlyTheRowThatLooksDifferent()
{
    const PaintCounter counter(*m_accordion);

    m_accordion->setRepresentedObjects(m_objects);
    row(1).button->setEnabled(false);
    m_accordion->setRepresentedObjects(m_objects);
    QTRY_COMPARE(counter.paints, 1);

    QCOMPARE(counter.region.boundingRect(), QRect(0, 30, m_accordion->width(), 30));
}

void KLVAccordionInputTest::newWidthRebuildsOnce()
{
    const KLVAccordionViewItemPtr before = m_accordion->accordionViewItems().first();
    const PaintCounter counter(*m_accordion);

    m_window->resize(300, 160);
    QCoreApplication::processEvents();
    m_window->resize(320, 160);
    QTRY_VERIFY(m_accordion->accordionViewItems().first() != before);

    QTRY_COMPARE(m_accordion->width(), m_area->viewport()->width());
    QTRY_COMPARE(row(3).view()->frame().width(), m_accordion->width());
}

void KLVAccordionInputTest::accessibleRowsKeepTheirIdentityAcrossRebuilds()
{
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(m_accordion);
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 12);
    QAccessibleInterface *const third = list->child(2);
    QCOMPARE(third->role(), QAccessible::ListItem);

    m_accordion->setRepresentedObjects({ m_objects.at(2), m_objects.at(0) });
    m_accordion->setSelectedObject(m_objects.at(2));

    QCOMPARE(list->child(0), third);
    QVERIFY(third->state().selected);
    QCOMPARE(third->rect().topLeft(), m_accordion->mapToGlobal(QPoint(0, 0)));
    QCOMPARE(third->parent(), list);
}

void KLVAccordionInputTest::accessibleControlsActDirectly()
{
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(m_accordion);

    list->child(4)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    QCOMPARE(m_delegate->presses.size(), 1);
    QCOMPARE(m_delegate->presses.first().object, m_objects.at(4));
    QVERIFY(list->child(4)->state().selected);
}

void KLVAccordionInputTest::accessibleRowsTakeTheFocusWhenAsked()
{
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(m_accordion);

    list->child(3)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());

    QVERIFY(m_accordion->hasFocus());
    QVERIFY(list->child(3)->state().selected);
    QVERIFY(list->child(3)->state().focused);
    QCOMPARE(list->focusChild(), list->child(3));
}

VANTLE_TEST(KLVAccordionInputTest)
#include "KLVAccordionInputTest.moc"
