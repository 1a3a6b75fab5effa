// SPDX-License-Identifier: MIT
#include "KLVSplitView.h"

#include "KLVSplitViewDivider.h"
#include "KLVTheme.h"

#include <QPainter>

#include <algorithm>

KLVSplitView::KLVSplitView(QWidget *parent)
    : QSplitter(Qt::Vertical, parent)
{
    setHandleWidth(dividerThickness);
}

QSplitterHandle *KLVSplitView::createHandle()
{
    return new KLVSplitViewDivider(this);
}

void KLVSplitView::resizeEvent(QResizeEvent *event)
{
    QSplitter::resizeEvent(event);
    noteCollapse();
}

int KLVSplitView::positionOfDivider() const
{
    return sizes().value(0);
}

double KLVSplitView::space() const
{
    return std::max(0, height() - handleWidth());
}

KLVSplitView::Limits KLVSplitView::limits() const
{
    auto *const self = const_cast<KLVSplitView *>(this);
    if (!m_delegate)
        return { 0, space() };
    const double least = m_delegate->splitView_constrainMinCoordinate_ofSubviewAt(self, 0, 0);
    const double most = m_delegate->splitView_constrainMaxCoordinate_ofSubviewAt(self, space(), 0);
    return { least, std::max(least, most) };
}

bool KLVSplitView::canCollapse(int index) const
{
    return !m_delegate || m_delegate->splitView_canCollapseSubview(const_cast<KLVSplitView *>(this), widget(index));
}

void KLVSplitView::setPosition_ofDividerAt(double position, int dividerIndex)
{
    if (dividerIndex != 0)
        return;
    const int upper = qRound(std::clamp(position, 0.0, space()));
    setSizes({ upper, qRound(space()) - upper });
    noteCollapse();
}

void KLVSplitView::dragDivider(double position)
{
    const Limits limits = this->limits();
    double target = std::clamp(position, limits.least, limits.most);
    if (position < limits.least / 2 && canCollapse(0))
        target = 0;
    else if (position > (limits.most + space()) / 2 && canCollapse(1))
        target = space();
    setPosition_ofDividerAt(target, 0);
}

void KLVSplitView::moveDivider(int points)
{
    // A pane that comes back has at once the least that it is to have.
    if (m_collapsed >= 0) {
        const bool opens = m_collapsed == 0 ? points > 0 : points < 0;
        if (opens)
            dragDivider(m_collapsed == 0 ? limits().least : limits().most);
        return;
    }
    const Limits limits = this->limits();
    setPosition_ofDividerAt(
        std::clamp(positionOfDivider() + static_cast<double>(points), limits.least, limits.most), 0);
}

void KLVSplitView::collapseSubview(int index)
{
    if (canCollapse(index))
        setPosition_ofDividerAt(index == 0 ? 0 : space(), 0);
}

void KLVSplitView::openSubviews()
{
    if (m_collapsed < 0)
        return;
    const Limits limits = this->limits();
    setPosition_ofDividerAt(std::clamp(static_cast<double>(m_openPosition), limits.least, limits.most), 0);
}

bool KLVSplitView::isSubviewCollapsed(int index) const
{
    return m_collapsed == index;
}

void KLVSplitView::noteCollapse()
{
    const QList<int> heights = sizes();
    if (heights.size() < 2 || heights.at(0) + heights.at(1) == 0)
        return;
    const auto collapsed = static_cast<int>(heights.indexOf(0));
    if (collapsed < 0 && limits().least <= heights.at(0) && heights.at(0) <= limits().most)
        m_openPosition = heights.at(0);
    if (collapsed == m_collapsed)
        return;
    m_collapsed = collapsed;
    Q_EMIT collapseDidChange();
}

void KLVSplitView::drawDividerInRect(QPainter &painter, const QRectF &rect) const
{
    constexpr double lineWidth = 0.5;
    constexpr double lineOffset = 0.5;
    const KLVTheme theme(palette());
    const double lineY = rect.y() + lineOffset;

    painter.save();
    painter.fillRect(rect, theme.window());
    painter.fillRect(QRectF(rect.x(), rect.bottom() - 1, rect.width(), 1), theme.hairline());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.controlLine(), lineWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(0, lineY), QPointF(rect.width(), lineY));
    painter.restore();
}
