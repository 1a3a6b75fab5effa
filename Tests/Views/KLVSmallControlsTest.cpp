// SPDX-License-Identifier: MIT
#include "PixelChecks.h"
#include "TestRegistry.h"

#include <CrispImage.h>
#include <KLVColoredButtonCell.h>
#include <KLVDatePicker.h>
#include <KLVDrawings.h>
#include <KLVKeyBindings.h>
#include <KLVMiniBadge.h>
#include <KLVSplitView.h>
#include <KLVTheme.h>

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QColor red(0xd6, 0x45, 0x5d);

QImage drawn(const KLVView &view, qreal ratio)
{
    QImage image = crispImage(view.frame().size(), ratio);
    QPainter painter(&image);
    const KLVTheme theme(KLVTheme::lightPalette());
    view.display({ painter, theme, theme.base(), {} });
    return image;
}

bool isBlank(const QImage &image)
{
    QImage blank(image.size(), image.format());
    blank.setDevicePixelRatio(image.devicePixelRatio());
    blank.fill(Qt::transparent);
    return image == blank;
}

QImage onWhite(const QSizeF &size, qreal ratio, const std::function<void(QPainter &)> &draw)
{
    QImage image = crispImage(size, ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    draw(painter);
    return image;
}

class SheetController final : public QObject
{
    Q_OBJECT

public:
    QStringList actions;

    Q_INVOKABLE void insertNewline() { actions.append(u"insertNewline"_s); }
    Q_INVOKABLE void cancelOperation() { actions.append(u"cancelOperation"_s); }
};

void addRatios()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("1x") << 1.0;
    QTest::newRow("2x") << 2.0;
}

} // namespace

class KLVSmallControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badgeWithoutTextDrawsNothing();
    void badgeWithABlankDrawsThePill();
    void badgeEndsAreHalfCircles_data() { addRatios(); }
    void badgeEndsAreHalfCircles();
    void badgeFiguresHaveOneWidth();
    void tintKeepsTheImagesShape();
    void tintMixesImageAndColour();
    void mixedCellDrawsTheTickLikeTheOnState_data() { addRatios(); }
    void mixedCellDrawsTheTickLikeTheOnState();
    void tickLiesTwoPointsInside();
    void dividerHasAHairlineAtItsUpperEdge_data() { addRatios(); }
    void dividerHasAHairlineAtItsUpperEdge();
    void selectedRowHasARingAndATint_data() { addRatios(); }
    void selectedRowHasARingAndATint();
    void placeholderIsCentredFivePointsFromTheTop_data() { addRatios(); }
    void placeholderIsCentredFivePointsFromTheTop();
    void returnAndEscapeReachTheController();
    void returnTakesOverWhatWasTyped();
    void otherKeysEditTheDate();
    void keyOfAPickerWithoutAControllerGoesOn();
};

void KLVSmallControlsTest::badgeWithoutTextDrawsNothing()
{
    KLVMiniBadge badge;
    badge.setFrame(QRectF(0, 0, 46, 16));
    badge.setBackgroundColor(red);

    badge.setStringValue(QString());

    QVERIFY(isBlank(drawn(badge, 1)));
}

void KLVSmallControlsTest::badgeWithABlankDrawsThePill()
{
    KLVMiniBadge badge;
    badge.setFrame(QRectF(0, 0, 46, 16));
    badge.setBackgroundColor(red);

    badge.setStringValue(u" "_s);

    QCOMPARE(drawn(badge, 1).pixelColor(23, 8), red);
}

void KLVSmallControlsTest::badgeEndsAreHalfCircles()
{
    QFETCH(qreal, ratio);
    KLVMiniBadge badge;
    badge.setBackgroundColor(red);
    badge.setStringValue(u" "_s);

    for (const int width : { 30, 46, 90 }) {
        badge.setFrame(QRectF(0, 0, width, 16));
        const QImage image = drawn(badge, ratio);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < 8 * ratio; ++x) {
                const double dx = (x + 0.5) / ratio - 8;
                const double dy = (y + 0.5) / ratio - 8;
                const double distance = std::hypot(dx, dy);
                if (distance > 8 + 0.8)
                    QCOMPARE(image.pixelColor(x, y).alpha(), 0);
                if (distance < 8 - 0.8)
                    QCOMPARE(image.pixelColor(x, y), red);
            }
        }
    }
}

