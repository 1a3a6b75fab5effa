// SPDX-License-Identifier: MIT
#include "PixelChecks.h"
#include "TestRegistry.h"

#include <KLVDatePicker.h>
#include <KLVMonthView.h>
#include <KLVStyle.h>

#include <QApplication>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

// The month that unfolds from a picker, on Friday, 20 November 2026.
class KLVMonthViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { QApplication::setPalette(KLVTheme::lightPalette()); }

    void onlyTheChosenDayHasTheAccent_data();
    void onlyTheChosenDayHasTheAccent();
    void everyTextCanBeRead_data();
    void everyTextCanBeRead();
    void arrowsAreNamedAndWalkThroughTheMonths();
    void pickerUnfoldsItAndTakesTheDay();
    void weekBeginsAsTheLocaleHasIt();

private:
    static void addSchemes();
};

void KLVMonthViewTest::init()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    QApplication::setFont(font);
    QVERIFY(KLVStyle::dressApplication());
}

void KLVMonthViewTest::addSchemes()
{
    QTest::addColumn<Scheme>("scheme");
    QTest::newRow("light") << Scheme::Light;
    QTest::newRow("dark") << Scheme::Dark;
    QTest::newRow("high contrast, light") << Scheme::HighContrastLight;
    QTest::newRow("high contrast, dark") << Scheme::HighContrastDark;
}

void KLVMonthViewTest::onlyTheChosenDayHasTheAccent_data()
{
    addSchemes();
}

// No bar in the accent colour, no red: grey from edge to edge, but for one cell.
void KLVMonthViewTest::onlyTheChosenDayHasTheAccent()
{
    QFETCH(Scheme, scheme);
    QApplication::setPalette(paletteOf(scheme));
    KLVMonthView month;
    month.setSelectedDate(QDate(2026, 11, 20));
    month.show();

    const QImage image = month.grab().toImage();

    const KLVTheme theme(QApplication::palette());
    QRect accented;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (isNear(image.pixelColor(x, y), theme.accent(), 8))
                accented |= QRect(x, y, 1, 1);
            QVERIFY2(image.pixelColor(x, y).hslSaturationF() < 0.6F || accented.contains(x, y)
                    || image.pixelColor(x, y).hue() != QColor(Qt::red).hue(),
                qPrintable(image.pixelColor(x, y).name()));
        }
    }
    QVERIFY(!accented.isEmpty());
    QVERIFY(accented.width() <= image.width() / 6);
    QVERIFY(accented.height() <= image.height() / 6);
    QVERIFY(accented.top() > image.height() / 3);
}

void KLVMonthViewTest::everyTextCanBeRead_data()
{
    addSchemes();
}

void KLVMonthViewTest::everyTextCanBeRead()
{
    QFETCH(Scheme, scheme);
    QApplication::setPalette(paletteOf(scheme));
    KLVMonthView month;
    month.setSelectedDate(QDate(2026, 11, 20));
    month.show();
    constexpr int ratio = 4;
    QImage image(month.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    month.render(&image);

    // The bar with month and year; the names of the days; the third row of days; the chosen one.
    const auto part = [&](const QRect &rect) {
        return measuredContrast(image.copy(QRect(rect.topLeft() * ratio, rect.size() * ratio)));
    };
    const int width = month.width();
    const auto *const bar = month.findChild<QWidget *>(u"qt_calendar_navigationbar"_s);
    const int top = bar->geometry().bottom() + 2;
    const int cell = (month.height() - top - 6) / 7;
    QVERIFY(part(QRect(width / 4, bar->y() + 2, width / 2, bar->height() - 4)) >= wantedContrast(scheme));
    QVERIFY(part(QRect(8, top, width - 16, cell - 2)) >= wantedContrast(scheme));
    QVERIFY(part(QRect(8, top + 3 * cell, width / 2, cell - 2)) >= wantedContrast(scheme));
}

void KLVMonthViewTest::arrowsAreNamedAndWalkThroughTheMonths()
{
    KLVMonthView month;
    month.setSelectedDate(QDate(2026, 11, 20));
    month.show();
    const auto button = [&](const QString &name) {
        for (auto *tool : month.findChildren<QToolButton *>()) {
            if (tool->accessibleName() == name)
                return tool;
        }
        return static_cast<QToolButton *>(nullptr);
    };
    QVERIFY(button(u"Next Month"_s) && button(u"Previous Month"_s));

    QTest::mouseClick(button(u"Next Month"_s), Qt::LeftButton);
    QCOMPARE(month.monthShown(), 12);

    QTest::mouseClick(button(u"Previous Month"_s), Qt::LeftButton);
    QCOMPARE(month.monthShown(), 11);
}

void KLVMonthViewTest::pickerUnfoldsItAndTakesTheDay()
{
    QWidget window;
    KLVDatePicker picker(&window);
    picker.setShowsTime(true);
    picker.offerMonth();
    picker.setDateValue(QDateTime(QDate(2026, 11, 20), QTime(10, 5, 17)));
    picker.resize(240, 28);
    window.show();

    QTest::mousePress(&picker, Qt::LeftButton, {}, QPoint(240 - 13, 14));
    auto *const month = picker.findChild<KLVMonthView *>();
    QVERIFY(month);
    QTRY_VERIFY(month->isVisible());
    Q_EMIT month->activated(QDate(2026, 11, 24));

    QCOMPARE(picker.dateValue().date(), QDate(2026, 11, 24));
    QCOMPARE(picker.dateValue().time().hour(), 10);
    QCOMPARE(picker.dateValue().time().minute(), 5);
}

void KLVMonthViewTest::weekBeginsAsTheLocaleHasIt()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(KLVMonthView().firstDayOfWeek(), Qt::Monday);

    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QCOMPARE(KLVMonthView().firstDayOfWeek(), Qt::Sunday);
}

VANTLE_TEST(KLVMonthViewTest)
#include "KLVMonthViewTest.moc"
