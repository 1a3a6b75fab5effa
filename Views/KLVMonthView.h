// SPDX-License-Identifier: MIT
#pragma once

#include "KLVSign.h"

#include <QCalendarWidget>

// The month that a date picker unfolds: calm as the rest of our surfaces, in
// the colours of the palette. Qt's own has a header in the accent colour, red
// week ends and arrows of another family.
class KLVMonthView final : public QCalendarWidget
{
    Q_OBJECT

public:
    explicit KLVMonthView(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void takeColors();
    void takeSign(const QString &button, KLVSign sign, const QString &name);
};
