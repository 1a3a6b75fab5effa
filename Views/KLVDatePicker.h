// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTimeEdit>

// A date picker that hands Return and Escape on, as "insertNewline" and
// "cancelOperation", to the controller of its window or sheet. Text that was
// typed is taken over first, so that Return acts on the date that is shown.
class KLVDatePicker final : public QDateTimeEdit
{
    Q_OBJECT

public:
    using QDateTimeEdit::QDateTimeEdit;

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
