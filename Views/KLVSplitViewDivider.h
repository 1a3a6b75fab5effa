// SPDX-License-Identifier: MIT
#pragma once

#include <QSplitterHandle>

#include <optional>

class KLVSplitView;

// The divider of a split view: drawn by it, and moved by mouse or, while it has
// the keyboard, by Up, Down, Page Up, Page Down, Home and End.
class KLVSplitViewDivider final : public QSplitterHandle
{
    Q_OBJECT

public:
    explicit KLVSplitViewDivider(KLVSplitView *splitView);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    KLVSplitView *m_splitView;
    std::optional<int> m_grip; // where the divider was taken; absent while it is not
};
