// SPDX-License-Identifier: MIT
#include "TaskSaver.h"

#include "FolderSynchronizer.h"
#include "Limits.h"
#include "RecordMaker.h"
#include "TaskPatch.h"

#include <CalTask.h>
#include <Clock.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

QString changedElsewhere()
{
    return QCoreApplication::translate("Vantle", "Another program has changed it meanwhile. That version was kept.");
}

QString goneElsewhere()
{
    return QCoreApplication::translate("Vantle", "Another program has removed or renamed it meanwhile.");
}

// The group of the file from which the record was read.
std::optional<GroupRef> groupOf(const Collection &collection, const FileSnapshot &file, const CalTask &task)
{
    for (int index = 0; index < static_cast<int>(file.groups().size()); ++index) {
        const GroupRef ref { &file, index };
        if (ref.get().kind != ICalendar::Item::Kind::Task)
            continue;
        const ICalendar::Item &item = file.representative(ref.get());
        const QString recurrenceId = item.recurrenceId ? recurrenceIdText(*item.recurrenceId) : QString();
        if (item.uid == task.origin().plainUid && recurrenceId == task.origin().recurrenceId
            && collection.distinctionOf(ref) == task.origin().distinction)
            return ref;
    }
    return std::nullopt;
}

bool isSameAlarm(const CalAlarmPtr &left, const CalAlarmPtr &right)
{
    return left->action() == right->action() && left->sound() == right->sound()
        && left->emailAddress() == right->emailAddress() && left->url() == right->url()
        && left->relativeTrigger() == right->relativeTrigger() && left->isRelatedToEnd() == right->isRelatedToEnd()
        && left->absoluteTrigger() == right->absoluteTrigger() && left->storedIndex() == right->storedIndex();
}

// What the file of a to-do cannot take from a record; empty when it can take all.
QString unsupportedChange(const CalTask &task)
{
    const CalTask &read = *task.asRead();
    if (!task.calendar() || !read.calendar() || task.calendar()->uid() != read.calendar()->uid())
        return QCoreApplication::translate("Vantle", "A to-do cannot be moved to another calendar.");
    if (task.dueDate() != read.dueDate() || task.isDueDateOnly() != read.isDueDateOnly())
        return QCoreApplication::translate("Vantle", "The due date of a to-do cannot be changed.");
    if (!std::ranges::equal(task.alarms(), read.alarms(), isSameAlarm))
        return QCoreApplication::translate("Vantle", "The alarms of a to-do cannot be changed.");
    return {};
}

} // namespace

TaskSaver::TaskSaver(FolderSynchronizer &synchronizer, const Clock &clock)
    : m_synchronizer(synchronizer)
    , m_clock(clock)
    , m_writer(m_calls)
{
}

Result<void, StoreError> TaskSaver::save(CalTask &task)
{
    using Code = StoreError::Code;

    if (!task.origin().isStored() || !task.asRead())
        return refusal(task, Code::Invalid, QCoreApplication::translate("Vantle", "New to-dos cannot be stored here."));
    if (const QString reason = unsupportedChange(task); !reason.isEmpty())
        return refusal(task, Code::Invalid, reason);
    Collection *collection = m_synchronizer.collection(task.calendar()->uid());
    if (!collection)
        return refusal(
            task, Code::NotFound, QCoreApplication::translate("Vantle", "The calendar is not there any more."));
    if (!collection->record()->isEditable())
        return refusal(task, Code::ReadOnly, QCoreApplication::translate("Vantle", "The calendar cannot be changed."));
    if (!differsFromRead(task))
        return {};

    Result<void, StoreError> outcome = saveInto(*collection, task);
    // Whatever was in the way is shown as it is by now.
    if (!outcome)
        m_synchronizer.readAgain(*collection, task.origin().resource);
    return outcome;
}

Result<void, StoreError> TaskSaver::saveInto(Collection &collection, CalTask &task)
{
    using Code = StoreError::Code;

    const QString fileName = task.origin().resource;
    const QString path = collection.pathOf(fileName);
    if (QFileInfo(path).isSymLink())
        return refusal(task, Code::ReadOnly,
            QCoreApplication::translate("Vantle", "It is kept in a linked file, which is not written to."));
    const auto content = readRegularFile(path, Limits::itemFileBytes);
    if (!content) {
        if (content.error().kind == FileFault::Kind::Missing)
            return refusal(task, Code::NotFound, goneElsewhere());
        return refusal(task, Code::Io, content.error().reason);
    }
    if (hashOf(content.value().bytes) != task.origin().version)
        return refusal(task, Code::Conflict, changedElsewhere());

    // Read afresh from the same bytes: what is known may already be a later state, or an earlier one.
    const FileSnapshot before(fileName, content.value(), m_synchronizer.zones());
    const auto ref = groupOf(collection, before, task);
    if (!ref || before.document().isCut || before.document().isConverted)
        return refusal(task, Code::Unreadable,
            QCoreApplication::translate("Vantle", "Its file is damaged and was left as it is."));

    const QDateTime now = m_clock.now();
    if (!m_openedFolders.contains(collection.uid())) {
        m_openedFolders.insert(collection.uid());
        ItemFileWriter::removeLeftovers(collection.place().path, now);
    }
    const QByteArray replacement = patchedTaskText(content.value().bytes, before.representative(ref->get()), task, now);
    if (const auto written = m_writer.replace(path, content.value().bytes, replacement); !written)
        return refusal(task, written.error());

    FileContent after;
    after.bytes = replacement;
    after.state = stateOfRegularFile(path).isOk() ? stateOfRegularFile(path).value() : FileState();
    const auto snapshot = std::make_shared<const FileSnapshot>(fileName, after, m_synchronizer.zones());
    m_synchronizer.takeOwn(collection, snapshot);

    CalItemOrigin origin = task.origin();
    origin.version = snapshot->hash();
    task.setOrigin(origin);
    if (const auto saved = groupOf(collection, *snapshot, task)) {
        const auto &completed = snapshot->representative(saved->get()).completed;
        task.setCompletedDate(completed ? std::optional(QDateTime::fromSecsSinceEpoch(*completed)) : std::nullopt);
    }
    task.markAsRead();
    return {};
}

StoreError TaskSaver::refusal(const CalTask &task, StoreError::Code code, const QString &reason) const
{
    StoreError error;
    error.code = code;
    error.item = (task.asRead() ? task.asRead()->title() : task.title()).value_or(QString());
    error.calendar = task.calendar() ? task.calendar()->title() : QString();
    error.reason = reason;
    return error;
}

StoreError TaskSaver::refusal(const CalTask &task, const WritingFault &fault) const
{
    switch (fault.kind) {
    case WritingFault::Kind::Vanished:
        return refusal(task, StoreError::Code::NotFound, goneElsewhere());
    case WritingFault::Kind::Changed:
        return refusal(task, StoreError::Code::Conflict, changedElsewhere());
    case WritingFault::Kind::NotAllowed:
        return refusal(task, StoreError::Code::ReadOnly, fault.reason);
    case WritingFault::Kind::Failed:
        break;
    }
    return refusal(task, StoreError::Code::Io, fault.reason);
}

} // namespace FolderStore
