// SPDX-License-Identifier: MIT
#include "PixelChecks.h"
#include "TestRegistry.h"

#include <KLVDatePicker.h>
#include <KLVStyle.h>
#include <KLVTableView.h>
#include <KLVTheme.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QByteArray describe(const QColor &seen, const QColor &wanted)
{
    return (seen.name() + u" instead of "_s + wanted.name()).toLatin1();
}

#define VERIFY_COLOR(seen, wanted) QVERIFY2(isNear(seen, wanted), describe(seen, wanted).constData())

class TwoRows final : public KLVTableViewDataSource
{
public:
    int numberOfRowsInTableView(KLVTableView * /*tableView*/) override { return 2; }
    QVariant tableView_objectValueForTableColumn_row(KLVTableView * /*tableView*/, int column, int /*row*/) override
    {
        return column == KLVTableView::textColumn ? u"HHH"_s : QVariant();
    }
};

void addSchemes()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

} // namespace

class KLVStyleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void itReplacesThePlainStyleOnly();
    void buttonIsARoundedFaceWithALine_data() { addSchemes(); }
    void buttonIsARoundedFaceWithALine();
    void defaultButtonIsAccented_data() { addSchemes(); }
    void defaultButtonIsAccented();
    void everyButtonOfADialogIsThirtyHigh();
    void signButtonIsTwentyEightByTwentySix();
    void focusIsARingInTheAccentColour_data();
    void focusIsARingInTheAccentColour();
    void fieldsAreTwentyEightHigh();
    void fieldsGrowWithTheFont();
    void popUpHasItsArrowAtTheReadingEnd();
    void pickerHasItsArrowWhereThePopUpsHaveIt();
    void iconOfAPopUpStandsApartFromItsText();
    void textsOfAllFieldsBeginAtOneEdge();
    void rowsOfATableAlternate();
    void textThatStandsForNothingFadesWithItsField();
    void tickedBoxIsFilledWithTheAccent_data() { addSchemes(); }
    void tickedBoxIsFilledWithTheAccent();
    void chosenRadioButtonHasADot();
    void notesStandOnTheFaceOfAField();
    void alternateRowsOfATableHaveTheListsColour_data() { addSchemes(); }
    void alternateRowsOfATableHaveTheListsColour();
    void menuIsFlatAndMarksTheItemAtThePointer_data() { addSchemes(); }
    void menuIsFlatAndMarksTheItemAtThePointer();
    void menuShowsTicksInAColumnOfTheirOwn();
    void arrowOfAGroupStandsApartFromItsText();
    void keysInAMenuAreNotMirrored();
    void scrollBarHasNoArrows();
    void cancelStandsBeforeTheDefaultButton();
    void messagesHaveDrawingsOfOurOwn_data() { addSchemes(); }
    void messagesHaveDrawingsOfOurOwn();

private:
    TwoRows m_rows;
    std::unique_ptr<QWidget> m_window;

    template <typename Widget, typename... Arguments> Widget *shown(Arguments &&...arguments)
    {
        auto *const widget = new Widget(std::forward<Arguments>(arguments)..., m_window.get());
        widget->resize(widget->sizeHint());
        widget->move(10, 10);
        m_window->show();
        widget->clearFocus();
        return widget;
    }
    void dress(bool isDark)
    {
        QApplication::setPalette(isDark ? KLVTheme::darkPalette() : KLVTheme::lightPalette());
        QCoreApplication::processEvents(); // widgets hear of it from the event loop
    }
};

void KLVStyleTest::init()
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(13);
    QApplication::setFont(font);
    QVERIFY(KLVStyle::dressApplication());
    dress(false);
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 300);
}

void KLVStyleTest::itReplacesThePlainStyleOnly()
{
    QApplication::setStyle(QStyleFactory::create(u"windows"_s));
    QVERIFY(!KLVStyle::dressApplication());
    QVERIFY(!qobject_cast<KLVStyle *>(QApplication::style()));

    QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
    QVERIFY(KLVStyle::dressApplication());
    QVERIFY(qobject_cast<KLVStyle *>(QApplication::style()));
}

