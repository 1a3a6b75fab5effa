// SPDX-License-Identifier: MIT
#include "KLVSplitView.h"

#include "KLVTheme.h"

#include <QPainter>
#include <QSplitterHandle>

namespace
{

class Divider final : public QSplitterHandle
{
public:
    explicit Divider(KLVSplitView *splitView)
        : QSplitterHandle(Qt::Vertical, splitView)
        , m_splitView(splitView)
    {
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        m_splitView->drawDividerInRect(painter, rect());
    }

private:
    KLVSplitView *m_splitView;
};

} // namespace

KLVSplitView::KLVSplitView(QWidget *parent)
    : QSplitter(Qt::Vertical, parent)
{
    setHandleWidth(dividerThickness);
}

QSplitterHandle *KLVSplitView::createHandle()
{
    return new Divider(this);
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
