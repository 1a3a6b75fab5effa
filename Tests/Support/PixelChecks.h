// SPDX-License-Identifier: MIT
#pragma once

#include <KLVTheme.h>

#include <QImage>

#include <algorithm>
#include <cstdlib>
#include <map>

// What stands on the screen, for tests that link the views.

inline bool isNear(const QColor &one, const QColor &other, int tolerance = 3)
{
    return std::abs(one.red() - other.red()) <= tolerance && std::abs(one.green() - other.green()) <= tolerance
        && std::abs(one.blue() - other.blue()) <= tolerance;
}

// The contrast of a text: the most frequent colour of its rectangle is what it stands on, the one farthest from it is
// that of its strokes. Drawn four times as fine, strokes have their full colour.
inline double measuredContrast(const QImage &image)
{
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    const auto most = std::ranges::max_element(counts, {}, [](const auto &entry) { return entry.second; });
    double best = 1;
    for (const auto &[color, count] : counts)
        best = std::max(best, KLVTheme::contrast(QColor(color), QColor(most->first)));
    return best;
}

// The ways our colours come.
enum class Scheme { Light, Dark, HighContrastLight, HighContrastDark };

inline QPalette paletteOf(Scheme scheme)
{
    switch (scheme) {
    case Scheme::Light:
        return KLVTheme::lightPalette();
    case Scheme::Dark:
        return KLVTheme::darkPalette();
    case Scheme::HighContrastLight:
        return KLVTheme::highContrastPalette(false);
    case Scheme::HighContrastDark:
        return KLVTheme::highContrastPalette(true);
    }
    return {};
}

// What text has to reach, for people who asked for more or did not.
inline double wantedContrast(Scheme scheme, double usual = 4.5)
{
    constexpr double high = 7;
    return scheme == Scheme::HighContrastLight || scheme == Scheme::HighContrastDark ? high : usual;
}
