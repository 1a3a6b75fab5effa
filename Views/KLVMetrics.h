// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>

// Sizes that follow the person's font: 13 pixels are the size that all stated
// measures belong to. With a smaller font sizes of boxes stay as stated.
class KLVMetrics final
{
public:
    explicit KLVMetrics(const QFont &personsFont);

    // A stated length at the person's font, in whole points.
    double length(double stated) const;
    // The same for something that holds a line of text in that font.
    double height(double stated, const QFont &font) const;
    // The person's font at a stated size (13 is the font itself) and weight.
    QFont font(int statedPixels, int weight = QFont::Normal) const;

private:
    QFont m_font;
    int m_pixels;
};
