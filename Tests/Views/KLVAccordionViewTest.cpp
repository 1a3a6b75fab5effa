// SPDX-License-Identifier: MIT
#include "AccordionDoubles.h"
#include "TestRegistry.h"

#include <CalEvent.h>
#include <KLVAccordionClickShield.h>
#include <KLVAccordionScrollArea.h>

#include <QMenu>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

class ArrayController final : public KeyValueObject
{
public:
    QVariant arranged;

    void setArranged(const QVariant &value)
    {
        willChangeValueForKey(u"arrangedObjects"_s);
        arranged = value;
        didChangeValueForKey(u"arrangedObjects"_s);
    }
    QVariant valueForKey(const QString &key) const override
    {
        return key == u"arrangedObjects"_s || key == u"events"_s ? arranged : QVariant();
    }
};

QColor pixel(QWidget &widget, int x, int y)
{
    return widget.grab().toImage().pixelColor(x, y);
}

} // namespace

class KLVAccordionViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void emptyListIsTwentyHighAndShowsThePlaceholder();
    void pressOnAnEmptyListReportsNothingOnce();
    void rowsLowerThanAPointCountAsAnEmptyListForTheHeight();
    void rowsStandOnTopOfEachOtherWithoutGaps();
    void invariantsHoldAfterEverySetter();
    void everyAssignmentMakesNewRows();
    void oldRowsAreDetached();
    void withoutADelegateRowsAreCopiesOfThePrototype();
    void objectWithoutARowGetsABlankOne();
    void selectedRowGrowsAndTheListWithIt();
    void equalObjectIsSelectedButNotScrolledTo();
    void alternateRowsCountWhateverIsSelected();
    void unselectedRowsAskTheDelegateForTheirBackground();
    void selectedRowWithoutADelegateIsFilled();
    void pressOfAnyButtonReportsTheSameObject();
    void pressWithoutADelegateMethodDoesNothing();
    void listThatFitsScrollsToTheTop();
    void selectionIsScrolledIntoSight();
    void bindingTakesAListOfEventsNowAndOnEveryChange();
    void arrangedObjectsAreObserved();
    void unboundListStaysAsItIs();
    void shieldCarriesAMenuWithOneItem();
    void everyLayoutPassMakesANewShield();

private:
    std::unique_ptr<RecordingDelegate> m_delegate;
};

void KLVAccordionViewTest::init()
{
    m_delegate = std::make_unique<RecordingDelegate>();
}

void KLVAccordionViewTest::emptyListIsTwentyHighAndShowsThePlaceholder()
{
    KLVAccordionView accordion;
    accordion.resize(200, 100);
    accordion.setDelegate(m_delegate.get());
    m_delegate->drawsPlaceholder = true;

    accordion.setRepresentedObjects({});
    accordion.grab();

    QCOMPARE(accordion.height(), 20);
    QCOMPARE(m_delegate->drawings.size(), 1);
    QCOMPARE(m_delegate->drawings.first().frame, QRectF(0, 0, 200, 20));
}

void KLVAccordionViewTest::pressOnAnEmptyListReportsNothingOnce()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setDelegate(m_delegate.get());

    QTest::mousePress(&accordion, Qt::LeftButton, {}, QPoint(5, 5));

    QCOMPARE(m_delegate->presses.size(), 1);
    QVERIFY(!m_delegate->presses.first().object);
}

void KLVAccordionViewTest::rowsLowerThanAPointCountAsAnEmptyListForTheHeight()
{
    KLVAccordionView accordion;
    accordion.setDelegate(m_delegate.get());
    m_delegate->unselectedHeight = 0.3F;

    accordion.setRepresentedObjects(listObjects(3));

    QCOMPARE(accordion.height(), 20);
    QCOMPARE(accordion.accordionViewItems().size(), 3);
}

void KLVAccordionViewTest::rowsStandOnTopOfEachOtherWithoutGaps()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setDelegate(m_delegate.get());

    accordion.setRepresentedObjects(listObjects(3));

    QCOMPARE(accordion.height(), 90);
    QCOMPARE(accordion.accordionViewItems().at(2)->view()->frame(), QRectF(0, 60, 200, 30));
}

void KLVAccordionViewTest::invariantsHoldAfterEverySetter()
{
    KLVAccordionView accordion;
    accordion.setDelegate(m_delegate.get());
    const auto objects = listObjects(3);
    const auto holds = [&] {
        for (int index = 0; index < 3; ++index) {
            const KLVAccordionViewItemPtr item = accordion.accordionViewItems().at(index);
            if (item->representedObject() != objects.at(index) || item->accordionView() != &accordion
                || !accordion.subviews().contains(item->view()))
                return false;
        }
        return accordion.subviews().last() == accordion.clickCatcher();
    };

    accordion.setRepresentedObjects(objects);
    QVERIFY(holds());
    accordion.setSelectedObjects({ objects.at(1) });
    QVERIFY(holds());
    accordion.setSelectedObject(objects.at(2));
    QVERIFY(holds());
}

