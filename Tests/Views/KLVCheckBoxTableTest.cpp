// SPDX-License-Identifier: MIT
#include <KLVCheckBoxTable.h>
#include <KLVCheckBoxTableRow.h>
#include <KLVTheme.h>
#include <TestRecords.h>
#include <TestRegistry.h>

#include <CalCalendar.h>

#include <QHelpEvent>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

const QColor red(0xd6, 0x45, 0x5d);

class Source final : public KLVCheckBoxTableDataSource
{
public:
    QStringList titles;
    QList<int> offRows;
    QString remark; // on the first row
    QList<std::pair<int, bool>> settings;

    int numberOfRowsInTableView(KLVCheckBoxTable * /*view*/) override { return static_cast<int>(titles.size()); }
    bool tableView_objectValueForRow(KLVCheckBoxTable * /*view*/, int row) override { return !offRows.contains(row); }
    void tableView_setObjectValue_forRow(KLVCheckBoxTable * /*view*/, bool value, int row) override
    {
        settings.append({ row, value });
    }
    void tableView_willDisplayCell_forRow(KLVCheckBoxTable * /*view*/, KLVColoredButtonCell &cell, int row) override
    {
        cell.setTitle(titles.at(row));
        cell.setImageTintColor(red);
        cell.setRemark(row == 0 ? remark : QString());
        cell.setRepresentedObject(makeCalendar(titles.at(row)));
    }
};

// In a window of 190 by 200 pixels.
struct TableFixture {
    TableFixture(const QStringList &titles)
    {
        source.titles = titles;
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        table = new KLVCheckBoxTable(&window);
        table->setDataSource(&source);
        layout->addWidget(table);
        layout->addStretch(1);
        window.setPalette(KLVTheme::lightPalette());
        window.resize(190, 200);
        window.show();
        window.activateWindow();
    }

    KLVCheckBoxTableRow *row(int index) const { return table->rows().at(index); }

    Source source;
    QWidget window;
    KLVCheckBoxTable *table;
};

QStringList manyTitles()
{
    QStringList titles;
    for (int i = 0; i < 40; ++i)
        titles.append(u"Calendar %1"_s.arg(i));
    return titles;
}

class PaintCounter final : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class KLVCheckBoxTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clickAsksTheSourceAndShowsItsAnswer();
    void boxIsTintedAndTicked();
    void rowWithARemarkGetsAWarningSign();
    void tableIsAsHighAsItsRows();
    void manyRowsScrollToTheKeyboard();
    void tabStopsOnce();
    void reloadWithoutAChangeRepaintsNothing();
    void sourceWithoutRowsIsAnEmptyTable();
};

void KLVCheckBoxTableTest::clickAsksTheSourceAndShowsItsAnswer()
{
    TableFixture fixture({ u"one"_s, u"two"_s });
    fixture.source.offRows = { 1 };
    fixture.table->reloadData();

    QTest::mouseClick(fixture.row(1), Qt::LeftButton);

    const QList<std::pair<int, bool>> expected { { 1, true } };
    QCOMPARE(fixture.source.settings, expected);
    // The source has changed nothing, so nothing looks changed.
    QVERIFY(!fixture.row(1)->isChecked());
}

void KLVCheckBoxTableTest::boxIsTintedAndTicked()
{
    TableFixture fixture({ u"on"_s, u"off"_s });
    fixture.source.offRows = { 1 };
    fixture.table->reloadData();

    const auto count = [](QWidget *row, auto matches) {
        const QImage image = row->grab(QRect(0, 0, 26, row->height())).toImage();
        int pixels = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                pixels += matches(image.pixelColor(x, y)) ? 1 : 0;
        }
        return pixels;
    };
    const auto isRed = [](const QColor &color) { return color.red() > color.green() + 60; };
    const auto isDark = [](const QColor &color) { return color.lightnessF() < 0.3F; };

    QVERIFY(count(fixture.row(0), isRed) > 20);
    QVERIFY(count(fixture.row(1), isRed) > 20);
    QVERIFY(count(fixture.row(0), isDark) > 8);
    QCOMPARE(count(fixture.row(1), isDark), 0);
}

