// SPDX-License-Identifier: MIT
#pragma once

#include <QSplitter>

class QPainter;

// A split view, one pane above the other, whose divider carries a hairline.
class KLVSplitView final : public QSplitter
{
    Q_OBJECT

public:
    explicit KLVSplitView(QWidget *parent = nullptr);

    static constexpr int dividerThickness = 8;

    // The plain divider, and half a point of line along the rectangle's upper edge, from x 0.
    void drawDividerInRect(QPainter &painter, const QRectF &rect) const;

protected:
    QSplitterHandle *createHandle() override;
};