void KLVAccordionViewTest::everyAssignmentMakesNewRows()
{
    KLVAccordionView accordion;
    accordion.setDelegate(m_delegate.get());
    const auto objects = listObjects(2);

    accordion.setRepresentedObjects(objects);
    const auto first = accordion.accordionViewItems();
    accordion.setRepresentedObjects(objects);

    QVERIFY(accordion.accordionViewItems().at(0) != first.at(0));
    QVERIFY(accordion.accordionViewItems().at(1) != first.at(1));
}

void KLVAccordionViewTest::oldRowsAreDetached()
{
    KLVAccordionView accordion;
    accordion.setDelegate(m_delegate.get());
    accordion.setRepresentedObjects(listObjects(1));
    const KLVAccordionViewItemPtr row = accordion.accordionViewItems().first();

    accordion.setRepresentedObjects({});

    QVERIFY(!row->representedObject());
    QVERIFY(!row->accordionView());
    QVERIFY(!accordion.subviews().contains(row->view()));
}

void KLVAccordionViewTest::withoutADelegateRowsAreCopiesOfThePrototype()
{
    KLVAccordionView accordion;
    accordion.setItemPrototype(std::make_shared<PlainRow>());

    accordion.setRepresentedObjects(listObjects(2));

    QVERIFY(std::dynamic_pointer_cast<PlainRow>(accordion.accordionViewItems().at(1)));
    QVERIFY(accordion.accordionViewItems().at(1) != accordion.itemPrototype());
}

void KLVAccordionViewTest::objectWithoutARowGetsABlankOne()
{
    KLVAccordionView accordion;

    accordion.setRepresentedObjects(listObjects(2));
    accordion.grab();

    QCOMPARE(accordion.accordionViewItems().size(), 2);
    QCOMPARE(accordion.height(), 100);
}

void KLVAccordionViewTest::selectedRowGrowsAndTheListWithIt()
{
    KLVAccordionView accordion;
    accordion.setDelegate(m_delegate.get());
    const auto objects = listObjects(3);
    accordion.setRepresentedObjects(objects);

    accordion.setSelectedObject(objects.at(1));

    QCOMPARE(accordion.height(), 120);
    QCOMPARE(accordion.accordionViewItems().at(1)->view()->frame().height(), 60.0);
    QCOMPARE(accordion.accordionViewItems().at(2)->view()->frame().y(), 90.0);
}

void KLVAccordionViewTest::equalObjectIsSelectedButNotScrolledTo()
{
    auto *const accordion = new KLVAccordionView;
    KLVAccordionScrollArea area(accordion);
    area.resize(200, 100);
    area.show();
    accordion->setDelegate(m_delegate.get());
    accordion->setRepresentedObjects(listObjects(20));
    area.verticalScrollBar()->setValue(200);

    accordion->setSelectedObject(listObject(u"19"_s));

    QVERIFY(accordion->accordionViewItems().at(19)->isSelected());
    QCOMPARE(area.verticalScrollBar()->value(), 0);
}

void KLVAccordionViewTest::alternateRowsCountWhateverIsSelected()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setDelegate(m_delegate.get());
    accordion.setAlternativeBackgroundColor(QColor(0xed, 0xf3, 0xfe));
    accordion.setSelectedBackgroundColor(Qt::yellow);
    const auto objects = listObjects(3);
    accordion.setRepresentedObjects(objects);
    const QColor base = accordion.palette().color(QPalette::Base);

    QCOMPARE(pixel(accordion, 150, 15), QColor(0xed, 0xf3, 0xfe));
    QCOMPARE(pixel(accordion, 150, 45), base);
    QCOMPARE(pixel(accordion, 150, 75), QColor(0xed, 0xf3, 0xfe));
    accordion.setSelectedObject(objects.at(0));
    QCOMPARE(pixel(accordion, 150, 75), base);
    QCOMPARE(pixel(accordion, 150, 105), QColor(0xed, 0xf3, 0xfe));
}

void KLVAccordionViewTest::unselectedRowsAskTheDelegateForTheirBackground()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setDelegate(m_delegate.get());
    const auto objects = listObjects(4);
    accordion.setRepresentedObjects(objects);
    accordion.setSelectedObject(objects.at(2));
    m_delegate->drawsSelected = m_delegate->drawsAlternate = m_delegate->drawsNormal = true;

    accordion.grab();

    QStringList kinds;
    for (const auto &drawing : std::as_const(m_delegate->drawings))
        kinds.append(drawing.kind);
    QCOMPARE(kinds, (QStringList { u"alternate"_s, u"normal"_s, u"selected"_s, u"normal"_s }));
    QCOMPARE(m_delegate->drawings.at(2).object, objects.at(2));
    QCOMPARE(m_delegate->drawings.at(2).frame, QRectF(0, 60, 200, 60));
}

void KLVAccordionViewTest::selectedRowWithoutADelegateIsFilled()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setItemPrototype(std::make_shared<PlainRow>());
    accordion.setSelectedBackgroundColor(QColor(250, 240, 200));
    const auto objects = listObjects(2);
    accordion.setRepresentedObjects(objects);

    accordion.setSelectedObject(objects.at(1));

    QCOMPARE(pixel(accordion, 150, 60), QColor(250, 240, 200));
}

