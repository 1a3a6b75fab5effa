// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

// One line of large plain text that is cut at its end, with an ellipsis, where
// the place is short. The whole text is then its tool tip.
class KLVTitleLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit KLVTitleLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    void takeFont();
    QString shownText() const;
};