void KLVSmallControlsTest::badgeFiguresHaveOneWidth()
{
    QFont font(u"Inter"_s);
    font.setPixelSize(11);

    QCOMPARE(KLVMiniBadge::textWidth(u"11:11"_s, font), KLVMiniBadge::textWidth(u"08:40"_s, font));
}

void KLVSmallControlsTest::tintKeepsTheImagesShape()
{
    QImage source = crispImage(QSizeF(4, 2), 2);
    source.fill(Qt::transparent);
    QPainter(&source).fillRect(QRectF(0, 0, 2, 2), QColor(255, 255, 255));

    const QImage tinted = KLVColoredButtonCell::tintImage_tintColor(source, red);

    QCOMPARE(tinted.size(), source.size());
    QCOMPARE(tinted.devicePixelRatio(), 2.0);
    QCOMPARE(tinted.pixelColor(1, 1).alpha(), 255);
    QCOMPARE(tinted.pixelColor(6, 1).alpha(), 0);
}

// Opaque: 0.4 of the image and 0.6 of the colour. Half transparent: 0.2 of the image's own
// premultiplied half, the rest the colour's.
void KLVSmallControlsTest::tintMixesImageAndColour()
{
    QImage source = crispImage(QSizeF(2, 1), 1);
    source.fill(Qt::transparent);
    source.setPixelColor(0, 0, QColor(255, 255, 255));
    source.setPixelColor(1, 0, QColor(255, 255, 255, 128));

    const QImage tinted = KLVColoredButtonCell::tintImage_tintColor(source, QColor(0, 0, 0));

    QVERIFY(isNear(tinted.pixelColor(0, 0), QColor(102, 102, 102), 2));
    QVERIFY(std::abs(tinted.pixelColor(1, 0).alpha() - 128) <= 2);
    QVERIFY(isNear(tinted.pixelColor(1, 0), QColor(51, 51, 51), 4));
}

void KLVSmallControlsTest::mixedCellDrawsTheTickLikeTheOnState()
{
    QFETCH(qreal, ratio);
    const auto image = [&](int value) {
        return onWhite({ 14, 14 }, ratio, [&](QPainter &painter) {
            KLVColoredButtonCell cell;
            cell.setImageTintColor(red);
            cell.setIntegerValue(value);
            cell.drawImage_withFrame_inView({}, QRectF(0, 0, 14, 14), painter, KLVTheme(KLVTheme::lightPalette()));
        });
    };

    QCOMPARE(image(-1), image(1));
    QVERIFY(image(0) != image(1));
}

