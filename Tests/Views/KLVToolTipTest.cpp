// SPDX-License-Identifier: MIT
#include <KLVPopUpButton.h>
#include <KLVTableView.h>
#include <KLVText.h>
#include <KLVTitleLabel.h>
#include <SeenToolTip.h>
#include <TestRegistry.h>

#include <QAbstractButton>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace
{

struct OneLine final : KLVTableViewDataSource {
    QString text;

    int numberOfRowsInTableView(KLVTableView * /*tableView*/) override { return 1; }
    QVariant tableView_objectValueForTableColumn_row(KLVTableView * /*tableView*/, int column, int /*row*/) override
    {
        return column == KLVTableView::textColumn ? QVariant(text) : QVariant();
    }
};

} // namespace

// A tool tip says what is in the calendar, to the letter.
class KLVToolTipTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();

    void textIsSeenAsItIs();
    void cellOfATable();
    void buttonOfARow();
    void entryThatCannotBeChosen();
    void dateThatIsCut();
};

void KLVToolTipTest::initTestCase_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("ampersand") << u"R&D"_s;
    QTest::newRow("entity") << u"R&amp;D &lt;x&gt;"_s;
    QTest::newRow("markup") << u"<b>x</b>"_s;
    QTest::newRow("image") << u"<img src='file:///x.png'>y"_s;
    QTest::newRow("less than") << u"a < b"_s;
    QTest::newRow("quotation marks") << u"\"a\" 'b'"_s;
    QTest::newRow("several lines") << u"one\ntwo\n\nfour"_s;
}

void KLVToolTipTest::textIsSeenAsItIs()
{
    QFETCH_GLOBAL(QString, text);

    QCOMPARE(seenInToolTip(KLVText::toolTip(text)), text);
    QCOMPARE(KLVText::toolTip({}), QString());
}

void KLVToolTipTest::cellOfATable()
{
    QFETCH_GLOBAL(QString, text);
    OneLine line;
    line.text = text;
    KLVTableView table;
    table.setDataSource(&line);
    table.reloadData();

    QCOMPARE(seenInToolTip(table.model()->index(0, KLVTableView::textColumn).data(Qt::ToolTipRole).toString()), text);
}

void KLVToolTipTest::buttonOfARow()
{
    QFETCH_GLOBAL(QString, text);
    OneLine line;
    line.text = u"x"_s;
    KLVTableView table;
    table.setButtonTitle(text);
    table.setDataSource(&line);
    table.reloadData();

    QCOMPARE(seenInToolTip(table.buttonOfRow(0)->toolTip()), text);
}

void KLVToolTipTest::entryThatCannotBeChosen()
{
    QFETCH_GLOBAL(QString, text);
    KLVPopUpButton button;
    button.addItem(u"Home"_s);

    button.setItemDisabled(0, text);

    QCOMPARE(seenInToolTip(button.itemData(0, Qt::ToolTipRole).toString()), text);
    QCOMPARE(button.itemData(0, Qt::AccessibleDescriptionRole).toString(), text);
}

void KLVToolTipTest::dateThatIsCut()
{
    QFETCH_GLOBAL(QString, text);
    KLVTitleLabel label;
    label.setText(text);
    label.resize(8, 24);
    label.show();

    QHelpEvent help(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
    QCoreApplication::sendEvent(&label, &help);

    QCOMPARE(seenInToolTip(QToolTip::text()), text);
    QToolTip::hideText();
}

VANTLE_TEST(KLVToolTipTest)
#include "KLVToolTipTest.moc"
