// SPDX-License-Identifier: MIT
#include "KLVTheme.h"

#include <cmath>

namespace
{

constexpr double minimumTextContrast = 4.5;
constexpr double highTextContrast = 7.1; // wanted are 7; drawing rounds
constexpr double contrastOfBlackAndWhite = 20.9;
constexpr double minimumBadgeContrast = 4.0;
constexpr double minimumLineContrast = 3.0;

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

struct Roles {
    QRgb window, base, alternate, button, text, dim, accent;
};

constexpr Roles lightRoles { 0xfff6f7f9, 0xffffffff, 0xffedf3fe, 0xffffffff, 0xff1d2025, 0xff6b7280, 0xff2f6fde };
constexpr Roles darkRoles { 0xff26282c, 0xff1e2023, 0xff232a37, 0xff33363b, 0xffe8eaed, 0xff9aa0a8, 0xff6ea1ff };

constexpr QRgb black = 0xff000000;
constexpr QRgb white = 0xffffffff;

// Away from the background, just as far as the contrast wants.
QColor moved(const QColor &color, const QColor &background, double wanted)
{
    const QColor goal = luminance(background) < 0.18 ? QColor(Qt::white) : QColor(Qt::black);
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const double share = static_cast<double>(step) / steps;
        const QColor candidate = KLVTheme::blended(goal, share, color); // NOLINT(readability-suspicious-call-argument)
        if (KLVTheme::contrast(candidate, background) >= wanted)
            return candidate;
    }
    return goal;
}

QPalette paletteOf(const Roles &roles, const QColor &accent)
{
    const QColor highlight = accent.isValid() ? accent : QColor(roles.accent);
    QPalette palette(QColor(roles.button), QColor(roles.window));
    palette.setColor(QPalette::Base, QColor(roles.base));
    palette.setColor(QPalette::AlternateBase, QColor(roles.alternate));
    palette.setColor(QPalette::WindowText, QColor(roles.text));
    palette.setColor(QPalette::Text, QColor(roles.text));
    palette.setColor(QPalette::ButtonText, QColor(roles.text));
    palette.setColor(QPalette::PlaceholderText, QColor(roles.dim));
    palette.setColor(QPalette::ToolTipBase, QColor(roles.base));
    palette.setColor(QPalette::ToolTipText, QColor(roles.text));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, KLVTheme::textOn(highlight));
    palette.setColor(QPalette::Link, highlight);
    const auto texts = { QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText };
    for (const QPalette::ColorRole role : texts)
        palette.setColor(QPalette::Disabled, role, KLVTheme::blended(QColor(roles.text), 0.4, QColor(roles.window)));
    return palette;
}

} // namespace

KLVTheme::KLVTheme(const QPalette &palette)
    : m_palette(palette)
    , m_isDark(palette.color(QPalette::Window).lightnessF() < 0.5F)
    , m_isHighContrast(contrast(palette.color(QPalette::Active, QPalette::WindowText),
                           palette.color(QPalette::Active, QPalette::Window))
          >= contrastOfBlackAndWhite)
{
}

QPalette KLVTheme::lightPalette(const QColor &accent)
{
    return paletteOf(lightRoles, accent);
}

QPalette KLVTheme::darkPalette(const QColor &accent)
{
    return paletteOf(darkRoles, accent);
}

QPalette KLVTheme::highContrastPalette(bool isDark, const QColor &accent)
{
    Roles roles = isDark ? Roles { black, black, 0xff101010, black, white, 0xffd0d0d0, 0xff9cc1ff }
                         : Roles { white, white, 0xfff0f0f0, white, black, 0xff404040, 0xff003a9e };
    const QColor wanted = accent.isValid() ? accent : QColor(roles.accent);
    return paletteOf(roles, moved(wanted, QColor(roles.base), highTextContrast));
}

QColor KLVTheme::dimText() const
{
    if (m_isHighContrast)
        return readable(QColor(m_isDark ? 0xffd0d0d0 : 0xff404040), base());
    return readable(QColor(m_isDark ? darkRoles.dim : lightRoles.dim), base());
}

QColor KLVTheme::hairline() const
{
    if (m_isHighContrast)
        return text();
    return m_isDark ? QColor(0x3a, 0x3d, 0x43) : QColor(0xd9, 0xdd, 0xe3);
}

QColor KLVTheme::controlLine() const
{
    if (m_isHighContrast)
        return text();
    return m_isDark ? QColor(0x4a, 0x4e, 0x55) : QColor(0xc9, 0xce, 0xd6);
}

QColor KLVTheme::focusLine() const
{
    return moved(moved(accent(), window(), minimumLineContrast), base(), minimumLineContrast);
}

QColor KLVTheme::overdue() const
{
    return m_isDark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb3, 0x26, 0x1e);
}

QColor KLVTheme::notice() const
{
    return m_isDark ? QColor(0x47, 0x3e, 0x24) : QColor(0xf2, 0xe8, 0xcc);
}

QColor KLVTheme::surface(const QColor &lightColor) const
{
    if (!m_isDark || lightColor.lightnessF() < 0.5F)
        return lightColor;

    // A light surface is white with a little colour in it; its counterpart is the dark base with
    // about as much of the same hue. The constants turn #edf3fe into #232a37.
    const float hue = lightColor.hslHueF();
    const double distance = 1.0 - lightColor.lightnessF();
    const double lightness = base().lightnessF() + 1.2 * distance;
    const double saturation = std::min(0.222, 0.25 * static_cast<double>(lightColor.hslSaturationF()));
    return QColor::fromHslF(hue < 0 ? 0.0F : hue, static_cast<float>(hue < 0 ? 0.0 : saturation),
        static_cast<float>(std::min(lightness, 0.3)));
}

QColor KLVTheme::readable(const QColor &color, const QColor &background) const
{
    return moved(color, background, m_isHighContrast ? highTextContrast : minimumTextContrast);
}

QColor KLVTheme::badge(const QColor &color) const
{
    return m_isHighContrast ? moved(color, textOnBadge(color), highTextContrast) : color;
}

QColor KLVTheme::textOn(const QColor &face)
{
    return contrast(Qt::white, face) >= minimumTextContrast ? QColor(Qt::white) : QColor(Qt::black);
}

QColor KLVTheme::textOnBadge(const QColor &badge)
{
    return contrast(Qt::white, badge) >= minimumBadgeContrast ? QColor(Qt::white) : QColor(Qt::black);
}

double KLVTheme::contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor KLVTheme::blended(const QColor &color, double alpha, const QColor &background)
{
    const auto mix = [&](float over, float under) { return static_cast<float>(over * alpha + under * (1.0 - alpha)); };
    return QColor::fromRgbF(mix(color.redF(), background.redF()), mix(color.greenF(), background.greenF()),
        mix(color.blueF(), background.blueF()));
}
