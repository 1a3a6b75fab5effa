// SPDX-License-Identifier: MIT
#pragma once

#include "KLVColoredButtonCell.h"

#include <QAbstractButton>

// One row of a table of check boxes: the cell's box, and its title beside it.
//
// A title that is too long is elided; a tool tip then shows the whole of it. A cell
// with a remark gets a warning sign, and the remark is in the tool tip and told to
// assistive technology.
class KLVCheckBoxTableRow final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit KLVCheckBoxTableRow(QWidget *parent = nullptr);

    const KLVColoredButtonCell &cell() const { return m_cell; }
    // A cell that looks the same repaints nothing. The cell's value becomes the button's.
    void setCell(const KLVColoredButtonCell &cell);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // A key that leads to another row: so many rows down.
    void moveWanted(int rows);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool event(QEvent *event) override;

private:
    QRectF boxRectangle() const;
    QRectF signRectangle() const;
    QRect textRectangle() const;
    QString shownTitle() const;
    QString toolTipText() const;

    KLVColoredButtonCell m_cell;
};
