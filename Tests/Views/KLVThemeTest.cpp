// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <KLVTheme.h>

#include <QTest>

class KLVThemeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void darknessIsTakenFromTheWindowColour();
    void givenLightColourHasADarkCounterpart();
    void textIsReadableOnEveryTint_data();
    void textIsReadableOnEveryTint();
    void everyAccentCanBeSeenAndReadOn();
    void highContrastIsBlackAndWhite_data();
    void highContrastIsBlackAndWhite();
    void badgeTextIsWhiteOnlyWhereItCanBeRead();
    void badgeKeepsItsColourButInHighContrast();
};

void KLVThemeTest::darknessIsTakenFromTheWindowColour()
{
    QVERIFY(!KLVTheme(KLVTheme::lightPalette()).isDark());
    QVERIFY(KLVTheme(KLVTheme::darkPalette()).isDark());
}

void KLVThemeTest::givenLightColourHasADarkCounterpart()
{
    const QColor alternate = QColor::fromRgbF(0.9294117647058824F, 0.9529411764705882F, 0.996078431372549F);

    const QColor dark = KLVTheme(KLVTheme::darkPalette()).surface(alternate);

    QCOMPARE(KLVTheme(KLVTheme::lightPalette()).surface(alternate), alternate);
    QVERIFY2(std::abs(dark.red() - 0x23) <= 2, qPrintable(dark.name()));
    QVERIFY2(std::abs(dark.green() - 0x2a) <= 2, qPrintable(dark.name()));
    QVERIFY2(std::abs(dark.blue() - 0x37) <= 2, qPrintable(dark.name()));
}

void KLVThemeTest::textIsReadableOnEveryTint_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QColor>("tint");

    for (const bool isDark : { false, true }) {
        for (const char *name : { "#d6455d", "#ffff00", "#000000", "#ffffff", "#2f7de1", "#2e9e5b" })
            QTest::addRow("%s, %s", isDark ? "dark" : "light", name) << isDark << QColor(QLatin1String(name));
    }
}

void KLVThemeTest::textIsReadableOnEveryTint()
{
    QFETCH(bool, isDark);
    QFETCH(QColor, tint);
    const KLVTheme theme(isDark ? KLVTheme::darkPalette() : KLVTheme::lightPalette());
    const QColor background = KLVTheme::blended(tint, 0.15, theme.base());

    for (const QColor &color : { theme.text(), theme.dimText(), theme.accent(), theme.overdue() })
        QVERIFY(KLVTheme::contrast(theme.readable(color, background), background) >= 4.5);
}

// Whatever accent the desktop has: the ring of the focus is seen, text on the accent is read.
void KLVThemeTest::everyAccentCanBeSeenAndReadOn()
{
    constexpr int step = 51;
    for (int red = 0; red <= 255; red += step) {
        for (int green = 0; green <= 255; green += step) {
            for (int blue = 0; blue <= 255; blue += step) {
                const QColor accent(red, green, blue);
                for (const QPalette &palette : { KLVTheme::lightPalette(accent), KLVTheme::darkPalette(accent) }) {
                    const KLVTheme theme(palette);
                    QVERIFY(KLVTheme::contrast(theme.focusLine(), theme.window()) >= 3.0);
                    QVERIFY(KLVTheme::contrast(theme.focusLine(), theme.base()) >= 3.0);
                    QVERIFY(KLVTheme::contrast(KLVTheme::textOn(accent), accent) >= 4.5);
                }
            }
        }
    }
}

void KLVThemeTest::highContrastIsBlackAndWhite_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QColor>("accent");
    for (const bool isDark : { false, true }) {
        QTest::addRow("%s, own accent", isDark ? "dark" : "light") << isDark << QColor();
        QTest::addRow("%s, yellow accent", isDark ? "dark" : "light") << isDark << QColor(Qt::yellow);
    }
}

void KLVThemeTest::highContrastIsBlackAndWhite()
{
    QFETCH(bool, isDark);
    QFETCH(QColor, accent);

    const KLVTheme theme(KLVTheme::highContrastPalette(isDark, accent));

    QVERIFY(theme.isHighContrast());
    QCOMPARE(theme.isDark(), isDark);
    QCOMPARE(theme.hairline(), theme.text());
    QCOMPARE(theme.controlLine(), theme.text());
    for (const QColor &color :
        { theme.text(), theme.dimText(), theme.accent(), theme.readable(Qt::gray, theme.base()) })
        QVERIFY(KLVTheme::contrast(color, theme.base()) >= 7.0);
    QVERIFY(!KLVTheme(isDark ? KLVTheme::darkPalette() : KLVTheme::lightPalette()).isHighContrast());
}

void KLVThemeTest::badgeTextIsWhiteOnlyWhereItCanBeRead()
{
    QCOMPARE(KLVTheme::textOnBadge(QColor(0xd6, 0x45, 0x5d)), QColor(Qt::white));
    QCOMPARE(KLVTheme::textOnBadge(Qt::yellow), QColor(Qt::black));
    QCOMPARE(KLVTheme::textOnBadge(Qt::black), QColor(Qt::white));
}

void KLVThemeTest::badgeKeepsItsColourButInHighContrast()
{
    for (const char *name : { "#d6455d", "#2f7de1", "#ffe040", "#808080", "#000000" }) {
        const QColor color { QLatin1String(name) };
        QCOMPARE(KLVTheme(KLVTheme::lightPalette()).badge(color), color);
        QCOMPARE(KLVTheme(KLVTheme::darkPalette()).badge(color), color);
        for (const bool isDark : { false, true }) {
            const QColor badge = KLVTheme(KLVTheme::highContrastPalette(isDark)).badge(color);
            QVERIFY2(KLVTheme::contrast(KLVTheme::textOnBadge(badge), badge) >= 7.0, name);
        }
    }
}

VANTLE_TEST(KLVThemeTest)
#include "KLVThemeTest.moc"
