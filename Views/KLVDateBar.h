// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class KLVBarButton;
class KLVDateNavigator;
class QLabel;

// The top of the window: the shown date, the buttons for new items and for
// the menu, and the navigator, over a hairline. Says nothing of what they do.
class KLVDateBar final : public QWidget
{
    Q_OBJECT

public:
    explicit KLVDateBar(QWidget *parent = nullptr);

    QLabel *dateLabel() const { return m_dateLabel; }
    KLVDateNavigator *dateNavigator() const { return m_dateNavigator; }
    KLVBarButton *newButton() const { return m_newButton; }
    KLVBarButton *menuButton() const { return m_menuButton; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void takeMeasures();

    QLabel *m_dateLabel;
    KLVBarButton *m_newButton;
    KLVBarButton *m_menuButton;
    KLVDateNavigator *m_dateNavigator;
};
