// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

// The name of a group of controls: quiet, and bolder than they are. Plain text.
class KLVHeading final : public QLabel
{
    Q_OBJECT

public:
    explicit KLVHeading(const QString &text, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    void takeFont();
};
