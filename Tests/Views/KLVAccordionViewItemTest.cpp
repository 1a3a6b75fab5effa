// SPDX-License-Identifier: MIT
#include "RowFixture.h"
#include "TestRegistry.h"

#include <KLVAccordionViewItem.h>
#include <KLVText.h>
#include <KLVTextField.h>
#include <VTCalCalendarItemController.h>
#include <VTCalTaskController.h>

#include <QTest>

using namespace Qt::StringLiterals;

class KLVAccordionViewItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshItemIsFiftyHighInBothStates();
    void copyIsUnselectedAndHasNoObject();
    void copyIsOfTheSameClassAndAccordion();
    void descriptionNamesItemAndObject();
    void settingAFrameWithoutAViewDoesNothing();
    void absentTextMeasuresNothing();
    void textWrapsFortyPointsBeforeTheFieldsEdge();
    void measureIsRoundedUp();
    void openingTheUrlAsksTheWorkspace();
    void openingWithoutAUrlAsksNobody();
};

void KLVAccordionViewItemTest::freshItemIsFiftyHighInBothStates()
{
    KLVAccordionViewItem item;

    QCOMPARE(item.desiredHeight(), 50.0F);
    item.setIsSelected(true);
    QCOMPARE(item.desiredHeight(), 50.0F);
}

void KLVAccordionViewItemTest::copyIsUnselectedAndHasNoObject()
{
    KLVAccordionViewItem prototype;
    prototype.setRepresentedObject(RowFixture().home);
    prototype.setIsSelected(true);
    prototype.setSelectedHeight(80);

    const KLVAccordionViewItemPtr copy = prototype.copyWithZone();

    QVERIFY(!copy->isSelected());
    QVERIFY(!copy->representedObject());
    QCOMPARE(copy->selectedHeight(), 50.0F);
}

void KLVAccordionViewItemTest::copyIsOfTheSameClassAndAccordion()
{
    RowFixture fixture;
    KLVAccordionView accordion;
    VTCalTaskController row(fixture.environment());
    row.setAccordionView(&accordion);

    const KLVAccordionViewItemPtr copy = row.copyWithZone();

    QVERIFY(std::dynamic_pointer_cast<VTCalTaskController>(copy));
    QCOMPARE(copy->accordionView(), &accordion);
}

void KLVAccordionViewItemTest::descriptionNamesItemAndObject()
{
    KLVAccordionViewItem item;

    QVERIFY(item.description().startsWith(u"KLVAccordionViewItem: <KLVAccordionViewItem: 0x"_s));
    QVERIFY(item.description().endsWith(u" - repObj: (null)"_s));
}

void KLVAccordionViewItemTest::settingAFrameWithoutAViewDoesNothing()
{
    KLVAccordionViewItem item;

    item.setFrame(QRectF(0, 0, 10, 10));

    QVERIFY(!item.view());
}

void KLVAccordionViewItemTest::absentTextMeasuresNothing()
{
    RowFixture fixture;
    const VTCalTaskController row(fixture.environment());
    KLVTextField field;
    field.setFrame(QRectF(0, 0, 200, 16));

    QCOMPARE(row.snugVerticalFitForTextField(field), 0.0F);
}

void KLVAccordionViewItemTest::textWrapsFortyPointsBeforeTheFieldsEdge()
{
    RowFixture fixture;
    const VTCalTaskController row(fixture.environment());
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(12);
    QString text = u"n"_s;
    while (KLVText::width(text + u" n"_s, font) <= 160)
        text += u" n"_s;
    KLVTextField field;
    field.setFont(font);
    field.setFrame(QRectF(0, 0, 200, 16));

    field.setStringValue(text);
    QCOMPARE(row.snugVerticalFitForTextField(field), 14.0F);
    field.setStringValue(text + u" n"_s);
    QCOMPARE(row.snugVerticalFitForTextField(field), 28.0F);
}

void KLVAccordionViewItemTest::measureIsRoundedUp()
{
    RowFixture fixture;
    const VTCalTaskController row(fixture.environment());
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    KLVTextField field;
    field.setFont(font);
    field.setFrame(QRectF(0, 0, 200, 16));
    field.setStringValue(u"one line"_s);

    QCOMPARE(row.snugVerticalFitForTextField(field), 16.0F);
}

void KLVAccordionViewItemTest::openingTheUrlAsksTheWorkspace()
{
    RowFixture fixture;
    VTCalTaskController row(fixture.environment());
    const CalTaskPtr task = RowFixture::task(u"Call"_s, fixture.home);
    task->setUrl(QUrl(u"https://example.org/a"_s));
    row.setRepresentedObject(task);

    row.openURL();

    QCOMPARE(fixture.workspace.opened, QList<QUrl> { QUrl(u"https://example.org/a"_s) });
}

void KLVAccordionViewItemTest::openingWithoutAUrlAsksNobody()
{
    RowFixture fixture;
    VTCalTaskController row(fixture.environment());
    row.setRepresentedObject(RowFixture::task(u"Call"_s, fixture.home));

    row.openURL();

    QVERIFY(fixture.workspace.opened.isEmpty());
}

VANTLE_TEST(KLVAccordionViewItemTest)
#include "KLVAccordionViewItemTest.moc"
