// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <KLVTableView.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// As many rows as texts, and one empty row when there is none.
struct Lines final : KLVTableViewDataSource {
    QStringList texts;

    int numberOfRowsInTableView(KLVTableView * /*tableView*/) override
    {
        return qMax(1, static_cast<int>(texts.size()));
    }
    QVariant tableView_objectValueForTableColumn_row(KLVTableView * /*tableView*/, int column, int row) override
    {
        return column == KLVTableView::textColumn && row < texts.size() ? QVariant(texts.at(row)) : QVariant();
    }
};

struct Table {
    Lines lines;
    KLVTableView view;
    QSignalSpy pressed { &view, &KLVTableView::buttonPressed };
    QSignalSpy removals { &view, &KLVTableView::removalRequested };

    explicit Table(const QStringList &texts = { u"first"_s, u"second"_s, u"third"_s })
    {
        lines.texts = texts;
        view.setAccessibleName(u"Alarms"_s);
        view.setButtonTitle(u"Edit"_s);
        view.setDataSource(&lines);
        view.reloadData();
        view.show();
        view.setFocus();
    }

    QAbstractButton *button(int row) const { return qobject_cast<QAbstractButton *>(view.buttonOfRow(row)); }
    QAccessibleInterface &accessible() { return *QAccessible::queryAccessibleInterface(&view); }
    void click(int row, int times = 1)
    {
        const QPoint place = view.visualRect(view.model()->index(row, KLVTableView::textColumn)).center();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
        if (times == 2)
            QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
    }
};

} // namespace

class KLVTableViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsWithATextHaveAButton();
    void emptyRowHasNeitherATextNorAButton();
    void heightIsThatOfItsRowsWithinLimits();
    void buttonSelectsItsRowAndIsReported();
    void doubleClickDoesWhatTheButtonDoes();
    void keysDoWhatTheButtonDoes_data();
    void keysDoWhatTheButtonDoes();
    void deleteAsksForRemoval();
    void keysNeedASelectedRow();
    void keysWithAModifierAreNotMeant();
    void emptyRowCannotBePressed();
    void selectionStaysWhenTheRowsAreAskedForAnew();
    void selectionGoesWithItsRow();
    void markupInATextIsText();
    void buttonsFollowThePalette();
    void buttonsGrowWithTheFont();
    void assistiveTechnologyKnowsRowsAndButtons();
    void assistiveTechnologySelectsARowAndPressesItsButton();
    void assistiveTechnologySeesNoEmptyRow();
    void rowsThatAreGoneAreInvalid();
};

void KLVTableViewTest::rowsWithATextHaveAButton()
{
    const Table table;

    for (int row = 0; row < 3; ++row) {
        QCOMPARE(table.view.textOfRow(row), table.lines.texts.at(row));
        QVERIFY(table.button(row));
        QCOMPARE(table.button(row)->accessibleName(), u"Edit"_s);
        QCOMPARE(table.button(row)->accessibleDescription(), table.lines.texts.at(row));
        QVERIFY(!table.button(row)->icon().isNull());
    }
    QVERIFY(table.view.textOfRow(3).isNull());
    QVERIFY(!table.view.buttonOfRow(3));
}

void KLVTableViewTest::emptyRowHasNeitherATextNorAButton()
{
    const Table table((QStringList()));

    QCOMPARE(table.view.model()->rowCount(), 1);
    QVERIFY(table.view.textOfRow(0).isNull());
    QVERIFY(!table.view.buttonOfRow(0));
}

void KLVTableViewTest::heightIsThatOfItsRowsWithinLimits()
{
    Table table((QStringList()));
    const int one = table.view.sizeHint().height();
    const int row = table.view.rowHeight(0);

    for (int rows = 1; rows <= 6; ++rows) {
        table.lines.texts.append(u"line"_s);
        table.view.reloadData();
        QCOMPARE(table.view.sizeHint().height(), one + (qMin(rows, 4) - 1) * row);
    }
}

void KLVTableViewTest::buttonSelectsItsRowAndIsReported()
{
    Table table;

    table.button(1)->click();

    QCOMPARE(table.view.selectedRow(), 1);
    QCOMPARE(table.pressed, (QList<QVariantList> { { 1 } }));
}

void KLVTableViewTest::doubleClickDoesWhatTheButtonDoes()
{
    Table table;

    table.click(2);
    QCOMPARE(table.pressed.size(), 0);
    table.click(2, 2);

    QCOMPARE(table.pressed, (QList<QVariantList> { { 2 } }));
}

void KLVTableViewTest::keysDoWhatTheButtonDoes_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("F2") << Qt::Key_F2;
}

void KLVTableViewTest::keysDoWhatTheButtonDoes()
{
    QFETCH(const Qt::Key, key);
    Table table;
    table.view.selectRow(0);

    QTest::keyClick(&table.view, Qt::Key_Down);
    QTest::keyClick(&table.view, key);

    QCOMPARE(table.pressed, (QList<QVariantList> { { 1 } }));
}

void KLVTableViewTest::deleteAsksForRemoval()
{
    Table table;
    table.view.selectRow(2);

    QTest::keyClick(&table.view, Qt::Key_Delete);

    QCOMPARE(table.removals, (QList<QVariantList> { { 2 } }));
    QCOMPARE(table.view.model()->rowCount(), 3);
}

