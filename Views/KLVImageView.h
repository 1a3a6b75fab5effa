// SPDX-License-Identifier: MIT
#pragma once

#include "KLVView.h"

#include <QImage>
#include <QVariant>

#include <functional>

// Shows an image that is made for the display's pixel ratio when it is drawn.
class KLVImageView final : public KLVView
{
public:
    using Source = std::function<QImage(qreal devicePixelRatio)>;
    using KLVView::KLVView;

    // Images with equal descriptions look alike.
    void setImage(Source source, const QVariant &description);
    QImage image(qreal devicePixelRatio) const { return m_source ? m_source(devicePixelRatio) : QImage(); }

    bool looksLike(const KLVView &other) const override;

protected:
    void draw(const KLVDrawingContext &drawing) const override;

private:
    Source m_source;
    QVariant m_description;
};
