// SPDX-License-Identifier: MIT
#include "KLVPopUpButton.h"

#include <QKeyEvent>
#include <QStandardItemModel>
#include <QWheelEvent>

KLVPopUpButton::KLVPopUpButton(QWidget *parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

void KLVPopUpButton::setItemDisabled(int index, const QString &reason)
{
    // Without a model of one's own a combo box has this one.
    QStandardItem *const item = qobject_cast<QStandardItemModel *>(model())->item(index);
    item->setEnabled(false);
    item->setToolTip(reason.toHtmlEscaped());
    item->setAccessibleDescription(reason);
}

void KLVPopUpButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_F4:
        showPopup();
        event->accept();
        break;
    default:
        event->ignore();
    }
}

void KLVPopUpButton::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
