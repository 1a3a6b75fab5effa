// SPDX-License-Identifier: MIT
#include "KLVPopUpButton.h"

#include "KLVPopUpButtonAccessibility.h"
#include "KLVText.h"

#include <QKeyEvent>
#include <QStandardItemModel>
#include <QWheelEvent>

KLVPopUpButton::KLVPopUpButton(QWidget *parent)
    : QComboBox(parent)
{
    KLVPopUpButtonAccessibility::install();
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(
        this, &QComboBox::currentIndexChanged, this, [this] { KLVPopUpButtonAccessibility::currentDidChange(*this); });
}

void KLVPopUpButton::setItemDisabled(int index, const QString &reason)
{
    // Without a model of one's own a combo box has this one.
    QStandardItem *const item = qobject_cast<QStandardItemModel *>(model())->item(index);
    item->setEnabled(false);
    item->setToolTip(KLVText::toolTip(reason));
    item->setAccessibleDescription(reason);
}

bool KLVPopUpButton::isItemEnabled(int index) const
{
    return model()->index(index, modelColumn()).flags().testFlag(Qt::ItemIsEnabled);
}

void KLVPopUpButton::choose(int index)
{
    hidePopup();
    setCurrentIndex(index);
    Q_EMIT activated(index);
    Q_EMIT textActivated(itemText(index));
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
