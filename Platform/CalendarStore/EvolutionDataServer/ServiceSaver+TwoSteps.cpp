// SPDX-License-Identifier: MIT
#include "ServiceSaver.h"

#include <ItemPatch.h>
#include <RecordPlace.h>
#include <Refusal.h>
#include <TextPatcher.h>

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Service
{

namespace
{

// What the event sheet puts before the title for its first step.
const QString firstStepPrefix = u"DUMBY "_s;

const ComponentText *counterpart(const CalendarParts &parts, const ComponentText &component)
{
    const auto found = std::ranges::find(parts.components, component.recurrenceId, &ComponentText::recurrenceId);
    return found == parts.components.end() ? nullptr : &*found;
}

bool saysTheSame(const ComponentText &one, const ComponentText &other)
{
    return contentOf(rewritten(one)) == contentOf(rewritten(other));
}

ComponentText withoutPrefix(const ComponentText &component, const QByteArray &prefix)
{
    ICalendar::TextPatcher patcher(component.text);
    const QByteArray title = patcher.property(0, "SUMMARY").value_or(QByteArray());
    if (prefix.isEmpty() || !title.startsWith(prefix))
        return component;
    if (title.size() == prefix.size())
        patcher.removeProperty(0, "SUMMARY");
    else
        patcher.setProperty(0, "SUMMARY", title.mid(prefix.size()));
    return { patcher.patchedText(), component.recurrenceId };
}

} // namespace

// The journals know what was saved by a path; items of the service have none.
QString ServiceSaver::placeOf(const QString &source)
{
    return u"/service/"_s + QString::fromLatin1(QUrl::toPercentEncoding(source));
}

QString ServiceSaver::placeOf(const QString &source, const QString &uid)
{
    return placeOf(source) + u'/' + QString::fromLatin1(QUrl::toPercentEncoding(uid));
}

QString ServiceSaver::uidAt(const QString &place)
{
    return QUrl::fromPercentEncoding(place.mid(place.lastIndexOf(u'/') + 1).toLatin1());
}

bool ServiceSaver::isFirstStepOfSheet(const CalEvent &event)
{
    const bool hasPrefix = event.title().value_or(QString()).startsWith(firstStepPrefix);
    return hasPrefix && (!event.asRead() || event.asRead()->title() != event.title());
}

bool ServiceSaver::isOneOfSeries(const CalEvent &event)
{
    return event.asRead() && event.asRead()->recurrenceRule();
}

Result<void, StoreError> ServiceSaver::save(CalEvent &event, CalSpan span)
{
    if (isContinued(event))
        return proceed(event, span);
    forget();
    if (span == CalSpanThisEvent && !event.origin().isStored() && isFirstStepOfSheet(event))
        return beginNew(event);
    if (span == CalSpanThisEvent && event.asRead() && (isFirstStepOfSheet(event) || isOneOfSeries(event)))
        return begin(event);
    return saveOnce(event, span);
}

// Whether the record is the one whose first step was the last save.
bool ServiceSaver::isContinued(const CalEvent &event) const
{
    if (!m_first || event.origin().version != m_first->versionAfter || event.origin().resource != m_first->uid)
        return false;
    return event.asRead() ? event.asRead()->origin().version == m_first->originBefore.version
                          : !m_first->originBefore.isStored();
}

Result<void, StoreError> ServiceSaver::begin(CalEvent &event)
{
    // A change of calendar is left to the second step.
    const auto source = writable(event, event.asRead()->calendar());
    if (!source)
        return source.error();
    const auto stored = find(*source.value(), event);
    if (!stored)
        return stored.error();
    const auto text = changedText(stored.value(), event, CalSpanThisEvent);
    if (!text)
        return text.error();
    if (text.value() == stored.value().text)
        return {};
    FirstStep step;
    step.uid = stored.value().uid;
    step.save = { {}, stored.value().text, text.value(), firstStepPrefix.toUtf8() };
    step.originBefore = event.origin();
    step.isJournaled = isFirstStepOfSheet(event);
    return take(event, std::move(step), *source.value());
}

Result<void, StoreError> ServiceSaver::beginNew(CalEvent &event)
{
    const auto source = writable(event, event.calendar());
    if (!source)
        return source.error();
    if (!event.startDate().isValid() || !event.endDate().isValid())
        return Items::withoutTimes(event);
    FirstStep step;
    step.uid = Items::newIdentifier();
    step.save
        = { {}, std::nullopt, Items::textOfNew(event, step.uid, m_clock.now(), m_zones), firstStepPrefix.toUtf8() };
    step.originBefore = event.origin();
    step.isJournaled = true;
    CalItemOrigin origin;
    origin.plainUid = step.uid;
    origin.resource = step.uid;
    event.setOrigin(origin);
    return take(event, std::move(step), *source.value());
}

// Remembers the step and carries it out.
Result<void, StoreError> ServiceSaver::take(CalEvent &event, FirstStep step, SourceClient &source)
{
    step.source = source.description().uid;
    step.save.path = placeOf(step.source, step.uid);
    if (step.isJournaled) {
        if (const auto begun = m_journal.begin(step.save); !begun) {
            event.setOrigin(step.originBefore);
            return Items::refusal(event, StoreError::Code::Io, begun.error().reason);
        }
    }
    const auto written = write(source, step.uid, step.save.before.value_or(QByteArray()), step.save.after, event);
    if (!written) {
        event.setOrigin(step.originBefore);
        // Without an answer nobody knows whether it was done: the next start looks.
        if (source.isSilent())
            m_journal.abandon();
        else
            m_journal.end();
        return written.error();
    }
    if (const auto origin = Items::originIn(source.items(), *written.value(), event))
        event.setOrigin(*origin);
    step.versionAfter = event.origin().version;
    m_first = std::move(step);
    return {};
}

Result<void, StoreError> ServiceSaver::proceed(CalEvent &event, CalSpan span)
{
    const auto failed = [&](const StoreError &error) {
        takeBack(event);
        return error;
    };
    SourceClient *const from = m_sourceNamed(m_first->source, CalItemKind::Event);
    if (!from)
        return failed(Items::calendarGone(event));
    SourceClient *into = from;
    if (span == CalSpanAllEvents) {
        const auto target = writable(event, event.calendar());
        if (!target)
            return failed(target.error());
        into = target.value();
    }
    const auto stored = find(*from, event);
    if (!stored)
        return failed(stored.error());
    const auto text = textOfBoth(stored.value(), event, span);
    if (!text)
        return failed(text.error());
    if (into != from) {
        const auto moved = move(event, stored.value(), text.value(), *into);
        if (moved) {
            forget();
            return {};
        }
        if (!moved.error().isPending)
            return failed(moved.error().refusal);
        // Whether the first step is taken back is found out with where the item is.
        event.setOrigin(m_first->originBefore);
        m_journal.abandon();
        m_first.reset();
        return moved.error().refusal;
    }
    const QByteArray original = m_first->save.before.value_or(stored.value().present);
    const auto written = tryToWrite(*from, stored.value().uid, stored.value().present, text.value(), event, original);
    if (!written)
        return failed(refusalOf(event, written.error()));
    if (span == CalSpanThisEvent && isOneOfSeries(event)) {
        // Not the second step, but the first one done again.
        if (const auto origin = Items::originIn(from->items(), *written.value(), event))
            event.setOrigin(*origin);
        m_first->save.after = text.value();
        m_first->versionAfter = event.origin().version;
        return {};
    }
    forget();
    Items::countAsRead(event, from->items(), *written.value());
    return {};
}

// What one save would have made of the item as it was before the first step.
Result<QByteArray, StoreError> ServiceSaver::textOfBoth(const Stored &stored, const CalEvent &event, CalSpan span) const
{
    const auto &before = m_first->save.before;
    if (!before) {
        // Also when it has a place already: what is written as new has not been changed yet.
        CalEvent fresh(event);
        fresh.setOrigin({});
        return Items::textOfNew(fresh, m_first->uid, m_clock.now(), m_zones);
    }
    if (!event.asRead() || !Items::differsFromRead(event))
        return *before;
    Stored base = stored;
    base.text = *before;
    base.set = std::make_shared<const Items::ItemSet>(stored.uid, *before, m_zones);
    base.group = Items::groupIn(*base.set, event).value_or(0);
    return changedText(base, event, span);
}

void ServiceSaver::takeBack(CalEvent &event)
{
    // What was saved for one occurrence without any prefix is meant to stay.
    if (!m_first->isJournaled)
        return;
    const FirstStep step = *m_first;
    m_first.reset();
    SourceClient *const source = m_sourceNamed(step.source, CalItemKind::Event);
    if (source && takeBack(step.save, *source, step.uid))
        m_journal.end();
    else
        m_journal.abandon();
    event.setOrigin(step.originBefore);
    if (!step.originBefore.isStored())
        event.setUid({});
}

// Whether the step is dealt with.
bool ServiceSaver::takeBack(const FolderStore::JournaledSave &save, SourceClient &source, const QString &uid)
{
    const StoredObjects objects(source);
    const auto components = objects.read(uid);
    // Whoever has removed the item meant it.
    if (!components)
        return components.error().kind == ServiceFault::Kind::NotFound;
    const QByteArray present = source.textFor(components.value());
    const CalendarParts before(save.before.value_or(QByteArray()));
    const CalendarParts after(save.after);
    QList<ComponentText> restored;
    for (const ComponentText &each : CalendarParts(present).components) {
        const ComponentText *const written = counterpart(after, each);
        const ComponentText *const original = counterpart(before, each);
        if (!written || (original && saysTheSame(*original, *written)))
            restored << each;
        else if (!saysTheSame(each, *written))
            restored << withoutPrefix(each, save.titlePrefix);
        else if (original)
            restored << *original;
    }
    for (const ComponentText &each : before.components) {
        if (!counterpart(after, each) && !counterpart(CalendarParts(present), each))
            restored << each;
    }
    QByteArrayList zones = CalendarParts(present).zones;
    for (const QByteArray &zone : before.zones) {
        if (!zones.contains(zone))
            zones << zone;
    }
    const QByteArray text = restored.isEmpty() ? QByteArray() : calendarText(restored, zones);
    if (text == present)
        return true;
    const auto done = objects.write(uid, present, text);
    if (!done)
        return false;
    source.takeOwn(uid, done.value());
    return true;
}

void ServiceSaver::mendLeftOvers(SourceClient &source)
{
    // First of all: what has left is not changed any more.
    endDepartures(source);
    m_journal.forEachLeftOver(placeOf(source.description().uid), m_clock.now(),
        [&](const FolderStore::JournaledSave &save) { return takeBack(save, source, uidAt(save.path)); });
}

void ServiceSaver::forget()
{
    m_journal.end();
    m_first.reset();
}

} // namespace Service