void KLVCheckBoxTableTest::rowWithARemarkGetsAWarningSign()
{
    TableFixture fixture({ u"R&D <b>"_s, u"two"_s });
    const auto endOfRow
        = [](QWidget *row) { return row->grab(QRect(row->width() - 24, 0, 24, row->height())).toImage(); };
    const QImage plain = endOfRow(fixture.row(1));
    QCOMPARE(endOfRow(fixture.row(0)), plain);

    fixture.source.remark = u"It asks for <its> password & more."_s;
    fixture.table->reloadData();

    QVERIFY(endOfRow(fixture.row(0)) != plain);
    QCOMPARE(endOfRow(fixture.row(1)), plain);
    QCOMPARE(fixture.row(0)->accessibleDescription(), fixture.source.remark);
    const QPoint middle = fixture.row(0)->rect().center();
    QHelpEvent help(QEvent::ToolTip, middle, fixture.row(0)->mapToGlobal(middle));
    QCoreApplication::sendEvent(fixture.row(0), &help);
    QCOMPARE(QToolTip::text(), u"<span>It asks for &lt;its&gt; password &amp; more.</span>"_s);

    fixture.source.remark.clear();
    fixture.table->reloadData();
    QCOMPARE(endOfRow(fixture.row(0)), plain);
}

void KLVCheckBoxTableTest::tableIsAsHighAsItsRows()
{
    const TableFixture fixture({ u"one"_s, u"two"_s, u"three"_s });
    QVERIFY(QTest::qWaitForWindowExposed(&const_cast<QWidget &>(fixture.window)));

    QCOMPARE(fixture.table->height(), 3 * fixture.row(0)->height());
    QVERIFY(!fixture.table->verticalScrollBar()->isVisible());
}

void KLVCheckBoxTableTest::manyRowsScrollToTheKeyboard()
{
    TableFixture fixture(manyTitles());
    QVERIFY(QTest::qWaitForWindowActive(&fixture.window));
    QVERIFY(fixture.table->height() <= 200);
    fixture.row(0)->setFocus(Qt::TabFocusReason);

    QTest::keyClick(fixture.row(0), Qt::Key_End);

    KLVCheckBoxTableRow *const last = fixture.row(39);
    QVERIFY(last->hasFocus());
    QVERIFY(fixture.table->viewport()->rect().contains(
        QRect(last->mapTo(fixture.table->viewport(), QPoint(0, 0)), last->size())));
}

void KLVCheckBoxTableTest::tabStopsOnce()
{
    TableFixture fixture({ u"one"_s, u"two"_s, u"three"_s });

    int stops = 0;
    for (const KLVCheckBoxTableRow *row : fixture.table->rows())
        stops += row->focusPolicy() == Qt::NoFocus ? 0 : 1;

    QCOMPARE(stops, 1);
}

void KLVCheckBoxTableTest::reloadWithoutAChangeRepaintsNothing()
{
    TableFixture fixture({ u"one"_s, u"two"_s, u"three"_s });
    QVERIFY(QTest::qWaitForWindowExposed(&fixture.window));
    QCoreApplication::processEvents();
    PaintCounter counter;
    for (KLVCheckBoxTableRow *row : fixture.table->rows())
        row->installEventFilter(&counter);

    fixture.table->reloadData();
    QCoreApplication::processEvents();
    QCOMPARE(counter.paints, 0);

    fixture.source.offRows = { 1 };
    fixture.table->reloadData();
    QTRY_COMPARE(counter.paints, 1);
}

void KLVCheckBoxTableTest::sourceWithoutRowsIsAnEmptyTable()
{
    TableFixture fixture({ u"one"_s });

    fixture.source.titles.clear();
    fixture.table->reloadData();

    QVERIFY(fixture.table->rows().isEmpty());
    QTRY_COMPARE(fixture.table->height(), 0);
}

VANTLE_TEST(KLVCheckBoxTableTest)
#include "KLVCheckBoxTableTest.moc"
