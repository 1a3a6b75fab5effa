// SPDX-License-Identifier: MIT
#include "TaskPatch.h"

#include <CalTask.h>

#include <ICalendarItem.h>
#include <TextPatcher.h>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

QByteArray utcText(const QDateTime &instant)
{
    return instant.toUTC().toString(u"yyyyMMdd'T'HHmmss'Z'"_s).toLatin1();
}

// One component of the text while its lines change.
class Patch final
{
public:
    Patch(const QByteArray &text, const ICalendar::Item &item)
        : m_patcher(text)
        , m_item(item)
    {
    }

    void setText(const QByteArray &name, const std::optional<QString> &text)
    {
        setOrRemove(name, text ? std::optional(ICalendar::escapedText(*text)) : std::nullopt);
    }

    void setOrRemove(const QByteArray &name, const std::optional<QByteArray> &value, const QByteArray &parameters = {})
    {
        if (value)
            m_patcher.setProperty(m_item.component, name, *value, parameters);
        else
            m_patcher.removeProperty(m_item.component, name);
    }

    void complete(const QDateTime &instant)
    {
        // A completion date that is there tells when it was done, and stays.
        if (!m_patcher.property(m_item.component, "COMPLETED"))
            setOrRemove("COMPLETED", utcText(instant));
        setOrRemove("PERCENT-COMPLETE", "100");
        setOrRemove("STATUS", "COMPLETED");
    }

    void open()
    {
        setOrRemove("COMPLETED", std::nullopt);
        setOrRemove("PERCENT-COMPLETE", std::nullopt);
        setOrRemove("STATUS", "NEEDS-ACTION");
    }

    void stamp(const QDateTime &now)
    {
        setOrRemove("DTSTAMP", utcText(now));
        setOrRemove("LAST-MODIFIED", utcText(now));
        setOrRemove("SEQUENCE", QByteArray::number(m_item.sequence + 1));
    }

    QByteArray text() const { return m_patcher.patchedText(); }

private:
    ICalendar::TextPatcher m_patcher;
    const ICalendar::Item &m_item;
};

void patchCompletion(Patch &patch, const CalTask &task, const CalTask &read, const QDateTime &now)
{
    if (task.completedDate() != read.completedDate())
        patch.setOrRemove(
            "COMPLETED", task.completedDate() ? std::optional(utcText(*task.completedDate())) : std::nullopt);
    if (task.isCompleted() == read.isCompleted())
        return;
    if (task.isCompleted())
        patch.complete(task.completedDate().value_or(now));
    else
        patch.open();
}

} // namespace

QByteArray patchedTaskText(
    const QByteArray &text, const ICalendar::Item &item, const CalTask &task, const QDateTime &now)
{
    const CalTask &read = *task.asRead();
    Patch patch(text, item);
    if (task.title() != read.title())
        patch.setText("SUMMARY", task.title());
    if (task.notes() != read.notes())
        patch.setText("DESCRIPTION", task.notes());
    if (task.url() != read.url())
        patch.setOrRemove("URL", task.url() ? std::optional(task.url()->toEncoded()) : std::nullopt);
    if (task.priority() != read.priority())
        patch.setOrRemove(
            "PRIORITY", task.priority() != 0 ? std::optional(QByteArray::number(task.priority())) : std::nullopt);
    patchCompletion(patch, task, read, now);
    patch.stamp(now);
    return patch.text();
}

bool differsFromRead(const CalTask &task)
{
    const CalTask &read = *task.asRead();
    return task.title() != read.title() || task.notes() != read.notes() || task.url() != read.url()
        || task.priority() != read.priority() || task.completedDate() != read.completedDate()
        || task.isCompleted() != read.isCompleted();
}

} // namespace FolderStore
