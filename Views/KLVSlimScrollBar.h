// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QScrollBar>

#include <functional>

// A vertical scroll bar painted by ourselves: a rounded handle and no trough.
class KLVSlimScrollBar final : public QScrollBar
{
    Q_OBJECT

public:
    explicit KLVSlimScrollBar(QWidget *parent = nullptr);

    static constexpr int barWidth = 10; // pixels

    // A shape in the bar's coordinates that the handle lies under instead of over. Asked for at every painting.
    void setCover(std::function<QPainterPath()> cover) { m_cover = std::move(cover); }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::function<QPainterPath()> m_cover;
};
