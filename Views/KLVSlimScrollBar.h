// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollBar>

// A vertical scroll bar painted by ourselves: a rounded handle and no trough.
class KLVSlimScrollBar final : public QScrollBar
{
    Q_OBJECT

public:
    explicit KLVSlimScrollBar(QWidget *parent = nullptr);

    static constexpr int barWidth = 10; // pixels

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
