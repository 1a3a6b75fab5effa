// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <KLVPopUpButton.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{

// Three entries, the last of which cannot be chosen; the first is current.
struct PopUp {
    KLVPopUpButton button;
    QSignalSpy chosen { &button, &QComboBox::activated };

    PopUp()
    {
        button.setAccessibleName(u"Calendar"_s);
        button.addItems({ u"Home"_s, u"Work"_s, u"Tasks"_s });
        button.setItemDisabled(2, u"The calendar <b>cannot</b> hold events."_s);
        button.show();
        button.setFocus();
    }

    QAccessibleInterface &accessible() { return *QAccessible::queryAccessibleInterface(&button); }
    QAccessibleActionInterface &actionsOf(int entry) { return *accessible().child(entry)->actionInterface(); }
};

} // namespace

class KLVPopUpButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysOpenIt_data();
    void keysOpenIt();
    void closedItDoesNotChangeByAKey_data();
    void closedItDoesNotChangeByAKey();
    void closedItDoesNotChangeByTheWheel();
    void wheelGoesOnToWhatIsAround();
    void openEntryIsChosenByReturn();
    void escapeClosesItAndChoosesNothing();
    void disabledEntryCannotBeChosenAndSaysWhy();
    void choosingTellsItAsAPersonsChoice();
    void assistiveTechnologyKnowsItByItsNameAndItsEntries();
    void assistiveTechnologyChoosesAnEntry();
    void assistiveTechnologyCannotChooseADisabledEntry();
    void assistiveTechnologyOpensIt();
    void entriesThatAreGoneAreInvalid();
};

void KLVPopUpButtonTest::keysOpenIt_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("up") << Qt::Key_Up;
    QTest::newRow("down") << Qt::Key_Down;
    QTest::newRow("F4") << Qt::Key_F4;
}

void KLVPopUpButtonTest::keysOpenIt()
{
    QFETCH(const Qt::Key, key);
    PopUp popUp;

    QTest::keyClick(&popUp.button, key);

    QVERIFY(popUp.button.view()->isVisible());
    QCOMPARE(popUp.button.currentIndex(), 0);
    QCOMPARE(popUp.chosen.size(), 0);
}

void KLVPopUpButtonTest::closedItDoesNotChangeByAKey_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("page down") << Qt::Key_PageDown;
    QTest::newRow("end") << Qt::Key_End;
    QTest::newRow("left") << Qt::Key_Left;
    QTest::newRow("right") << Qt::Key_Right;
    QTest::newRow("the letter of an entry") << Qt::Key_W;
}

void KLVPopUpButtonTest::closedItDoesNotChangeByAKey()
{
    QFETCH(const Qt::Key, key);
    PopUp popUp;

    QTest::keyClick(&popUp.button, key);

    QCOMPARE(popUp.button.currentIndex(), 0);
    QVERIFY(!popUp.button.view()->isVisible());
}

void KLVPopUpButtonTest::closedItDoesNotChangeByTheWheel()
{
    PopUp popUp;

    for (const int delta : { -120, -240, 120 }) {
        QWheelEvent wheel(QPointF(5, 5), popUp.button.mapToGlobal(QPointF(5, 5)), {}, { 0, delta }, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&popUp.button, &wheel);
    }

    QCOMPARE(popUp.button.currentIndex(), 0);
    QCOMPARE(popUp.chosen.size(), 0);
}

void KLVPopUpButtonTest::wheelGoesOnToWhatIsAround()
{
    PopUp popUp;
    QWheelEvent wheel(QPointF(5, 5), popUp.button.mapToGlobal(QPointF(5, 5)), {}, { 0, -120 }, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);

    QApplication::sendEvent(&popUp.button, &wheel);

    QVERIFY(!wheel.isAccepted());
}

void KLVPopUpButtonTest::openEntryIsChosenByReturn()
{
    PopUp popUp;
    popUp.button.showPopup();

    QTest::keyClick(popUp.button.view(), Qt::Key_Down);
    QTest::keyClick(popUp.button.view(), Qt::Key_Return);

    QVERIFY(!popUp.button.view()->isVisible());
    QCOMPARE(popUp.button.currentText(), u"Work"_s);
    QCOMPARE(popUp.chosen.size(), 1);
}

