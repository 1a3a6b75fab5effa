// SPDX-License-Identifier: MIT
#include "KLVColoredButtonCell.h"

#include "KLVImages.h"
#include "KLVTheme.h"

#include <QPainter>

using namespace Qt::StringLiterals;

QImage KLVColoredButtonCell::image(const QSizeF &size, qreal devicePixelRatio)
{
    return KLVImages::image(u"checkbox"_s, size, devicePixelRatio);
}

void KLVColoredButtonCell::drawImage_withFrame_inView(
    const QImage & /*image*/, const QRectF &frame, QPainter &view, const KLVTheme &theme) const
{
    constexpr double inset = 2.0;
    const qreal ratio = KLVImages::devicePixelRatio(view);
    view.drawImage(frame, tintImage_tintColor(image(frame.size(), ratio), m_imageTintColor));
    if (m_integerValue == 0)
        return;

    const double side = frame.width() - 2 * inset;
    const QRectF tick(frame.x() + frame.width() - side - inset, frame.y() + inset, side, side);
    view.drawImage(tick, KLVImages::image(u"check"_s, tick.size(), ratio, theme.text()));
}

QImage KLVColoredButtonCell::tintImage_tintColor(const QImage &image, const QColor &color)
{
    constexpr float fraction = 0.4F;
    const QRectF bounds(QPointF(0, 0), image.deviceIndependentSize());
    const auto empty = [&] {
        QImage layer(image.size(), QImage::Format_ARGB32_Premultiplied);
        layer.setDevicePixelRatio(image.devicePixelRatio());
        layer.fill(Qt::transparent);
        return layer;
    };

    QImage mask = empty();
    {
        QPainter painter(&mask);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(bounds, image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(bounds, color);
    }
    QImage result = empty();
    QPainter painter(&result);
    painter.setOpacity(static_cast<double>(fraction));
    painter.drawImage(bounds, image);
    painter.setOpacity(1.0);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationAtop);
    painter.drawImage(bounds, mask);
    return result;
}
