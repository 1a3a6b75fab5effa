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
        if (versionOf(CalendarParts(text).components) != versionOf(CalendarParts(m_after).components)) {
            if (present)
                source.value()->takeRead(m_uid, present.value());
            else
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

StoreError ServiceSaver::refusalOf(const CalCalendarItem &record, const ServiceFault &fault)
{
    switch (fault.kind) {
    case ServiceFault::Kind::NotFound:
        return Items::goneElsewhere(record);
    case ServiceFault::Kind::Taken:
        return Items::identifierTaken(record);
    case ServiceFault::Kind::Changed:
        return Items::changedElsewhere(record);
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
    stored.present = source.textFor(components.value());
    // What was changed in the record is put into what it was read from.
    const Unanswered *const late = unanswered(source, record, components.value());
    const QList<ComponentText> base = late ? CalendarParts(late->before).components : components.value();
    stored.text = source.textFor(base);
    stored.set = source.setOf(uid, base);
    const auto group = Items::groupIn(*stored.set, record);
    if (!group || (!late && !isVersion(record.origin().version, components.value()))) {
        source.takeRead(uid, components.value());
        return Items::changedElsewhere(record);
    }
    stored.group = *group;
    return stored;
}

// The save of this record that was not answered, if the service holds what that made, or what was there before it.
const ServiceSaver::Unanswered *ServiceSaver::unanswered(
    const SourceClient &source, const CalCalendarItem &record, const QList<ComponentText> &present) const
{
    const auto found = m_unanswered.constFind(placeOf(source.description().uid, record.origin().resource));
    if (found == m_unanswered.cend() || found->versionRead != record.origin().version)
        return nullptr;
    const auto isHeld = [&](const QByteArray &text) {
        return !text.isEmpty() && isVersion(versionOf(CalendarParts(text).components), present);
    };
    return !found->before.isEmpty() && (isHeld(found->after) || isHeld(found->before)) ? &*found : nullptr;
}

Result<Items::ItemSetPtr, StoreError> ServiceSaver::write(SourceClient &source, const QString &uid,
    const QByteArray &before, const QByteArray &after, const CalCalendarItem &record)
{
    const auto written = tryToWrite(source, uid, before, after, record, before);
    return written ? Result<Items::ItemSetPtr, StoreError>(written.value()) : refusalOf(record, written.error());
}

// Takes in what was written. `original` is what is to be there again when only some of the calls are made.
Result<Items::ItemSetPtr, ServiceFault> ServiceSaver::tryToWrite(SourceClient &source, const QString &uid,
    const QByteArray &before, const QByteArray &after, const CalCalendarItem &record, const QByteArray &original)
{
    const QString place = placeOf(source.description().uid, uid);
    const bool isJournaled = StoredObjects::takesSeveralCalls(before, after)
        && m_calling.begin({ place, original.isEmpty() ? std::nullopt : std::optional(original), after, {} });
    const auto written = StoredObjects(source).write(uid, before, after);
    if (written) {
        m_calling.end();
        m_unanswered.remove(place);
        return source.takeOwn(uid, written.value());
    }
    const ServiceFault &fault = written.error();
    // Some of the calls may be done: they are taken back when the service answers again.
    if (isJournaled && fault.mayBeHalfDone)
        m_calling.abandon();
    else
        m_calling.end();
    if (fault.mayHappen() && !m_unanswered.contains(place))
        m_unanswered.insert(place, { record.origin().version, before, after });
    else if (fault.mayHappen())
        m_unanswered[place].after = after;
    // What the other machine wrote is shown as soon as the server has been looked at.
    if (fault.kind == ServiceFault::Kind::Changed)
        source.refresh();
    source.suspect(uid);
    return fault;
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
    // An attempt without an answer may have made the item, under the identifier that the record then keeps.
    const QString tried = record.origin().distinction;
    const QString uid = tried.isEmpty() ? Items::newIdentifier() : tried;
    QByteArray present;
    if (!tried.isEmpty()) {
        const auto components = StoredObjects(*source.value()).read(uid);
        if (!components && components.error().kind != ServiceFault::Kind::NotFound)
            return refusalOf(record, components.error());
        present = components ? source.value()->textFor(components.value()) : QByteArray();
    }
    const auto written
        = write(*source.value(), uid, present, Items::textOfNew(record, uid, m_clock.now(), m_zones), record);
    if (!written) {
        CalItemOrigin attempt = record.origin();
        attempt.distinction = uid;
        record.setOrigin(attempt);
        return written.error();
    }
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
    const QString place = placeOf(from.value()->description().uid, record.origin().resource);
    if (!isMove && !isChanged && !m_unanswered.contains(place))
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
    if (isMove) {
        const auto moved = move(record, stored.value(), changed, *into.value());
        return moved ? Result<void, StoreError>() : moved.error().refusal;
    }
    const auto written = write(*into.value(), stored.value().uid, stored.value().present, changed, record);
    if (!written)
        return written.error();
    Items::countAsRead(record, into.value()->items(), *written.value());
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
    const auto written = write(*source.value(), stored.value().uid, stored.value().present, remaining, *record);
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
