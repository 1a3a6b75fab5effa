// SPDX-License-Identifier: MIT
#include "CalendarStoreBackend.h"

#include <QCoreApplication>

namespace
{

StoreError movesNothing(const CalCalendarItem &item)
{
    return { StoreError::Code::Invalid, item.title().value_or(QString()),
        item.calendar() ? item.calendar()->title() : QString(),
        QCoreApplication::translate("Vantle", "It cannot be moved into a calendar of another kind of storage.") };
}

} // namespace

Result<std::unique_ptr<CalDeparture>, StoreError> CalendarStoreBackend::sendEvent(CalEvent &event, CalSpan /*span*/)
{
    return movesNothing(event);
}

Result<std::unique_ptr<CalDeparture>, StoreError> CalendarStoreBackend::sendTask(CalTask &task)
{
    return movesNothing(task);
}

Result<void, StoreError> CalendarStoreBackend::takeInEvent(CalEvent &event, const QByteArray & /*text*/)
{
    return movesNothing(event);
}

Result<void, StoreError> CalendarStoreBackend::takeInTask(CalTask &task, const QByteArray & /*text*/)
{
    return movesNothing(task);
}
