// SPDX-License-Identifier: MIT
#include "KLVImageView.h"

#include "KLVImages.h"

#include <QPainter>

void KLVImageView::setImage(Source source, const QVariant &description)
{
    m_source = std::move(source);
    m_description = description;
}

bool KLVImageView::looksLike(const KLVView &other) const
{
    return KLVView::looksLike(other) && m_description == static_cast<const KLVImageView &>(other).m_description;
}

void KLVImageView::draw(const KLVDrawingContext &drawing) const
{
    const QImage shown = image(KLVImages::devicePixelRatio(drawing.painter));
    if (!shown.isNull())
        drawing.painter.drawImage(QRectF(QPointF(0, 0), frame().size()), shown);
}
