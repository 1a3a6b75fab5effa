// SPDX-License-Identifier: MIT
#include "ServiceSaver.h"

#include <ItemExtract.h>
#include <ItemPatch.h>
#include <RecordPlace.h>
#include <Refusal.h>
#include <SeriesPatch.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace Service
{

namespace
{

using Code = StoreError::Code;

bool canBeStored(const CalEvent &event)
{
    return event.startDate().isValid() && event.endDate().isValid();
}

bool canBeStored(const CalTask & /*task*/)
{
    return true;
}

StoreError refusalOf(const CalCalendarItem &record, const ServiceFault &fault)
{
    switch (fault.kind) {
    case ServiceFault::Kind::NotFound:
        return Items::goneElsewhere(record);
    case ServiceFault::Kind::Taken:
        return Items::identifierTaken(record);
    case ServiceFault::Kind::ReadOnly:
        return Items::calendarUnchangeable(record);
    case ServiceFault::Kind::Refused:
        return Items::refusal(record, Code::Invalid,
            QCoreApplication::translate("Vantle", "The calendar service cannot store it like this."));
    case ServiceFault::Kind::NoAnswer:
    case ServiceFault::Kind::Lost:
    case ServiceFault::Kind::Failed:
        break;
    }
    return Items::refusal(record, Code::Io, fault.reason);
}

template <typename Record> CalCalendarItemPtr recordAsRead(const Record &record)
{
    const auto copy = std::make_shared<Record>(record);
    copy->setCalendar(record.asRead()->calendar());
    return copy;
}

} // namespace

// Puts back what the service held under the uid.
class ServiceSaver::Restoration final : public CalRemoval
{
public:
    Restoration(ServiceSaver &saver, CalCalendarItemPtr record, QString uid, QByteArray before, QByteArray after)
        : m_saver(saver)
        , m_record(std::move(record))
        , m_uid(std::move(uid))
        , m_before(std::move(before))
        , m_after(std::move(after))
    {
    }

    Result<void, StoreError> takeBack() override
    {
        const auto source = m_saver.writable(*m_record, m_record->calendar());
        if (!source)
            return source.error();
        const auto present = StoredObjects(*source.value()).read(m_uid);
        if (!present && present.error().kind != ServiceFault::Kind::NotFound)
            return refusalOf(*m_record, present.error());
        const QByteArray text = present ? source.value()->textFor(present.value()) : QByteArray();
        if (CalendarParts(text).components != CalendarParts(m_after).components) {
            source.value()->suspect(m_uid);
            return m_after.isEmpty() ? Items::thereAgain(*m_record) : Items::changedElsewhere(*m_record);
        }
        const auto written = m_saver.write(*source.value(), m_uid, text, m_before, *m_record);
        return written ? Result<void, StoreError>() : Result<void, StoreError>(written.error());
    }

private:
    ServiceSaver &m_saver;
    CalCalendarItemPtr m_record;
    QString m_uid;
    QByteArray m_before;
    QByteArray m_after; // empty when nothing was left
};

ServiceSaver::ServiceSaver(
    FindSource sourceOf, FindByUid sourceNamed, ICalendar::ZoneRegistry &zones, const Clock &clock)
    : m_sourceOf(std::move(sourceOf))
    , m_sourceNamed(std::move(sourceNamed))
    , m_zones(zones)
    , m_clock(clock)
{
}

Result<SourceClient *, StoreError> ServiceSaver::writable(
    const CalCalendarItem &record, const CalCalendarPtr &calendar) const
{
    SourceClient *const source = calendar ? m_sourceOf(calendar->uid(), record.kind()) : nullptr;
    if (!source)
        return Items::calendarGone(record);
    if (source->client() && source->isReadOnly())
        return Items::calendarUnchangeable(record);
    return source;
}

// Refused when the item is not as it was read.
Result<ServiceSaver::Stored, StoreError> ServiceSaver::find(SourceClient &source, const CalCalendarItem &record) const
{
    const QString &uid = record.origin().resource;
    const auto components = StoredObjects(source).read(uid);
    if (!components) {
        source.suspect(uid);
        return refusalOf(record, components.error());
    }
    Stored stored;
    stored.source = &source;
    stored.uid = uid;
    stored.text = source.textFor(components.value());
    stored.set = source.setOf(uid, components.value());
    const auto group = Items::groupIn(*stored.set, record);
    if (stored.set->version() != record.origin().version || !group) {
        source.suspect(uid);
        return Items::changedElsewhere(record);
    }
    stored.group = *group;
    return stored;
}

// Takes in what was written.
Result<Items::ItemSetPtr, StoreError> ServiceSaver::write(SourceClient &source, const QString &uid,
    const QByteArray &before, const QByteArray &after, const CalCalendarItem &record) const
{
    const auto written = StoredObjects(source).write(uid, before, after);
    if (!written) {
        source.suspect(uid);
        return refusalOf(record, written.error());
    }
    return source.takeOwn(uid, written.value());
}

Result<void, StoreError> ServiceSaver::save(CalTask &task)
{
    if (!task.origin().isStored())
        return create(task);
    return change(task, task.calendar(), [&](const Stored &stored) -> Result<QByteArray, StoreError> {
        return Items::patchedText(stored.text, stored.item(), task, m_clock.now());
    });
}

Result<void, StoreError> ServiceSaver::saveOnce(CalEvent &event, CalSpan span)
{
    if (!event.origin().isStored())
        return create(event);
    // One occurrence of a series cannot leave the others' calendar.
    const bool isOneOfSeries = span == CalSpanThisEvent && event.asRead() && event.asRead()->recurrenceRule();
    const CalCalendarPtr &target = isOneOfSeries ? event.asRead()->calendar() : event.calendar();
    return change(event, target, [&](const Stored &stored) { return changedText(stored, event, span); });
}

Result<QByteArray, StoreError> ServiceSaver::changedText(
    const Items::StoredText &stored, const CalEvent &event, CalSpan span) const
{
    if (!canBeStored(event))
        return Items::withoutTimes(event);
    if (stored.groupInSet().needsExpansion && event.asRead())
        return Items::patchedSeriesText(stored, event, span, m_clock.now(), m_zones);
    return Items::patchedText(stored.text, stored.item(), event, m_clock.now());
}

template <typename Record> Result<void, StoreError> ServiceSaver::create(Record &record)
{
    const auto source = writable(record, record.calendar());
    if (!source)
        return source.error();
    if (!canBeStored(record))
        return Items::withoutTimes(record);
    const QString uid = Items::newIdentifier();
    const auto written = write(*source.value(), uid, {}, Items::textOfNew(record, uid, m_clock.now(), m_zones), record);
    if (!written)
        return written.error();
    CalItemOrigin origin;
    origin.plainUid = uid;
    origin.resource = uid;
    record.setOrigin(origin);
    Items::countAsRead(record, source.value()->items(), *written.value());
    return {};
}

template <typename Record, typename Text>
Result<void, StoreError> ServiceSaver::change(Record &record, const CalCalendarPtr &target, Text text)
{
    const auto into = writable(record, target);
    if (!into)
        return into.error();
    const auto from = writable(record, record.asRead() ? record.asRead()->calendar() : target);
    if (!from)
        return from.error();
    const bool isMove = into.value() != from.value();
    const bool isChanged = !record.asRead() || Items::differsFromRead(record);
    if (!isMove && !isChanged)
        return {};
    const auto stored = find(*from.value(), record);
    if (!stored)
        return stored.error();
    QByteArray changed = stored.value().text;
    if (isChanged) {
        const Result<QByteArray, StoreError> patched = text(stored.value());
        if (!patched)
            return patched.error();
        changed = patched.value();
    }
    if (isMove)
        return move(record, stored.value(), changed, *into.value());
    const auto written = write(*into.value(), stored.value().uid, stored.value().text, changed, record);
    if (!written)
        return written.error();
    Items::countAsRead(record, into.value()->items(), *written.value());
    return {};
}

// The item is whole in the new calendar before it leaves the old one.
template <typename Record>
Result<void, StoreError> ServiceSaver::move(
    Record &record, const Stored &stored, const QByteArray &text, SourceClient &target)
{
    const QString &uid = stored.uid;
    if (target.items().holdsUid(uid))
        return Items::identifierTaken(record);
    const auto created = write(target, uid, {}, text, record);
    if (!created)
        return created.error();
    if (const auto left = write(*stored.source, uid, stored.text, {}, record); !left) {
        if (const auto removed = write(target, uid, text, {}, record); !removed)
            return removed.error();
        return left.error();
    }
    Items::countAsRead(record, target.items(), *created.value());
    return {};
}

Result<std::unique_ptr<CalRemoval>, StoreError> ServiceSaver::remove(const CalTask &task)
{
    return remove(recordAsRead(task), CalSpanAllEvents);
}

Result<std::unique_ptr<CalRemoval>, StoreError> ServiceSaver::remove(const CalEvent &event, CalSpan span)
{
    return remove(recordAsRead(event), event.origin().recurrenceId.isEmpty() ? CalSpanAllEvents : span);
}

Result<std::unique_ptr<CalRemoval>, StoreError> ServiceSaver::remove(const CalCalendarItemPtr &record, CalSpan span)
{
    const auto source = writable(*record, record->calendar());
    if (!source)
        return source.error();
    const auto stored = find(*source.value(), *record);
    if (!stored)
        return stored.error();
    QByteArray remaining;
    if (span == CalSpanThisEvent && stored.value().groupInSet().needsExpansion) {
        const auto without = Items::seriesTextWithoutOccurrence(
            stored.value(), static_cast<const CalEvent &>(*record), m_clock.now(), m_zones);
        if (!without)
            return without.error();
        remaining = without.value();
    } else if (!Items::holdsNothingElse(*stored.value().set, stored.value().group, stored.value().text)) {
        remaining = Items::textWithoutGroup(*stored.value().set, stored.value().group, stored.value().text);
    }
    const auto written = write(*source.value(), stored.value().uid, stored.value().text, remaining, *record);
    if (!written)
        return written.error();
    // As the service has it, which may write it otherwise than it was given.
    QByteArray after;
    if (written.value()) {
        if (const auto present = StoredObjects(*source.value()).read(stored.value().uid))
            after = source.value()->textFor(present.value());
    }
    std::unique_ptr<CalRemoval> removal
        = std::make_unique<Restoration>(*this, record, stored.value().uid, stored.value().text, after);
    return removal;
}

} // namespace Service
