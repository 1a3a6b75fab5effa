// SPDX-License-Identifier: MIT
#include "DesktopAlerts.h"

#include "PlainMessageBox.h"

using namespace Qt::StringLiterals;

void SystemAlerts::runModal(const QString &message)
{
    PlainMessageBox box(QMessageBox::Warning, message);
    box.setObjectName(u"alert"_s);
    box.addOk();
    box.exec();
}