void KLVSmallControlsTest::tickLiesTwoPointsInside()
{
    const auto image = [](int value) {
        return onWhite({ 14, 14 }, 2, [&](QPainter &painter) {
            KLVColoredButtonCell cell;
            cell.setImageTintColor(red);
            cell.setIntegerValue(value);
            cell.drawImage_withFrame_inView({}, QRectF(0, 0, 14, 14), painter, KLVTheme(KLVTheme::lightPalette()));
        });
    };
    const QImage off = image(0);
    const QImage on = image(1);

    QRect changed;
    for (int y = 0; y < on.height(); ++y) {
        for (int x = 0; x < on.width(); ++x) {
            if (on.pixel(x, y) != off.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
        }
    }

    QVERIFY(!changed.isEmpty());
    QVERIFY(QRect(4, 4, 20, 20).contains(changed));
}

void KLVSmallControlsTest::dividerHasAHairlineAtItsUpperEdge()
{
    QFETCH(qreal, ratio);
    KLVSplitView splitView;
    splitView.setPalette(KLVTheme::lightPalette());
    const KLVTheme theme(splitView.palette());

    const QImage image = onWhite(
        { 40, 8 }, ratio, [&](QPainter &painter) { splitView.drawDividerInRect(painter, QRectF(0, 0, 40, 8)); });

    // Half a point around y 0.5: at both scales half of each pixel that it touches.
    const QColor line = KLVTheme::blended(theme.controlLine(), 0.5, theme.window());
    const int middle = image.height() / 2;
    QVERIFY(isNear(image.pixelColor(0, 0), line, 3));
    QVERIFY(isNear(image.pixelColor(image.width() - 1, 0), line, 3));
    QCOMPARE(image.pixelColor(5, middle), theme.window());
    QCOMPARE(splitView.handleWidth(), 8);
}

void KLVSmallControlsTest::selectedRowHasARingAndATint()
{
    QFETCH(qreal, ratio);

    const QImage image = onWhite({ 100, 60 }, ratio,
        [](QPainter &painter) { KLVDrawings::drawSelectedBackground(painter, QRectF(0, 0, 100, 60), red); });
    const auto at = [&](double x, double y) {
        return image.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
    };

    QVERIFY(isNear(at(50, 30), KLVTheme::blended(red, 0.15, Qt::white), 2));
    QVERIFY(isNear(at(50, 2), red, 1));
    QVERIFY(isNear(at(2, 30), red, 1));
    QVERIFY(isNear(at(97.5, 30), red, 1));
    QVERIFY(isNear(at(50, 5), KLVTheme::blended(red, 0.15, Qt::white), 2));
    QCOMPARE(at(1, 1), QColor(Qt::white)); // beyond the rounded corner
}

void KLVSmallControlsTest::placeholderIsCentredFivePointsFromTheTop()
{
    QFETCH(qreal, ratio);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(13);
    const KLVTheme theme(KLVTheme::lightPalette());

    const QImage image = onWhite({ 300, 30 }, ratio, [&](QPainter &painter) {
        KLVDrawings::drawPlaceholder(painter, theme, u"No to dos"_s, QRectF(40, 7, 300, 20), font);
    });

    QRect inked;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white))
                inked |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(std::abs(inked.center().x() / ratio - 150) <= 2);
    QVERIFY(inked.top() / ratio >= 5);
    QVERIFY(inked.bottom() / ratio <= 5 + 16);
    QCOMPARE(KLVDrawings::placeholderFont(font).pixelSize(), 12);
    QVERIFY(KLVDrawings::placeholderFont(font).bold());
}

void KLVSmallControlsTest::returnAndEscapeReachTheController()
{
    SheetController controller;
    QWidget sheet;
    auto *const picker = new KLVDatePicker(&sheet);
    KLVKeyBindings::setNextResponder(&sheet, &controller);

    QTest::keyClick(picker, Qt::Key_Return);
    QTest::keyClick(picker, Qt::Key_Escape);

    QCOMPARE(controller.actions, (QStringList { u"insertNewline"_s, u"cancelOperation"_s }));
}

void KLVSmallControlsTest::returnTakesOverWhatWasTyped()
{
    QWidget sheet;
    auto *const picker = new KLVDatePicker(&sheet);
    picker->setDisplayFormat(u"dd.MM.yyyy"_s);
    picker->setDate(QDate(2026, 11, 20));
    picker->setKeyboardTracking(false);
    picker->setSelectedSection(QDateTimeEdit::DaySection);

    QTest::keyClicks(picker, u"07"_s);
    QTest::keyClick(picker, Qt::Key_Return);

    QCOMPARE(picker->date(), QDate(2026, 11, 7));
}

void KLVSmallControlsTest::otherKeysEditTheDate()
{
    SheetController controller;
    QWidget sheet;
    auto *const picker = new KLVDatePicker(&sheet);
    KLVKeyBindings::setNextResponder(&sheet, &controller);
    picker->setDisplayFormat(u"dd.MM.yyyy"_s);
    picker->setDate(QDate(2026, 11, 20));
    picker->setSelectedSection(QDateTimeEdit::DaySection);

    QTest::keyClick(picker, Qt::Key_Up);

    QCOMPARE(picker->date(), QDate(2026, 11, 21));
    QVERIFY(controller.actions.isEmpty());
}

void KLVSmallControlsTest::keyOfAPickerWithoutAControllerGoesOn()
{
    KLVDatePicker picker;
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, {});

    QCoreApplication::sendEvent(&picker, &event);

    QVERIFY(!event.isAccepted());
}

VANTLE_TEST(KLVSmallControlsTest)
#include "KLVSmallControlsTest.moc"
