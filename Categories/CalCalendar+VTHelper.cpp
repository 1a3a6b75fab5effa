// SPDX-License-Identifier: MIT
#include "CalCalendar+VTHelper.h"

#include "CrispImage.h"

#include <QPainter>

QImage colorDot(const CalCalendar &calendar, qreal devicePixelRatio)
{
    constexpr QSizeF size(10, 10);
    QImage image = crispImage(size, devicePixelRatio);
    if (image.isNull())
        return image;

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(calendar.color());
    painter.drawEllipse(QRectF({}, size));
    return image;
}
