// SPDX-License-Identifier: MIT
#include "TwoStepSaver.h"

#include "FirstStep.h"
#include "FolderSynchronizer.h"

#include <CalEvent.h>
#include <ItemPatch.h>
#include <RecordPlace.h>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

// What the event sheet puts before the title for its first step.
const QString firstStepPrefix = u"DUMBY "_s;

bool isFirstStepOfSheet(const CalEvent &event)
{
    const bool hasPrefix = event.title().value_or(QString()).startsWith(firstStepPrefix);
    return hasPrefix && (!event.asRead() || event.asRead()->title() != event.title());
}

bool isOneOfSeries(const CalEvent &event)
{
    return event.asRead() && event.asRead()->recurrenceRule();
}

} // namespace

TwoStepSaver::TwoStepSaver(ItemFiles &files, ItemSaver &saver, FileCalls &calls)
    : m_files(files)
    , m_saver(saver)
    , m_calls(calls)
    , m_journal(calls)
{
}

Result<void, StoreError> TwoStepSaver::save(CalEvent &event, CalSpan span)
{
    if (isContinued(event))
        return proceed(event, span);
    forget();
    if (span == CalSpanThisEvent && !event.origin().isStored() && isFirstStepOfSheet(event))
        return beginNew(event);
    if (span == CalSpanThisEvent && event.asRead() && (isFirstStepOfSheet(event) || isOneOfSeries(event)))
        return begin(event);
    return m_saver.save(event, span);
}

ItemSaver::Sent TwoStepSaver::send(CalEvent &event, CalSpan span)
{
    if (span == CalSpanThisEvent && (isFirstStepOfSheet(event) || isOneOfSeries(event))) {
        const auto stepped = stepBeforeSending(event);
        return stepped ? ItemSaver::Sent(nullptr) : ItemSaver::Sent(stepped.error());
    }
    if (isContinued(event))
        return sendBoth(event, span);
    forget();
    return m_saver.send(event, span);
}

void TwoStepSaver::mendLeftOvers(const QString &root)
{
    m_journal.forEachLeftOver(root, m_files.now(), [this](const JournaledSave &save) {
        return takeBackFirstStep(save, m_calls, m_files.synchronizer().zones()).isOk();
    });
}

// Whether the record is the one whose first step was the last save.
bool TwoStepSaver::isContinued(const CalEvent &event) const
{
    if (!m_first || event.origin().version != Items::ItemSet::versionOf(m_first->save.after))
        return false;
    const Collection *const collection = m_files.synchronizer().collection(m_first->calendar);
    const bool isSameState = event.asRead() ? event.asRead()->origin().version == m_first->originBefore.version
                                            : !m_first->originBefore.isStored();
    return collection && isSameState && collection->pathOf(event.origin().resource) == m_first->save.path;
}

Result<void, StoreError> TwoStepSaver::begin(CalEvent &event)
{
    // A change of calendar is left to the second step.
    const auto collection = m_files.writableCollection(event, event.asRead()->calendar());
    if (!collection)
        return collection.error();
    const auto stored = m_files.find(*collection.value(), event);
    if (!stored)
        return stored.error();
    const auto text = m_saver.changedText(stored.value(), event, CalSpanThisEvent);
    if (!text)
        return text.error();
    if (text.value() == stored.value().text)
        return {};
    const FirstStep step { { stored.value().path, stored.value().text, text.value(), firstStepPrefix.toUtf8() },
        event.origin(), collection.value()->uid(), isFirstStepOfSheet(event) };
    return take(event, step, [&] { return m_files.replace(stored.value(), text.value(), event); });
}

Result<void, StoreError> TwoStepSaver::beginNew(CalEvent &event)
{
    const auto collection = m_files.writableCollection(event, event.calendar());
    if (!collection)
        return collection.error();
    CalItemOrigin origin;
    origin.plainUid = Items::newIdentifier();
    origin.resource = origin.plainUid + u".ics"_s;
    const auto text = m_saver.newText(event, origin.plainUid);
    if (!text)
        return text.error();
    const FirstStep step { { collection.value()->pathOf(origin.resource), std::nullopt, text.value(),
                               firstStepPrefix.toUtf8() },
        event.origin(), collection.value()->uid(), true };
    event.setOrigin(origin);
    return take(event, step, [&] { return m_files.create(*collection.value(), origin.resource, text.value(), event); });
}

