// SPDX-License-Identifier: MIT
#include "DayJson.h"

#include <CalEvent.h>
#include <CalTask.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace
{

QJsonValue titleOf(const CalCalendarItem &item)
{
    return item.title() ? QJsonValue(*item.title()) : QJsonValue(QString());
}

qint64 exclusiveEnd(const CalEvent &event)
{
    return event.isAllDay() ? event.endDate().date().addDays(1).startOfDay().toSecsSinceEpoch()
                            : event.endDate().toSecsSinceEpoch();
}

} // namespace

QByteArray dayJson(const CalEventList &events, const CalTaskList &tasks)
{
    QJsonArray eventList;
    for (const CalEventPtr &event : events) {
        eventList << QJsonObject { { u"uid"_s, event->origin().plainUid }, { u"title"_s, titleOf(*event) },
            { u"all_day"_s, event->isAllDay() }, { u"start_epoch"_s, event->startDate().toSecsSinceEpoch() },
            { u"end_epoch"_s, exclusiveEnd(*event) } };
    }
    QJsonArray taskList;
    for (const CalTaskPtr &task : tasks)
        taskList << QJsonObject { { u"uid"_s, task->origin().plainUid }, { u"title"_s, titleOf(*task) } };
    return QJsonDocument(QJsonObject { { u"events"_s, eventList }, { u"todos"_s, taskList } }).toJson();
}
