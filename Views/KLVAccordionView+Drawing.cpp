// SPDX-License-Identifier: MIT
#include "KLVAccordionView.h"

#include "KLVDrawings.h"
#include "KLVTheme.h"
#include "KLVView.h"

#include <QPaintEvent>
#include <QPainter>

void KLVAccordionView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    m_graphicsContext = &painter;
    drawRect(painter, event->rect());
    m_graphicsContext = nullptr;
}

void KLVAccordionView::drawRect(QPainter &painter, const QRectF &dirtyRect)
{
    if (m_representedObjects.isEmpty()) {
        if (m_delegate && m_delegate->respondsToAccordionView_drawPlaceHolderBackgroundInFrame())
            m_delegate->accordionView_drawPlaceHolderBackgroundInFrame(this, frameRectangle());
        return;
    }

    const KLVTheme theme(palette());
    // Each text is written in its own direction, wherever the person's lines begin.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    for (qsizetype index = 0; index < m_accordionViewItems.size(); ++index) {
        const KLVAccordionViewItemPtr item = m_accordionViewItems.at(index);
        const RowBackground background = backgroundOfRow(index);
        drawBackgroundOfRow(item, background);

        const KLVView *const view = item->view();
        if (!view || view->isHidden() || !view->frame().intersects(dirtyRect))
            continue;
        const bool isCurrent = hasFocus() && !m_currentControl.isNull() && item->isSelected();
        const KLVDrawingContext context { painter, theme, backgroundColor(theme, background, *item),
            isCurrent ? m_currentControl.name : QString() };
        painter.save();
        painter.setClipRect(view->frame(), Qt::IntersectClip);
        painter.translate(view->frame().topLeft());
        view->display(context);
        painter.restore();
    }
}

KLVAccordionView::RowBackground KLVAccordionView::backgroundOfRow(qsizetype index) const
{
    if (containsEqualObject(m_selectedObjects, m_accordionViewItems.at(index)->representedObject()))
        return RowBackground::Selected;
    return index % 2 == 0 ? RowBackground::Alternate : RowBackground::Normal;
}

void KLVAccordionView::drawBackgroundOfRow(const KLVAccordionViewItemPtr &item, RowBackground background)
{
    const KeyValueObjectPtr object = item->representedObject();
    const QRectF frame = item->view() ? item->view()->frame() : QRectF();
    const KLVTheme theme(palette());
    switch (background) {
    case RowBackground::Selected:
        if (m_delegate && m_delegate->respondsToAccordionView_drawSelectedBackgroundForItem_frame())
            m_delegate->accordionView_drawSelectedBackgroundForItem_frame(this, object, frame);
        else
            m_graphicsContext->fillRect(frame, theme.surface(m_selectedBackgroundColor));
        return;
    case RowBackground::Alternate:
        if (m_delegate && m_delegate->respondsToAccordionView_drawAltBackgroundForItem_frame())
            m_delegate->accordionView_drawAltBackgroundForItem_frame(this, object, frame);
        else if (m_alternativeBackgroundColor.isValid())
            m_graphicsContext->fillRect(frame, theme.surface(m_alternativeBackgroundColor));
        return;
    case RowBackground::Normal:
        if (m_delegate && m_delegate->respondsToAccordionView_drawBackgroundForItem_frame())
            m_delegate->accordionView_drawBackgroundForItem_frame(this, object, frame);
        return;
    }
}

// What text in the row stands on, for choosing colours that can be read there.
QColor KLVAccordionView::backgroundColor(
    const KLVTheme &theme, RowBackground background, const KLVAccordionViewItem &item) const
{
    if (background == RowBackground::Alternate && m_alternativeBackgroundColor.isValid())
        return theme.surface(m_alternativeBackgroundColor);
    if (background == RowBackground::Selected && item.tintColor().isValid())
        return KLVTheme::blended(item.tintColor(), KLVDrawings::selectedBackgroundAlpha, theme.base());
    if (background == RowBackground::Selected && m_selectedBackgroundColor.isValid())
        return theme.surface(m_selectedBackgroundColor);
    return theme.base();
}

// Most rebuilds bring rows that look exactly like those before. Only the others are painted again.
void KLVAccordionView::repaintWhatLooksDifferent()
{
    std::vector<ShownRow> rows;
    rows.reserve(static_cast<std::size_t>(m_accordionViewItems.size()));
    for (qsizetype index = 0; index < m_accordionViewItems.size(); ++index) {
        const KLVAccordionViewItemPtr &item = m_accordionViewItems.at(index);
        const QRectF frame = item->view() ? item->view()->frame() : QRectF();
        rows.push_back({ item->sharedView(), frame, backgroundOfRow(index), item->tintColor() });
    }
    const std::vector<ShownRow> before = std::exchange(m_shownRows, std::move(rows));

    if (before.empty() || m_shownRows.empty()) {
        if (before.size() != m_shownRows.size())
            update();
        return;
    }
    const std::size_t count = std::max(before.size(), m_shownRows.size());
    for (std::size_t index = 0; index < count; ++index) {
        const ShownRow *const then = index < before.size() ? &before[index] : nullptr;
        const ShownRow *const now = index < m_shownRows.size() ? &m_shownRows[index] : nullptr;
        if (then && now && then->looksLike(*now))
            continue;
        if (then)
            update(then->frame.toAlignedRect());
        if (now)
            update(now->frame.toAlignedRect());
    }
}

bool KLVAccordionView::ShownRow::looksLike(const ShownRow &other) const
{
    if (frame != other.frame || background != other.background || tint != other.tint)
        return false;
    return view == other.view || (view && other.view && view->looksLike(*other.view));
}

void KLVAccordionView::setNeedsDisplay(const KLVAccordionViewItem &item)
{
    if (item.sharedView())
        update(item.sharedView()->frame().toAlignedRect());
}
