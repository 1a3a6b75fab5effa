// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

// The cross in a recorder field. For the pointer and assistive technology; by
// keyboard the field itself is cleared with Delete.
class SRRecorderClearButton final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit SRRecorderClearButton(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
