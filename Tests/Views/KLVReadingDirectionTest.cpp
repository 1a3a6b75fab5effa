// SPDX-License-Identifier: MIT
#include "PixelChecks.h"
#include "TestRegistry.h"

#include <KLVReadingDirection.h>

#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

class KLVReadingDirectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextBeginsWhereTheWindowsLanguageBegins_data();
    void everyTextBeginsWhereTheWindowsLanguageBegins();
};

void KLVReadingDirectionTest::everyTextBeginsWhereTheWindowsLanguageBegins_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<Qt::Alignment>("alignment");
    QTest::addColumn<bool>("isAtTheLeft");

    QTest::newRow("leading") << Qt::LeftToRight << Qt::Alignment(Qt::AlignLeft) << true;
    QTest::newRow("leading, mirrored") << Qt::RightToLeft << Qt::Alignment(Qt::AlignLeft) << false;
    QTest::newRow("trailing") << Qt::LeftToRight << Qt::Alignment(Qt::AlignRight) << false;
    QTest::newRow("trailing, mirrored") << Qt::RightToLeft << Qt::Alignment(Qt::AlignRight) << true;
}

void KLVReadingDirectionTest::everyTextBeginsWhereTheWindowsLanguageBegins()
{
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(Qt::Alignment, alignment);
    QFETCH(bool, isAtTheLeft);
    // Latin, Hebrew and Arabic letters.
    for (const QString &text :
        { u"every week"_s, u"\u05E9\u05DC\u05D5\u05DD"_s, u"\u0645\u0631\u062D\u0628\u0627"_s }) {
        QLabel label(text);
        label.setLayoutDirection(direction);
        label.setAlignment(alignment | Qt::AlignVCenter);

        KLVFollowReadingDirection(label);

        label.resize(400, 30);
        const QImage image = label.grab().toImage();
        const QColor ground = image.pixelColor(200, 1);
        QRect inked;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (!isNear(image.pixelColor(x, y), ground, 60))
                    inked |= QRect(x, y, 1, 1);
            }
        }
        QVERIFY(!inked.isEmpty());
        QVERIFY(isAtTheLeft ? inked.left() <= 4 : inked.right() >= 395);
    }
}

VANTLE_TEST(KLVReadingDirectionTest)
#include "KLVReadingDirectionTest.moc"
