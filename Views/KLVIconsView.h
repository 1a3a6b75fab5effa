// SPDX-License-Identifier: MIT
#pragma once

#include "KLVView.h"

#include <QStringList>

// A line of small signs, dim, each as high as the view.
class KLVIconsView final : public KLVView
{
public:
    using KLVView::KLVView;

    // Names of our own drawings, from the left.
    const QStringList &icons() const { return m_icons; }
    void setIcons(const QStringList &icons) { m_icons = icons; }

    bool looksLike(const KLVView &other) const override;

protected:
    void draw(const KLVDrawingContext &drawing) const override;

private:
    QStringList m_icons;
};
