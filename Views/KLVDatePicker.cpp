// SPDX-License-Identifier: MIT
#include "KLVDatePicker.h"

#include "KLVKeyBindings.h"

#include <QKeyEvent>

void KLVDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Escape) {
        QDateTimeEdit::keyPressEvent(event);
        return;
    }

    if (event->key() == Qt::Key_Return)
        interpretText();
    // Where no controller takes the message, the key itself goes on to the window or sheet.
    event->setAccepted(KLVKeyBindings::interpretKeyEvent(*event, this));
}
