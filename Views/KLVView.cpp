// SPDX-License-Identifier: MIT
#include "KLVView.h"

#include "KLVControl.h"

#include <QPainter>

#include <algorithm>
#include <typeinfo>

KLVView::KLVView(const QString &name)
    : m_name(name)
{
}

KLVView::~KLVView() = default;

void KLVView::removeSubview(const KLVView &view)
{
    std::erase_if(m_subviews, [&](const auto &subview) { return subview.get() == &view; });
}

void KLVView::setLayoutDirection(Qt::LayoutDirection direction)
{
    m_layoutDirection = direction;
    for (const auto &subview : m_subviews)
        subview->setLayoutDirection(direction);
}

void KLVView::display(const KLVDrawingContext &drawing) const
{
    draw(drawing);
    for (const auto &subview : m_subviews) {
        if (subview->isHidden())
            continue;
        drawing.painter.save();
        drawing.painter.translate(subview->frame().topLeft());
        subview->display(drawing);
        drawing.painter.restore();
    }
}

void KLVView::draw(const KLVDrawingContext & /*drawing*/) const { }

bool KLVView::looksLike(const KLVView &other) const
{
    if (typeid(*this) != typeid(other) || m_isHidden != other.m_isHidden)
        return false;
    if (m_isHidden)
        return true;
    return m_frame == other.m_frame && m_layoutDirection == other.m_layoutDirection
        && std::ranges::equal(
            m_subviews, other.m_subviews, [](const auto &one, const auto &two) { return one->looksLike(*two); });
}

std::vector<KLVControl *> KLVView::usableControls()
{
    std::vector<KLVControl *> controls;
    for (const auto &subview : m_subviews) {
        if (subview->isHidden())
            continue;
        const auto inside = subview->usableControls();
        controls.insert(controls.end(), inside.begin(), inside.end());
    }
    return controls;
}

KLVControl *KLVView::controlAt(const QPointF &point)
{
    for (KLVControl *control : usableControls()) {
        const QRectF frame = frameOfDescendant(*control);
        if (control->clickableRect().translated(frame.topLeft()).contains(point))
            return control;
    }
    return nullptr;
}

QRectF KLVView::frameOfDescendant(const KLVView &view) const
{
    for (const auto &subview : m_subviews) {
        if (subview.get() == &view)
            return subview->frame();
        const QRectF inside = subview->frameOfDescendant(view);
        if (!inside.isNull())
            return inside.translated(subview->frame().topLeft());
    }
    return {};
}
