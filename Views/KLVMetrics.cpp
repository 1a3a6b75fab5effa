// SPDX-License-Identifier: MIT
#include "KLVMetrics.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double statedFontPixels = 13.0;

} // namespace

KLVMetrics::KLVMetrics(const QFont &personsFont)
    : m_font(personsFont)
    , m_pixels(QFontInfo(personsFont).pixelSize())
{
}

double KLVMetrics::length(double stated) const
{
    return std::round(stated * std::max(1.0, m_pixels / statedFontPixels));
}

double KLVMetrics::height(double stated, const QFont &font) const
{
    return std::max(length(stated), std::ceil(QFontMetricsF(font).height()));
}

QFont KLVMetrics::font(int statedPixels, int weight) const
{
    QFont font = m_font;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(statedPixels * m_pixels / statedFontPixels))));
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}
