// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QSizeF>
#include <QString>

class QPainter;

// Our own small drawings: resources that are painted in any colour, at any scale.
namespace KLVImages
{

// As drawn, with a pixel for every pixel of a display of that ratio. Null for an unknown name.
QImage image(const QString &name, const QSizeF &size, qreal devicePixelRatio);
// Its shape in one colour.
QImage image(const QString &name, const QSizeF &size, qreal devicePixelRatio, const QColor &color);

qreal devicePixelRatio(const QPainter &painter);

} // namespace KLVImages
