// SPDX-License-Identifier: MIT
#include "KLVDatePicker.h"

#include "KLVKeyBindings.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>

#include <utility>

KLVDatePicker::KLVDatePicker(QWidget *parent)
    : QDateTimeEdit(parent)
{
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_hasPendingEdit = true; });
    connect(this, &QDateTimeEdit::dateTimeChanged, this, [this] { m_hasPendingEdit = false; });
}

void KLVDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Escape) {
        QDateTimeEdit::keyPressEvent(event);
        return;
    }

    const QScopedValueRollback guard(
        m_returnTookOverAnEdit, event->key() == Qt::Key_Return && std::exchange(m_hasPendingEdit, false));
    if (event->key() == Qt::Key_Return)
        interpretText();
    else
        discardEdit();
    // Where no controller takes the message, the key itself goes on to the window or sheet.
    event->setAccepted(KLVKeyBindings::interpretKeyEvent(*event, this));
}

void KLVDatePicker::discardEdit()
{
    m_hasPendingEdit = false;
    const QSignalBlocker blocker(this);
    setDateTime(dateTime());
}

void KLVDatePicker::focusOutEvent(QFocusEvent *event)
{
    QDateTimeEdit::focusOutEvent(event);
    // A menu of the window only borrows the keyboard.
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    m_hasPendingEdit = false;
    Q_EMIT focusLeft();
}
