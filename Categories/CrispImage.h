// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSizeF>

// A transparent image of a size in points, to be painted in points, with a pixel for every pixel of a
// display of that ratio. A null image for a size or ratio that leaves nothing to paint on.
QImage crispImage(const QSizeF &size, qreal devicePixelRatio);
