// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>

class QColor;
class QPainter;

// The small drawings on our buttons, as strokes, so that they are crisp at any
// scale and take the colour of the text.
enum class KLVSign { None, BackTwice, Back, Forward, ForwardTwice, Menu, Plus, Minus, Gear, Warning };

// Draws the sign in the middle of the rectangle; `unit` is the size of a point.
// Forward is to the left where people read from right to left.
void KLVDrawSign(QPainter &painter, KLVSign sign, const QRectF &rectangle, const QColor &color, qreal unit,
    Qt::LayoutDirection direction);