void KLVAccordionViewTest::pressOfAnyButtonReportsTheSameObject()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setDelegate(m_delegate.get());
    const auto objects = listObjects(3);
    accordion.setRepresentedObjects(objects);

    for (const Qt::MouseButton button : { Qt::LeftButton, Qt::RightButton, Qt::MiddleButton })
        QTest::mousePress(&accordion, button, {}, QPoint(100, 45));

    QCOMPARE(m_delegate->presses.size(), 3);
    for (const auto &press : std::as_const(m_delegate->presses))
        QCOMPARE(press.object, objects.at(1));
    QCOMPARE(m_delegate->presses.at(1).event.button, Qt::RightButton);
}

void KLVAccordionViewTest::pressWithoutADelegateMethodDoesNothing()
{
    KLVAccordionView accordion;
    accordion.resize(200, 20);
    accordion.setDelegate(m_delegate.get());
    m_delegate->takesPresses = false;
    accordion.setRepresentedObjects(listObjects(3));

    QTest::mousePress(&accordion, Qt::LeftButton, {}, QPoint(100, 45));

    QVERIFY(m_delegate->presses.isEmpty());
    QVERIFY(accordion.selectedObjects().isEmpty());
}

void KLVAccordionViewTest::listThatFitsScrollsToTheTop()
{
    auto *const accordion = new KLVAccordionView;
    KLVAccordionScrollArea area(accordion);
    area.resize(200, 100);
    area.show();
    accordion->setDelegate(m_delegate.get());
    const auto objects = listObjects(3);
    accordion->setRepresentedObjects(objects + listObjects(5));
    area.verticalScrollBar()->setValue(40);

    accordion->setRepresentedObjects({ objects.at(0), objects.at(1) });
    accordion->setSelectedObject(objects.at(1));

    QCOMPARE(accordion->y(), 0);
}

void KLVAccordionViewTest::selectionIsScrolledIntoSight()
{
    auto *const accordion = new KLVAccordionView;
    KLVAccordionScrollArea area(accordion);
    area.resize(200, 100);
    area.show();
    accordion->setDelegate(m_delegate.get());
    const auto objects = listObjects(20);
    accordion->setRepresentedObjects(objects);

    accordion->setSelectedObject(objects.at(10));
    QCOMPARE(area.verticalScrollBar()->value(), 10 * 30 + 60 - 100);
    accordion->setSelectedObject(objects.at(2));
    QCOMPARE(area.verticalScrollBar()->value(), 60);
}

void KLVAccordionViewTest::bindingTakesAListOfEventsNowAndOnEveryChange()
{
    KLVAccordionView accordion;
    ArrayController controller;
    const auto event = std::make_shared<CalEvent>();
    controller.arranged = QVariant::fromValue(CalEventList { event });

    accordion.bind_toObject_withKeyPath_options(u"representedObjects"_s, &controller, u"events"_s);
    QCOMPARE(accordion.representedObjects(), KLVRepresentedObjects { event });
    controller.willChangeValueForKey(u"events"_s);
    controller.arranged = {};
    controller.didChangeValueForKey(u"events"_s);

    QVERIFY(accordion.representedObjects().isEmpty());
}

void KLVAccordionViewTest::arrangedObjectsAreObserved()
{
    KLVAccordionView accordion;
    ArrayController controller;

    accordion.bind_toObject_withKeyPath_options(u"selectedIndexes"_s, &controller, u"arrangedObjects"_s);
    controller.setArranged(QVariant::fromValue(listObjects(2)));

    QCOMPARE(accordion.representedObjects().size(), 2);
}

void KLVAccordionViewTest::unboundListStaysAsItIs()
{
    KLVAccordionView accordion;
    ArrayController controller;
    controller.arranged = QVariant::fromValue(listObjects(2));
    accordion.bind_toObject_withKeyPath_options(u"representedObjects"_s, &controller, u"arrangedObjects"_s);

    accordion.unbind(u"representedObjects"_s);
    controller.setArranged({});

    QCOMPARE(accordion.representedObjects().size(), 2);
    QVERIFY(!controller.isObserved(u"arrangedObjects"_s));
}

void KLVAccordionViewTest::shieldCarriesAMenuWithOneItem()
{
    const KLVAccordionView accordion;

    QMenu &menu = accordion.clickCatcher()->menu();

    QCOMPARE(menu.actions().size(), 1);
    QCOMPARE(menu.actions().first()->text(), u"test"_s);
    QVERIFY(menu.actions().first()->shortcut().isEmpty());
}

void KLVAccordionViewTest::everyLayoutPassMakesANewShield()
{
    KLVAccordionView accordion;
    accordion.resize(120, 20);
    accordion.setDelegate(m_delegate.get());
    accordion.setRepresentedObjects(listObjects(2));
    accordion.clickCatcher()->setHidden(true);

    accordion.updateAVItemViews();

    QVERIFY(!accordion.clickCatcher()->isHidden());
    QCOMPARE(accordion.clickCatcher()->frame(), QRectF(0, 0, 120, 60));
}

VANTLE_TEST(KLVAccordionViewTest)
#include "KLVAccordionViewTest.moc"
