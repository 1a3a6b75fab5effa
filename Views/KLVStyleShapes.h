// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPainterPath>

// Measures and shapes that the parts of KLVStyle share. Stated lengths are
// points at a font of 13 pixels.
namespace KLVStyleShapes
{

inline constexpr qreal cornerRadius = 6;
inline constexpr qreal focusWidth = 2;
inline constexpr qreal fieldHeight = 28;
inline constexpr qreal fieldMargin = 9; // from the edge of a field to its text
inline constexpr qreal indicatorSize = 14;
inline constexpr qreal messageIconSize = 32;

// A stated length at the application's font, in whole pixels.
int points(qreal stated);
// The same for a box around a line of the application's font, with room above and below.
int lineBox(qreal stated);

// Half a line inside the rectangle, so that a line of one pixel lies on whole ones.
QPainterPath outline(const QRectF &rect, qreal radius);

QColor halfway(const QColor &one, const QColor &other);

} // namespace KLVStyleShapes
