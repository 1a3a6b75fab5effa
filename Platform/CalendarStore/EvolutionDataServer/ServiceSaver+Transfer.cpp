// SPDX-License-Identifier: MIT
#include "ServiceSaver.h"

#include <ItemExtract.h>
#include <ItemPatch.h>
#include <RecordPlace.h>
#include <Refusal.h>

namespace Service
{

// An item of the service that goes into another back end.
class ServiceSaver::Departure final : public CalDeparture
{
public:
    using Settled = std::function<void(bool hasLeft)>;

    Departure(ServiceSaver &saver, const CalCalendarItem &record, Stored stored, QByteArray text, Settled settled)
        : m_saver(saver)
        , m_record(record)
        , m_stored(std::move(stored))
        , m_text(std::move(text))
        , m_settled(std::move(settled))
    {
    }

    const QByteArray &text() const override { return m_text; }

    Result<void, StoreError> leave() override
    {
        const bool isAlone = Items::holdsNothingElse(*m_stored.set, m_stored.group, m_stored.text);
        const QByteArray remaining
            = isAlone ? QByteArray() : Items::textWithoutGroup(*m_stored.set, m_stored.group, m_stored.text);
        const auto left = m_saver.leave(m_stored, remaining, m_record, {});
        if (!left && !left.error().isPending)
            return left.error().refusal;
        if (!left) {
            // It is whole elsewhere, and leaves as soon as the service answers again.
            m_stored.source->takeOwn(m_stored.uid, CalendarParts(remaining).components);
            m_stored.source->suspect(m_stored.uid);
        }
        m_settled(true);
        return {};
    }

    void stay() override { m_settled(false); }

private:
    ServiceSaver &m_saver;
    const CalCalendarItem &m_record;
    Stored m_stored;
    QByteArray m_text;
    Settled m_settled;
};

ServiceSaver::Sent ServiceSaver::send(CalTask &task)
{
    const auto source = writable(task, task.asRead()->calendar());
    if (!source)
        return source.error();
    const auto stored = find(*source.value(), task);
    if (!stored)
        return stored.error();
    const QByteArray text = Items::differsFromRead(task)
        ? Items::patchedText(stored.value().text, stored.value().item(), task, m_clock.now())
        : stored.value().text;
    std::unique_ptr<CalDeparture> departure
        = std::make_unique<Departure>(*this, task, stored.value(), text, [](bool /*hasLeft*/) {});
    return departure;
}

ServiceSaver::Sent ServiceSaver::send(CalEvent &event, CalSpan span)
{
    if (span == CalSpanThisEvent && (isFirstStepOfSheet(event) || isOneOfSeries(event))) {
        const auto stepped = stepBeforeSending(event);
        return stepped ? Sent(nullptr) : Sent(stepped.error());
    }
    const bool isSecondStep = isContinued(event);
    if (!isSecondStep)
        forget();
    const auto failed = [&](const StoreError &error) {
        if (isSecondStep)
            takeBack(event);
        return error;
    };
    const auto source = writable(event, event.asRead()->calendar());
    if (!source)
        return failed(source.error());
    const auto stored = find(*source.value(), event);
    if (!stored)
        return failed(stored.error());
    Result<QByteArray, StoreError> text = stored.value().text;
    if (isSecondStep)
        text = textOfBoth(stored.value(), event, span);
    else if (Items::differsFromRead(event))
        text = changedText(stored.value(), event, span);
    if (!text)
        return failed(text.error());
    const auto settled = [this, &event, isSecondStep](bool hasLeft) {
        if (hasLeft)
            forget();
        else if (isSecondStep && m_first)
            takeBack(event);
    };
    std::unique_ptr<CalDeparture> departure
        = std::make_unique<Departure>(*this, event, stored.value(), text.value(), settled);
    return departure;
}

// The item stays where it is until the second step.
Result<void, StoreError> ServiceSaver::stepBeforeSending(CalEvent &event)
{
    if (isContinued(event) && isOneOfSeries(event))
        return proceed(event, CalSpanThisEvent);
    if (isContinued(event))
        takeBack(event);
    else
        forget();
    return begin(event);
}

Result<void, StoreError> ServiceSaver::takeIn(CalTask &task, const QByteArray &text)
{
    return takeInRecord(task, text);
}

Result<void, StoreError> ServiceSaver::takeIn(CalEvent &event, const QByteArray &text)
{
    return takeInRecord(event, text);
}

template <typename Record> Result<void, StoreError> ServiceSaver::takeInRecord(Record &record, const QByteArray &text)
{
    const auto source = writable(record, record.calendar());
    if (!source)
        return source.error();
    auto origin = Items::originOfSent({}, record, text, m_zones);
    if (!origin)
        return Items::damaged(record);
    // The service keeps an item under its UID.
    origin->resource = origin->plainUid;
    const auto written = arrive(*source.value(), origin->plainUid, text, record);
    if (!written)
        return written.error();
    record.setOrigin(*origin);
    Items::countAsRead(record, source.value()->items(), *written.value());
    return {};
}

} // namespace Service