void KLVStyleTest::buttonIsARoundedFaceWithALine()
{
    QFETCH(bool, isDark);
    dress(isDark);
    const auto *button = shown<QPushButton>(u"None"_s);
    const KLVTheme theme(QApplication::palette());

    const QImage image = m_window->grab().toImage();
    const QRect rect = button->geometry();

    VERIFY_COLOR(image.pixelColor(rect.center().x(), rect.top()), theme.controlLine());
    VERIFY_COLOR(image.pixelColor(rect.left(), rect.center().y()), theme.controlLine());
    VERIFY_COLOR(image.pixelColor(rect.left() + 3, rect.center().y()), QApplication::palette().color(QPalette::Button));
    VERIFY_COLOR(image.pixelColor(rect.topLeft()), theme.window());
}

void KLVStyleTest::defaultButtonIsAccented()
{
    QFETCH(bool, isDark);
    dress(isDark);
    auto *const button = shown<QPushButton>(u"Save"_s);
    button->setDefault(true);
    const KLVTheme theme(QApplication::palette());

    const QImage image = m_window->grab().toImage();

    VERIFY_COLOR(image.pixelColor(button->x() + 4, button->geometry().center().y()), theme.accent());
}

void KLVStyleTest::everyButtonOfADialogIsThirtyHigh()
{
    QDialog sheet;
    QPushButton save(u"Save"_s, &sheet);
    save.setDefault(true);
    QPushButton cancel(u"Cancel"_s, &sheet);
    cancel.setAutoDefault(false);

    QCOMPARE(save.sizeHint().height(), 30);
    QCOMPARE(cancel.sizeHint().height(), 30);
    QCOMPARE(QPushButton(u"All"_s).sizeHint().height(), 26);
}

void KLVStyleTest::signButtonIsTwentyEightByTwentySix()
{
    QCOMPARE(shown<QPushButton>(u"+"_s)->sizeHint(), QSize(28, 26));
}

void KLVStyleTest::focusIsARingInTheAccentColour_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : { "button", "field", "pop-up", "notes", "date" })
        QTest::newRow(kind) << QByteArray(kind);
}

void KLVStyleTest::focusIsARingInTheAccentColour()
{
    QFETCH(QByteArray, kind);
    QWidget *widget = nullptr;
    if (kind == "button")
        widget = shown<QPushButton>(u"Cancel"_s);
    else if (kind == "field")
        widget = shown<QLineEdit>();
    else if (kind == "pop-up")
        widget = shown<QComboBox>();
    else if (kind == "notes")
        widget = shown<QPlainTextEdit>();
    else
        widget = shown<QDateTimeEdit>();
    m_window->activateWindow();
    const QColor accent = KLVTheme(QApplication::palette()).accent();
    const QPoint edge(widget->x() + 1, widget->geometry().center().y());
    QVERIFY(!isNear(m_window->grab().toImage().pixelColor(edge), accent));

    widget->setFocus();

    QTRY_VERIFY(widget->hasFocus());
    const QColor seen = m_window->grab().toImage().pixelColor(edge);
    VERIFY_COLOR(seen, accent);
}

void KLVStyleTest::fieldsAreTwentyEightHigh()
{
    QCOMPARE(QLineEdit().sizeHint().height(), 28);
    QCOMPARE(QComboBox().sizeHint().height(), 28);
    QCOMPARE(QDateTimeEdit().sizeHint().height(), 28);
}

void KLVStyleTest::fieldsGrowWithTheFont()
{
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(26);
    QApplication::setFont(font);

    QCOMPARE(QLineEdit().sizeHint().height(), 56);
    QVERIFY(QPushButton(u"Save"_s).sizeHint().height() >= 52);
    QVERIFY(QCheckBox(u"All day"_s).sizeHint().height() >= 28);
}

