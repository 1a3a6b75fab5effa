// SPDX-License-Identifier: MIT
#include "CalTask.h"

#include <QMetaProperty>

using namespace Qt::StringLiterals;

void CalTask::setDueDate(const std::optional<QDateTime> &instant)
{
    assign(u"dueDate"_s, m_dueDate, instant);
}

void CalTask::setCompletedDate(const std::optional<QDateTime> &instant)
{
    assign(u"completedDate"_s, m_completedDate, instant);
}

void CalTask::setIsCompleted(bool isCompleted)
{
    assign(u"isCompleted"_s, m_isCompleted, isCompleted);
}

void CalTask::setPriority(int priority)
{
    assign(u"priority"_s, m_priority, priority);
}

void CalTask::markAsRead()
{
    m_asRead.reset(); // the copy holds values, not a chain of earlier copies
    const auto copy = std::make_shared<CalTask>(*this);
    copy->takeOwnAlarms();
    m_asRead = copy;
}

QVariant CalTask::valueForKey(const QString &key) const
{
    const int index = staticMetaObject.indexOfProperty(key.toLatin1().constData());
    return index < 0 ? QVariant() : staticMetaObject.property(index).readOnGadget(this);
}
