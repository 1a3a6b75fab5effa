// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QRectF>
#include <QString>

class KLVTheme;
class QPainter;

// What an accordion's delegate draws.
namespace KLVDrawings
{

// Opacity of the calendar's colour behind a selected row.
inline constexpr double selectedBackgroundAlpha = 0.15;

// "Helvetica-Bold" at 12 points in light grey, centred in the frame's width, 5 points from the top.
void drawPlaceholder(
    QPainter &painter, const KLVTheme &theme, const QString &text, const QRectF &frame, const QFont &personsFont);
QFont placeholderFont(const QFont &personsFont);

// The line around a selected row in that frame, as a shape.
QPainterPath selectedRing(const QRectF &frame);
// A rounded rectangle 2 points inside the frame: the colour at 0.15, and a line of 3 points around it.
void drawSelectedBackground(QPainter &painter, const QRectF &frame, const QColor &color);

// The rounded handle of a slim scroll bar, in the middle of the rectangle that it may fill.
void drawScrollHandle(
    QPainter &painter, const KLVTheme &theme, const QRectF &slot, Qt::Orientation orientation, bool isTouched);

} // namespace KLVDrawings