void KLVPopUpButtonTest::escapeClosesItAndChoosesNothing()
{
    PopUp popUp;
    popUp.button.showPopup();

    QTest::keyClick(popUp.button.view(), Qt::Key_Down);
    QTest::keyClick(popUp.button.view(), Qt::Key_Escape);

    QVERIFY(!popUp.button.view()->isVisible());
    QCOMPARE(popUp.button.currentText(), u"Home"_s);
    QCOMPARE(popUp.chosen.size(), 0);
}

void KLVPopUpButtonTest::disabledEntryCannotBeChosenAndSaysWhy()
{
    PopUp popUp;
    QVERIFY(popUp.button.isItemEnabled(1));
    QVERIFY(!popUp.button.isItemEnabled(2));
    QCOMPARE(popUp.button.itemData(2, Qt::ToolTipRole).toString(),
        u"<span>The calendar &lt;b&gt;cannot&lt;/b&gt; hold events.</span>"_s);

    popUp.button.showPopup();
    QTest::keyClick(popUp.button.view(), Qt::Key_End);
    QTest::keyClick(popUp.button.view(), Qt::Key_Return);

    QVERIFY(popUp.button.currentText() != u"Tasks"_s);
}

void KLVPopUpButtonTest::choosingTellsItAsAPersonsChoice()
{
    PopUp popUp;

    popUp.button.choose(1);

    QCOMPARE(popUp.button.currentIndex(), 1);
    QCOMPARE(popUp.chosen, (QList<QVariantList> { { 1 } }));
}

void KLVPopUpButtonTest::assistiveTechnologyKnowsItByItsNameAndItsEntries()
{
    PopUp popUp;
    QAccessibleInterface &accessible = popUp.accessible();

    QCOMPARE(accessible.role(), QAccessible::ComboBox);
    QCOMPARE(accessible.text(QAccessible::Name), u"Calendar"_s);
    QCOMPARE(accessible.text(QAccessible::Value), u"Home"_s);
    QCOMPARE(accessible.childCount(), 3);
    for (int entry = 0; entry < 3; ++entry) {
        QCOMPARE(accessible.child(entry)->role(), QAccessible::ListItem);
        QCOMPARE(accessible.child(entry)->text(QAccessible::Name), popUp.button.itemText(entry));
        QCOMPARE(accessible.child(entry)->parent(), &accessible);
        QCOMPARE(accessible.indexOfChild(accessible.child(entry)), entry);
        QCOMPARE(bool(accessible.child(entry)->state().selected), entry == 0);
        QCOMPARE(bool(accessible.child(entry)->state().disabled), entry == 2);
    }
    QCOMPARE(accessible.child(3), nullptr);
    QCOMPARE(accessible.child(2)->text(QAccessible::Description), u"The calendar <b>cannot</b> hold events."_s);
}

void KLVPopUpButtonTest::assistiveTechnologyChoosesAnEntry()
{
    PopUp popUp;

    popUp.actionsOf(1).doAction(QAccessibleActionInterface::pressAction());

    QCOMPARE(popUp.button.currentText(), u"Work"_s);
    QCOMPARE(popUp.chosen.size(), 1);
    QVERIFY(popUp.accessible().child(1)->state().selected);
    QVERIFY(!popUp.accessible().child(0)->state().selected);
}

void KLVPopUpButtonTest::assistiveTechnologyCannotChooseADisabledEntry()
{
    PopUp popUp;
    QCOMPARE(popUp.actionsOf(2).actionNames(), QStringList());

    popUp.actionsOf(2).doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(popUp.button.currentText(), u"Home"_s);

    popUp.button.setEnabled(false);
    popUp.actionsOf(1).doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(popUp.button.currentText(), u"Home"_s);
    QVERIFY(
        !popUp.accessible().actionInterface()->actionNames().contains(QAccessibleActionInterface::showMenuAction()));
}

void KLVPopUpButtonTest::assistiveTechnologyOpensIt()
{
    PopUp popUp;

    popUp.accessible().actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());

    QVERIFY(popUp.button.view()->isVisible());
}

void KLVPopUpButtonTest::entriesThatAreGoneAreInvalid()
{
    PopUp popUp;
    QAccessibleInterface *const last = popUp.accessible().child(2);

    popUp.button.removeItem(2);

    QVERIFY(!last->isValid());
    QVERIFY(last->state().invalid);
    QCOMPARE(last->text(QAccessible::Name), QString());
    QCOMPARE(popUp.accessible().childCount(), 2);
}

VANTLE_TEST(KLVPopUpButtonTest)
#include "KLVPopUpButtonTest.moc"
