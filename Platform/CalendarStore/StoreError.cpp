// SPDX-License-Identifier: MIT
#include "StoreError.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

QString StoreError::message() const
{
    const QString what = calendar.isEmpty()
        ? QCoreApplication::translate("Vantle", "“%1” was not saved.").arg(item)
        : QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not saved.").arg(item, calendar);
    return reason.isEmpty() ? what : what + u"\n"_s + reason;
}
