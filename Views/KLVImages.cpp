// SPDX-License-Identifier: MIT
#include "KLVImages.h"

#include <CrispImage.h>

#include <QCache>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace
{

constexpr int rememberedImages = 200;

QCache<QString, QImage> &rendered()
{
    static QCache<QString, QImage> cache(rememberedImages);
    return cache;
}

QImage render(const QString &name, const QSizeF &size, qreal devicePixelRatio)
{
    QSvgRenderer renderer(u":/images/%1.svg"_s.arg(name));
    if (!renderer.isValid())
        return {};
    QImage image = crispImage(size, devicePixelRatio);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(QPointF(0, 0), size));
    return image;
}

QImage colored(QImage image, const QColor &color)
{
    if (image.isNull())
        return image;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), image.deviceIndependentSize()), color);
    return image;
}

} // namespace

// A resource inside a static library is linked in only where it is asked for by name.
static void initializeResources()
{
    Q_INIT_RESOURCE(resources);
}

QImage KLVImages::image(const QString &name, const QSizeF &size, qreal devicePixelRatio)
{
    return image(name, size, devicePixelRatio, {});
}

QImage KLVImages::image(const QString &name, const QSizeF &size, qreal devicePixelRatio, const QColor &color)
{
    initializeResources();
    const QString key = u"%1 %2 %3 %4 %5"_s.arg(name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(devicePixelRatio)
                            .arg(color.isValid() ? color.name(QColor::HexArgb) : QString());
    if (const QImage *known = rendered().object(key))
        return *known;
    QImage made = render(name, size, devicePixelRatio);
    if (color.isValid())
        made = colored(std::move(made), color);
    rendered().insert(key, new QImage(made));
    return made;
}

qreal KLVImages::devicePixelRatio(const QPainter &painter)
{
    // A widget that is rendered into an image is painted with the image's ratio, not its own.
    const QPaintEngine *const engine = painter.paintEngine();
    const QPaintDevice *const device = engine && engine->paintDevice() ? engine->paintDevice() : painter.device();
    return device ? device->devicePixelRatioF() : 1.0;
}