void KLVStyleTest::popUpHasItsArrowAtTheReadingEnd()
{
    auto *const popUp = shown<QComboBox>();
    popUp->addItem(u" "_s);
    popUp->resize(120, 28);
    const auto inked = [&](int x) {
        const QColor text = QApplication::palette().color(QPalette::ButtonText);
        return isNear(m_window->grab().toImage().pixelColor(popUp->x() + x, popUp->y() + 13), text, 20);
    };

    QVERIFY(inked(120 - 13));
    QVERIFY(!inked(13));
    popUp->setLayoutDirection(Qt::RightToLeft);
    QVERIFY(inked(13));
}

// A date keeps its figures from left to right where everything else is mirrored.
void KLVStyleTest::pickerHasItsArrowWhereThePopUpsHaveIt()
{
    m_window->setLayoutDirection(Qt::RightToLeft);
    auto *const picker = shown<KLVDatePicker>();
    picker->offerMonth();
    picker->resize(220, 28);
    const QImage image = m_window->grab().toImage();
    const QColor text = QApplication::palette().color(QPalette::ButtonText);

    VERIFY_COLOR(image.pixelColor(picker->pos() + QPoint(13, 13)), text);
    QCOMPARE(picker->findChild<QLineEdit *>()->geometry().left(), 26);
}

void KLVStyleTest::iconOfAPopUpStandsApartFromItsText()
{
    auto *const popUp = shown<QComboBox>();
    QPixmap square(10, 10);
    square.fill(Qt::red);
    popUp->setIconSize(QSize(10, 10));
    popUp->addItem(QIcon(square), u"Home"_s);
    popUp->resize(160, 28);

    for (const Qt::LayoutDirection direction : { Qt::LeftToRight, Qt::RightToLeft }) {
        popUp->setLayoutDirection(direction);
        const QImage image = m_window->grab(popUp->geometry()).toImage();
        const auto at = [&](int x) { return image.pixelColor(direction == Qt::LeftToRight ? x : 159 - x, 14); };
        VERIFY_COLOR(at(9), Qt::red);
        VERIFY_COLOR(at(18), Qt::red);
        for (int x = 20; x < 25; ++x)
            VERIFY_COLOR(at(x), QApplication::palette().color(QPalette::Button));
    }
}

void KLVStyleTest::textsOfAllFieldsBeginAtOneEdge()
{
    // The first column with ink, of a letter that begins with a stem.
    const auto firstInk = [&](QWidget *field) {
        field->resize(200, 60);
        field->show();
        const QImage image = m_window->grab(field->geometry()).toImage();
        for (int x = 4; x < image.width(); ++x) {
            for (int y = 4; y < image.height() - 4; ++y) {
                if (image.pixelColor(x, y).lightness() < 120)
                    return x;
            }
        }
        return -1;
    };
    auto *const line = shown<QLineEdit>(u"HHH"_s);
    line->resize(200, 28);
    const int edge = firstInk(line);
    line->hide();
    auto *const notes = shown<QPlainTextEdit>(u"HHH"_s);
    const int edgeOfNotes = firstInk(notes);
    notes->hide();
    auto *const table = shown<KLVTableView>();
    table->setDataSource(&m_rows);
    table->reloadData();

    QVERIFY2(edge >= 9 && edge <= 12, qPrintable(QString::number(edge)));
    QCOMPARE(edgeOfNotes, edge);
    QCOMPARE(firstInk(table), edge);
}

void KLVStyleTest::rowsOfATableAlternate()
{
    auto *const table = shown<KLVTableView>();
    table->setDataSource(&m_rows);
    table->reloadData();
    table->resize(200, 58);

    const QImage image = m_window->grab(table->geometry()).toImage();

    VERIFY_COLOR(image.pixelColor(100, 16), QApplication::palette().color(QPalette::Base));
    VERIFY_COLOR(image.pixelColor(100, 42), QApplication::palette().color(QPalette::AlternateBase));
}

