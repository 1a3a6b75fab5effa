// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTimeEdit>

// A date picker that hands Return and Escape on, as "insertNewline" and
// "cancelOperation", to the controller of its window or sheet. Text that was
// typed is taken over first, so that Return acts on the date that is shown;
// Escape forgets it.
class KLVDatePicker final : public QDateTimeEdit
{
    Q_OBJECT

public:
    explicit KLVDatePicker(QWidget *parent = nullptr);

    // Whether something was typed that has not become the picker's date yet.
    bool hasPendingEdit() const { return m_hasPendingEdit; }
    // Whether the Return that is being handed on took over what had been typed.
    bool returnTookOverAnEdit() const { return m_returnTookOverAnEdit; }

Q_SIGNALS:
    // The keyboard went elsewhere; what had been typed is taken over.
    void focusLeft();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void discardEdit();

    bool m_hasPendingEdit = false;
    bool m_returnTookOverAnEdit = false;
};
