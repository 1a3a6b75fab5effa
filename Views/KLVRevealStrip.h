// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

// A slim strip along the window's upper edge that brings back what is hidden
// above it.
class KLVRevealStrip final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit KLVRevealStrip(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
