// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <KLVSheet.h>

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// A sheet with one field, over a plain window. The field has the keyboard.
struct SheetWithField {
    QWidget window;
    KLVSheet sheet;
    QLineEdit field;

    SheetWithField()
    {
        auto *const layout = new QVBoxLayout(&sheet);
        layout->addWidget(&field);
        field.setText(u"Lunch"_s);
        window.show();
        field.setFocus();
        sheet.beginSheet(&window);
    }
    ~SheetWithField()
    {
        sheet.endSheet();
        field.setParent(nullptr);
    }
};

} // namespace

class KLVSheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openingSelectsWhatStandsInTheField();
    void whatWasTypedIsNotSelectedWhenTheSheetComesBack();
};

void KLVSheetTest::openingSelectsWhatStandsInTheField()
{
    SheetWithField over;
    QVERIFY(QTest::qWaitForWindowActive(&over.sheet));

    QCOMPARE(over.field.selectedText(), u"Lunch"_s);
    over.sheet.endSheet();
    over.field.deselect();
    over.sheet.beginSheet(&over.window);
    QVERIFY(QTest::qWaitForWindowActive(&over.sheet));

    QCOMPARE(over.field.selectedText(), u"Lunch"_s);
}

void KLVSheetTest::whatWasTypedIsNotSelectedWhenTheSheetComesBack()
{
    SheetWithField over;
    QVERIFY(QTest::qWaitForWindowActive(&over.sheet));
    QTest::keyClicks(&over.field, u"Dinner"_s);
    QTest::keyClick(&over.field, Qt::Key_Left);

    // As when a key hides the application and brings it back.
    over.sheet.hide();
    over.window.hide();
    over.window.show();
    over.sheet.show();
    QVERIFY(QTest::qWaitForWindowActive(&over.sheet));
    QTRY_VERIFY(over.field.hasFocus());

    QVERIFY2(!over.field.hasSelectedText(), qPrintable(over.field.selectedText()));
    QTest::keyClicks(&over.field, u"e"_s);
    QCOMPARE(over.field.text(), u"Dinneer"_s);
}

VANTLE_TEST(KLVSheetTest)
#include "KLVSheetTest.moc"