void KLVStyleTest::textThatStandsForNothingFadesWithItsField()
{
    for (const QPalette &palette : { KLVTheme::lightPalette(), KLVTheme::darkPalette() }) {
        const QColor window = palette.color(QPalette::Window);
        QVERIFY(KLVTheme::contrast(palette.color(QPalette::Disabled, QPalette::PlaceholderText), window)
            < KLVTheme::contrast(palette.color(QPalette::Active, QPalette::PlaceholderText), window));
    }
}

void KLVStyleTest::tickedBoxIsFilledWithTheAccent()
{
    QFETCH(bool, isDark);
    dress(isDark);
    auto *const box = shown<QCheckBox>(u"All day"_s);
    const KLVTheme theme(QApplication::palette());
    const QPoint inside = box->pos() + QPoint(2, box->height() / 2 - 4);
    VERIFY_COLOR(m_window->grab().toImage().pixelColor(inside), QApplication::palette().color(QPalette::Button));

    box->setChecked(true);

    VERIFY_COLOR(m_window->grab().toImage().pixelColor(inside), theme.accent());
}

void KLVStyleTest::chosenRadioButtonHasADot()
{
    auto *const button = shown<QRadioButton>(u"Relative to the event"_s);
    button->setChecked(true);
    const KLVTheme theme(QApplication::palette());
    const QImage image = m_window->grab().toImage();
    const QPoint left = button->pos() + QPoint(0, button->height() / 2);

    VERIFY_COLOR(image.pixelColor(left + QPoint(7, 0)), KLVTheme::textOn(theme.accent()));
    VERIFY_COLOR(image.pixelColor(left + QPoint(2, 0)), theme.accent());
}

void KLVStyleTest::notesStandOnTheFaceOfAField()
{
    dress(true);
    auto *const notes = shown<QPlainTextEdit>();
    notes->resize(200, 60);

    const QImage image = m_window->grab().toImage();

    VERIFY_COLOR(image.pixelColor(notes->geometry().center()), QApplication::palette().color(QPalette::Button));
    VERIFY_COLOR(image.pixelColor(notes->pos()), QApplication::palette().color(QPalette::Window));
}

void KLVStyleTest::alternateRowsOfATableHaveTheListsColour()
{
    QFETCH(bool, isDark);
    dress(isDark);
    const QColor alternate = QColor::fromRgbF(0.9294117647058824F, 0.9529411764705882F, 0.996078431372549F);
    const KLVTheme theme(QApplication::palette());

    VERIFY_COLOR(QApplication::palette().color(QPalette::AlternateBase), theme.surface(alternate));
}

void KLVStyleTest::menuIsFlatAndMarksTheItemAtThePointer()
{
    QFETCH(bool, isDark);
    dress(isDark);
    QMenu menu;
    QAction *const today = menu.addAction(u"Today"_s);
    today->setShortcut(Qt::CTRL | Qt::Key_T);
    menu.addAction(u"Quit"_s);
    menu.popup(QPoint(0, 0));
    menu.setActiveAction(today);
    const KLVTheme theme(QApplication::palette());
    const QRect first = menu.actionGeometry(today);
    const QRect second = menu.actionGeometry(menu.actions().last());

    const QImage image = menu.grab().toImage();

    VERIFY_COLOR(image.pixelColor(first.left() + 4, first.center().y()), theme.accent());
    VERIFY_COLOR(image.pixelColor(second.left() + 4, second.center().y()), theme.base());
    VERIFY_COLOR(image.pixelColor(0, image.height() / 2), theme.controlLine());
    QCOMPARE(first.height(), 26);
}

