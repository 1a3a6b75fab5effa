// SPDX-License-Identifier: MIT
#include "PlainMessageBox.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

PlainMessageBox::PlainMessageBox(QMessageBox::Icon icon, const QString &text)
    : QMessageBox(QApplication::activeWindow())
{
    setIcon(icon);
    // The box's second text would not take this format, so everything stands in the first.
    setTextFormat(Qt::PlainText);
    setText(text);
    // As Qt calls it.
    if (auto *const picture = findChild<QLabel *>(u"qt_msgboxex_icon_label"_s)) {
        picture->setAccessibleName(icon == QMessageBox::Question ? QCoreApplication::translate("Vantle", "Question")
                                                                 : QCoreApplication::translate("Vantle", "Warning"));
    }
}

QPushButton *PlainMessageBox::addOk()
{
    QPushButton *const button = addButton(QMessageBox::Ok);
    button->setText(QCoreApplication::translate("Vantle", "OK"));
    return button;
}

QPushButton *PlainMessageBox::addCancel()
{
    QPushButton *const button = addButton(QMessageBox::Cancel);
    button->setText(QCoreApplication::translate("Vantle", "Cancel"));
    return button;
}
