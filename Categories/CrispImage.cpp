// SPDX-License-Identifier: MIT
#include "CrispImage.h"

#include <QtMath>

QImage crispImage(const QSizeF &size, qreal devicePixelRatio)
{
    const QSizeF pixels = size * devicePixelRatio;
    if (pixels.isEmpty())
        return {};

    QImage image(qCeil(pixels.width()), qCeil(pixels.height()), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    return image;
}
