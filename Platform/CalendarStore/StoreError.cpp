// SPDX-License-Identifier: MIT
#include "StoreError.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace
{

QString sentenceOfItem(StoreError::Action action)
{
    switch (action) {
    case StoreError::Action::Remove:
        return QCoreApplication::translate("Vantle", "“%1” was not deleted.");
    case StoreError::Action::Restore:
        return QCoreApplication::translate("Vantle", "“%1” was not restored.");
    case StoreError::Action::Save:
        break;
    }
    return QCoreApplication::translate("Vantle", "“%1” was not saved.");
}

QString sentenceOfItemInCalendar(StoreError::Action action)
{
    switch (action) {
    case StoreError::Action::Remove:
        return QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not deleted.");
    case StoreError::Action::Restore:
        return QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not restored.");
    case StoreError::Action::Save:
        break;
    }
    return QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not saved.");
}

} // namespace

QString StoreError::message() const
{
    const QString what
        = calendar.isEmpty() ? sentenceOfItem(action).arg(item) : sentenceOfItemInCalendar(action).arg(item, calendar);
    return reason.isEmpty() ? what : what + u"\n"_s + reason;
}
