// SPDX-License-Identifier: MIT
#include "SheetSave.h"

#include "CalendarFolder.h"

using namespace Qt::StringLiterals;

std::unique_ptr<CalCalendarStore> storeOver(const CalendarFolder &folder)
{
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(folder.openWithoutWatching());
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

bool saveAsSheet(CalCalendarStore &store, const CalEventPtr &event, StoreError *error)
{
    const bool isFirstDone = saveFirstStep(store, event, error);
    return saveSecondStep(store, event, error) && isFirstDone;
}

bool saveFirstStep(CalCalendarStore &store, const CalEventPtr &event, StoreError *error)
{
    const std::optional<QString> title = event->title();
    event->setTitle(u"DUMBY "_s + title.value_or(QString()));
    const bool isDone = store.saveEvent_span_error(event, CalSpanThisEvent, error);
    event->setTitle(title);
    return isDone;
}

bool saveSecondStep(CalCalendarStore &store, const CalEventPtr &event, StoreError *error)
{
    return store.saveEvent_span_error(event, CalSpanAllEvents, error);
}