void KLVTableViewTest::keysNeedASelectedRow()
{
    Table table;
    table.view.deselectAll();

    for (const Qt::Key key : { Qt::Key_Space, Qt::Key_F2, Qt::Key_Delete })
        QTest::keyClick(&table.view, key);

    QCOMPARE(table.pressed.size(), 0);
    QCOMPARE(table.removals.size(), 0);
}

void KLVTableViewTest::keysWithAModifierAreNotMeant()
{
    Table table;
    table.view.selectRow(0);

    QTest::keyClick(&table.view, Qt::Key_Delete, Qt::ControlModifier);
    QTest::keyClick(&table.view, Qt::Key_F2, Qt::AltModifier);

    QCOMPARE(table.pressed.size(), 0);
    QCOMPARE(table.removals.size(), 0);
}

void KLVTableViewTest::emptyRowCannotBePressed()
{
    Table table((QStringList()));

    table.click(0, 2);

    QCOMPARE(table.pressed.size(), 0);
}

void KLVTableViewTest::selectionStaysWhenTheRowsAreAskedForAnew()
{
    Table table;
    table.view.selectRow(1);

    table.lines.texts[1] = u"another"_s;
    table.view.reloadData();

    QCOMPARE(table.view.selectedRow(), 1);
    QCOMPARE(table.view.textOfRow(1), u"another"_s);
    QCOMPARE(table.button(1)->accessibleDescription(), u"another"_s);
}

void KLVTableViewTest::selectionGoesWithItsRow()
{
    Table table;
    table.view.selectRow(2);

    table.lines.texts.removeLast();
    table.view.reloadData();

    QCOMPARE(table.view.selectedRow(), -1);
}

void KLVTableViewTest::markupInATextIsText()
{
    const Table table({ u"<img src=x> & more"_s });

    QCOMPARE(table.view.model()->index(0, 0).data(Qt::DisplayRole).toString(), u"<img src=x> & more"_s);
    QCOMPARE(table.view.model()->index(0, 0).data(Qt::ToolTipRole).toString(),
        u"<span>&lt;img src=x&gt; &amp; more</span>"_s);
}

void KLVTableViewTest::buttonsFollowThePalette()
{
    Table table;
    const QImage before = table.button(0)->icon().pixmap(16).toImage();
    QPalette palette = table.view.palette();
    palette.setColor(QPalette::Text, Qt::red);

    table.view.setPalette(palette);

    QVERIFY(table.button(0)->icon().pixmap(16).toImage() != before);
}

void KLVTableViewTest::buttonsGrowWithTheFont()
{
    const QFont before = QApplication::font();
    QFont twice = before;
    twice.setPixelSize(26);
    QApplication::setFont(twice);
    const Table table;
    QApplication::setFont(before);

    // 14 at the usual 13 pixels.
    QCOMPARE(table.button(0)->iconSize(), QSize(28, 28));
    QCOMPARE(table.button(0)->icon().actualSize({ 28, 28 }), QSize(28, 28));
}

void KLVTableViewTest::assistiveTechnologyKnowsRowsAndButtons()
{
    Table table;
    table.view.selectRow(1);
    QAccessibleInterface &accessible = table.accessible();

    QCOMPARE(accessible.role(), QAccessible::List);
    QCOMPARE(accessible.text(QAccessible::Name), u"Alarms"_s);
    QCOMPARE(accessible.childCount(), 3);
    for (int row = 0; row < 3; ++row) {
        QAccessibleInterface *const item = accessible.child(row);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QCOMPARE(item->text(QAccessible::Name), table.lines.texts.at(row));
        QCOMPARE(item->parent(), &accessible);
        QCOMPARE(accessible.indexOfChild(item), row);
        QCOMPARE(bool(item->state().selected), row == 1);
        QCOMPARE(item->childCount(), 1);
        QCOMPARE(item->child(0)->object(), table.view.buttonOfRow(row));
        QVERIFY(item->rect().contains(item->child(0)->rect()));
    }
}

void KLVTableViewTest::assistiveTechnologySelectsARowAndPressesItsButton()
{
    Table table;
    QAccessibleInterface *const row = table.accessible().child(1);

    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(table.view.selectedRow(), 1);
    QCOMPARE(table.pressed.size(), 0);

    row->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(table.pressed, (QList<QVariantList> { { 1 } }));
}

void KLVTableViewTest::assistiveTechnologySeesNoEmptyRow()
{
    Table table((QStringList()));

    QCOMPARE(table.accessible().childCount(), 0);
    QCOMPARE(table.accessible().child(0), nullptr);
}

void KLVTableViewTest::rowsThatAreGoneAreInvalid()
{
    Table table;
    QAccessibleInterface *const row = table.accessible().child(2);

    table.lines.texts.removeLast();
    table.view.reloadData();

    QVERIFY(!row->isValid());
    QVERIFY(row->state().invalid);
    QCOMPARE(row->childCount(), 0);
    QCOMPARE(table.accessible().childCount(), 2);
}

VANTLE_TEST(KLVTableViewTest)
#include "KLVTableViewTest.moc"
