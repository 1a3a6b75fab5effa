// SPDX-License-Identifier: MIT
#include "ContractTest.h"

namespace
{

constexpr int longestWait = 3 * 1000; // milliseconds: three times the goal for another program's change

void waitForNotification(CalCalendarStore &store, const std::function<void()> &change)
{
    const QSignalSpy posted(&store, &CalCalendarStore::notificationPosted);
    change();
    QTRY_VERIFY_WITH_TIMEOUT(!posted.isEmpty(), longestWait);
}

} // namespace

void ContractTest::putAndWait(const QString &calendarUid, const QString &plainUid, const QByteArray &components) const
{
    waitForNotification(store(), [&] { fixture().put(calendarUid, plainUid, components); });
}

void ContractTest::takeAwayAndWait(const QString &calendarUid, const QString &plainUid) const
{
    waitForNotification(store(), [&] { fixture().takeAway(calendarUid, plainUid); });
}

bool ContractTest::save(const CalEventPtr &event, CalSpan span)
{
    m_refusal = {};
    return store().saveEvent_span_error(event, span, &m_refusal);
}

bool ContractTest::save(const CalTaskPtr &task)
{
    m_refusal = {};
    return store().saveTask_error(task, &m_refusal);
}

bool ContractTest::remove(const CalEventPtr &event, CalSpan span)
{
    m_refusal = {};
    return store().removeEvent_span_error(event, span, &m_refusal);
}

bool ContractTest::remove(const CalTaskPtr &task)
{
    m_refusal = {};
    return store().removeTask_error(task, &m_refusal);
}

bool ContractTest::undo()
{
    m_refusal = {};
    return store().undoRemoval_error(&m_refusal);
}

bool ContractTest::isRefusedAs(StoreError::Code code, const QString &item, const QString &calendar) const
{
    return m_refusal.code == code && m_refusal.item == item && m_refusal.calendar == calendar
        && !m_refusal.reason.isEmpty();
}
