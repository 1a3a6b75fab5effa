// SPDX-License-Identifier: MIT
#include "DesktopAlerts.h"

#include <QApplication>
#include <QMessageBox>

using namespace Qt::StringLiterals;

void SystemAlerts::runModal(const QString &message)
{
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName(u"alert"_s);
    box.setIcon(QMessageBox::Warning);
    // The names in it come from a calendar: nothing in them may act as markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(message);
    box.addButton(QMessageBox::Ok);
    box.exec();
}