template <typename Write>
Result<void, StoreError> TwoStepSaver::take(CalEvent &event, const FirstStep &step, Write write)
{
    if (step.isJournaled) {
        if (const auto begun = m_journal.begin(step.save); !begun) {
            event.setOrigin(step.originBefore);
            return ItemFiles::refusal(event, begun.error());
        }
    }
    const Result<FileSnapshotPtr, StoreError> written = write();
    if (!written) {
        m_journal.end();
        event.setOrigin(step.originBefore);
        return written.error();
    }
    m_first = step;
    const Collection *const collection = m_files.synchronizer().collection(step.calendar);
    if (const auto origin = Items::originIn(collection->items(), *written.value(), event))
        event.setOrigin(*origin);
    return {};
}

Result<void, StoreError> TwoStepSaver::proceed(CalEvent &event, CalSpan span)
{
    const auto failed = [&](const StoreError &error) {
        takeBack(event);
        return error;
    };
    Collection *const from = m_files.synchronizer().collection(m_first->calendar);
    const auto into = m_files.writableCollection(event, span == CalSpanAllEvents ? event.calendar() : from->record());
    if (!into)
        return failed(into.error());
    const auto stored = m_files.find(*from, event);
    if (!stored)
        return failed(stored.error());
    const auto text = textOfBoth(stored.value(), event, span);
    if (!text)
        return failed(text.error());

    if (into.value() != from) {
        if (const auto moved = m_saver.moveChanged(event, stored.value(), text.value(), *into.value()); !moved)
            return failed(moved.error());
        forget();
        return {};
    }
    const auto written = m_files.replace(stored.value(), text.value(), event);
    if (!written)
        return failed(written.error());
    if (span == CalSpanThisEvent && isOneOfSeries(event)) {
        // Not the second step, but the first one done again.
        m_first->save.after = text.value();
        if (const auto origin = Items::originIn(from->items(), *written.value(), event))
            event.setOrigin(*origin);
        return {};
    }
    forget();
    ItemSaver::countAsReadAnew(event, *from, *written.value());
    return {};
}

// Within the calendar that the item is in.
Result<void, StoreError> TwoStepSaver::stepBeforeSending(CalEvent &event)
{
    if (isContinued(event) && isOneOfSeries(event))
        return proceed(event, CalSpanThisEvent);
    if (isContinued(event))
        takeBack(event);
    else
        forget();
    return begin(event);
}

ItemSaver::Sent TwoStepSaver::sendBoth(CalEvent &event, CalSpan span)
{
    const auto failed = [&](const StoreError &error) {
        takeBack(event);
        return error;
    };
    const auto from = m_files.writableCollection(event, event.asRead()->calendar());
    if (!from)
        return failed(from.error());
    const auto stored = m_files.find(*from.value(), event);
    if (!stored)
        return failed(stored.error());
    const auto text = textOfBoth(stored.value(), event, span);
    if (!text)
        return failed(text.error());
    const auto settled = [this, &event](bool hasLeft) {
        if (hasLeft)
            forget();
        else if (m_first)
            takeBack(event);
    };
    auto sent = m_saver.sendChanged(event, stored.value(), text.value(), settled);
    return sent ? std::move(sent) : failed(sent.error());
}

// What one save would have made of the file as it was before the first step.
Result<QByteArray, StoreError> TwoStepSaver::textOfBoth(
    const StoredItem &stored, const CalEvent &event, CalSpan span) const
{
    const auto &before = m_first->save.before;
    if (!before)
        return m_saver.newText(event, event.origin().plainUid);
    if (!event.asRead() || !Items::differsFromRead(event))
        return *before;
    StoredItem base = stored;
    base.text = *before;
    base.set = std::make_shared<const Items::ItemSet>(stored.set->name(), *before, m_files.synchronizer().zones());
    base.group = Items::groupIn(*base.set, event).value_or(0);
    return m_saver.changedText(base, event, span);
}

void TwoStepSaver::takeBack(CalEvent &event)
{
    // What was saved for one occurrence without any prefix is meant to stay.
    if (!m_first->isJournaled)
        return;
    const FirstStep step = *m_first;
    const QString fileName = event.origin().resource;
    if (takeBackFirstStep(step.save, m_calls, m_files.synchronizer().zones()))
        m_journal.end();
    else
        m_journal.abandon();
    m_first.reset();
    m_files.forgetEdits(step.save.path);
    if (Collection *const collection = m_files.synchronizer().collection(step.calendar))
        m_files.synchronizer().readAgain(*collection, fileName);
    event.setOrigin(step.originBefore);
    if (!step.originBefore.isStored())
        event.setUid({});
}

void TwoStepSaver::forget()
{
    m_journal.end();
    m_first.reset();
}

} // namespace FolderStore