// Menus with and without ticks: the column is there for all items or for none.
void KLVStyleTest::menuShowsTicksInAColumnOfTheirOwn()
{
    QMenu plain;
    plain.addAction(u"By Title"_s);
    QMenu checkable;
    QAction *const action = checkable.addAction(u"By Title"_s);
    action->setCheckable(true);
    action->setChecked(true);

    QCOMPARE(checkable.sizeHint().width() - plain.sizeHint().width(), 18);
}

void KLVStyleTest::arrowOfAGroupStandsApartFromItsText()
{
    QMenu plain;
    plain.addAction(u"To Dos"_s);
    QMenu grouped;
    grouped.addMenu(u"To Dos"_s);

    // An area of 16 for the arrow and 8 before it.
    QCOMPARE(grouped.sizeHint().width() - plain.sizeHint().width(), 24);
}

void KLVStyleTest::keysInAMenuAreNotMirrored()
{
    for (const Qt::LayoutDirection direction : { Qt::LeftToRight, Qt::RightToLeft }) {
        QMenu menu;
        menu.setLayoutDirection(direction);
        menu.addAction(u"x"_s)->setShortcut(QKeySequence(u"Ctrl+,"_s));
        menu.popup({});
        constexpr int before = 1 + 4 + 9; // the line, the margin of the menu and that of the item
        const int width = menu.fontMetrics().horizontalAdvance(u"Ctrl+,"_s);
        const int left = direction == Qt::RightToLeft ? before : menu.width() - before - width;
        const QImage keys = menu.grab(QRect(left, 5, width, 26)).toImage();

        // The comma stands at the end, with nothing above it.
        constexpr int comma = 3;
        QVERIFY(measuredContrast(keys.copy(0, 0, comma, 13)) > 2);
        QVERIFY(measuredContrast(keys.copy(width - comma, 0, comma, 13)) < 1.1);
        QVERIFY(measuredContrast(keys.copy(width - comma, 13, comma, 13)) > 2);
    }
}

void KLVStyleTest::scrollBarHasNoArrows()
{
    QScrollBar bar(Qt::Vertical);
    bar.resize(10, 200);
    bar.setRange(0, 100);
    bar.setPageStep(100);
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.maximum = 100;
    option.pageStep = 100;
    option.rect = bar.rect();
    const QStyle *const style = QApplication::style();

    QCOMPARE(
        style->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar), QRect(0, 0, 10, 100));
    option.sliderPosition = 100;
    QCOMPARE(
        style->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar), QRect(0, 100, 10, 100));
    QVERIFY(style->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarAddLine, &bar).isEmpty());
}

void KLVStyleTest::cancelStandsBeforeTheDefaultButton()
{
    QDialog dialog;
    QDialogButtonBox buttons(QDialogButtonBox::Save | QDialogButtonBox::Cancel, &dialog);
    buttons.resize(buttons.sizeHint());
    dialog.show();

    QVERIFY(buttons.button(QDialogButtonBox::Cancel)->x() < buttons.button(QDialogButtonBox::Save)->x());
}

void KLVStyleTest::messagesHaveDrawingsOfOurOwn()
{
    QFETCH(const bool, isDark);
    const QPalette palette = isDark ? KLVTheme::darkPalette() : KLVTheme::lightPalette();
    QWidget window;
    window.setPalette(palette);
    const QStyle *const style = QApplication::style();
    const auto faceOf = [&](QStyle::StandardPixmap kind) {
        const QImage image = style->standardIcon(kind, nullptr, &window).pixmap(32, 32).toImage();
        return image.size() == QSize(32, 32) ? image.pixelColor(16, 27) : QColor();
    };

    QCOMPARE(style->pixelMetric(QStyle::PM_MessageBoxIconSize), 32);
    VERIFY_COLOR(faceOf(QStyle::SP_MessageBoxQuestion), palette.color(QPalette::Highlight));
    QVERIFY(KLVTheme::contrast(faceOf(QStyle::SP_MessageBoxWarning), palette.color(QPalette::Window)) >= 3);
}

VANTLE_TEST(KLVStyleTest)
#include "KLVStyleTest.moc"
