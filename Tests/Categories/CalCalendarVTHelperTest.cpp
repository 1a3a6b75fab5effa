// SPDX-License-Identifier: MIT
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalCalendar+VTHelper.h>

#include <QTest>

#include <numbers>

using namespace Qt::StringLiterals;

class CalCalendarVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dotHasTheCalendarsColour_data();
    void dotHasTheCalendarsColour();
    void dotIsACircleOverTheWholeImage_data();
    void dotIsACircleOverTheWholeImage();
    void dotIsTenPoints_data();
    void dotIsTenPoints();

private:
    static void addRatios();
};

void CalCalendarVTHelperTest::addRatios()
{
    QTest::addColumn<double>("ratio");

    QTest::newRow("1x") << 1.0;
    QTest::newRow("1.5x") << 1.5;
    QTest::newRow("2x") << 2.0;
    QTest::newRow("3x") << 3.0;
}

void CalCalendarVTHelperTest::dotHasTheCalendarsColour_data()
{
    addRatios();
}

void CalCalendarVTHelperTest::dotHasTheCalendarsColour()
{
    QFETCH(const double, ratio);
    const QColor color(200, 100, 50);

    const QImage dot = colorDot(*makeCalendar(u"Home"_s, color), ratio);

    QCOMPARE(dot.pixelColor(dot.width() / 2, dot.height() / 2), color);
}

void CalCalendarVTHelperTest::dotIsACircleOverTheWholeImage_data()
{
    addRatios();
}

void CalCalendarVTHelperTest::dotIsACircleOverTheWholeImage()
{
    QFETCH(const double, ratio);

    const QImage dot = colorDot(*makeCalendar(u"Home"_s), ratio);

    // Corners are empty, the middles of the edges are reached, and the area is that of a circle.
    const int last = dot.width() - 1;
    QCOMPARE(qAlpha(dot.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(dot.pixel(last, 0)), 0);
    QCOMPARE(qAlpha(dot.pixel(0, last)), 0);
    QCOMPARE(qAlpha(dot.pixel(last, last)), 0);
    QVERIFY(qAlpha(dot.pixel(last / 2, 0)) > 127);
    QVERIFY(qAlpha(dot.pixel(last / 2, last)) > 127);
    QVERIFY(qAlpha(dot.pixel(0, last / 2)) > 127);
    QVERIFY(qAlpha(dot.pixel(last, last / 2)) > 127);
    double area = 0;
    for (int y = 0; y < dot.height(); ++y) {
        for (int x = 0; x < dot.width(); ++x)
            area += qAlpha(dot.pixel(x, y)) / 255.0;
    }
    const double circle = std::numbers::pi * 25 * ratio * ratio;
    constexpr double tolerance = 0.03; // ten pixels cannot be rounder
    QVERIFY2(std::abs(area - circle) < circle * tolerance, qPrintable(u"%1 instead of %2"_s.arg(area).arg(circle)));
}

void CalCalendarVTHelperTest::dotIsTenPoints_data()
{
    addRatios();
}

void CalCalendarVTHelperTest::dotIsTenPoints()
{
    QFETCH(const double, ratio);

    const QImage dot = colorDot(*makeCalendar(u"Home"_s), ratio);

    QCOMPARE(dot.deviceIndependentSize(), QSizeF(10, 10));
    QCOMPARE(dot.width(), qRound(10 * ratio));
}

VANTLE_TEST(CalCalendarVTHelperTest)
#include "CalCalendarVTHelperTest.moc"
