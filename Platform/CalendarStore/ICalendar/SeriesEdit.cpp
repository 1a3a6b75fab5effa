// SPDX-License-Identifier: MIT
#include "SeriesEdit.h"

#include "LineEdits.h"
#include "SeriesOccurrence.h"
#include "SeriesValues.h"

#include <algorithm>

namespace ICalendar
{

namespace
{

SeriesText seriesIn(const QByteArray &text, const SeriesContext &context)
{
    return { text, context.items, context.zones, context.local };
}

QList<int> allItems(const SeriesItems &items)
{
    return QList<int> { items.master } + items.overrides;
}

// The text with every item noted as changed whose lines differ from those before.
QByteArray withChangesNoted(
    const SeriesText &before, const QByteArray &text, const SeriesContext &context, UtcSeconds stamp)
{
    QByteArray result = text;
    for (const int index : allItems(context.items)) {
        const SeriesText after = seriesIn(result, context);
        if (rawTextOf(before, index) == rawTextOf(after, index))
            continue;
        Item item = after.item(index);
        item.sequence = before.item(index).sequence;
        result = stamped(result, item, stamp);
    }
    return result;
}

// Without the overrides that say nothing of their own any more.
QByteArray withoutNeedlessOverrides(
    const SeriesText &before, const QByteArray &text, const SeriesContext &context, int changed)
{
    const SeriesText after = seriesIn(text, context);
    LineEdits edits(after.lines());
    for (const int index : context.items.overrides) {
        const bool hasBeenConcerned = index == changed || differsFromSeries(before, index);
        if (hasBeenConcerned && !differsFromSeries(after, index))
            edits.removeComponent(after.item(index).component);
    }
    return edits.text();
}

} // namespace

Result<QByteArray, SeriesFault> textWithOccurrenceChanged(
    const QByteArray &text, const SeriesContext &context, const SeriesChange &change)
{
    const SeriesText series = seriesIn(text, context);
    const auto place = series.place(change.recurrenceId);
    if (!place || (!place->isMade && series.overrideAt(*place) < 0))
        return SeriesFault::NoSuchOccurrence;
    const DetachedOccurrence detached = withOverride(series, *place);
    SeriesContext own = context;
    if (!own.items.overrides.contains(detached.item)) {
        // The new one stands behind all others of the series.
        own.items.overrides.append(detached.item);
    }

    const SeriesText before = seriesIn(detached.text, own);
    QByteArray after = change.patch(detached.text, before.item(detached.item));
    if (change.read != change.changed)
        after = itemWithTimes(seriesIn(after, own), detached.item, change.read, change.changed, change.timedForm);
    if (after == detached.text)
        return text;
    return withChangesNoted(before, after, own, change.stamp);
}

Result<QByteArray, SeriesFault> textWithSeriesChanged(
    const QByteArray &text, const SeriesContext &context, const SeriesChange &change)
{
    const SeriesText before = seriesIn(text, context);
    const auto place = before.place(change.recurrenceId);
    const int override = place ? before.overrideAt(*place) : -1;
    if (!place || (!place->isMade && override < 0))
        return SeriesFault::NoSuchOccurrence;

    const int changed = override < 0 ? context.items.master : override;
    QByteArray after = change.patch(text, before.item(changed));
    after = seriesWithValuesCarriedOver(before, seriesIn(after, context), changed);
    if (change.read != change.changed) {
        const TimesChange times { *place, override, change.read, change.changed, change.timedForm };
        const auto moved = seriesWithTimesMoved(seriesIn(after, context), times);
        if (!moved)
            return SeriesFault::CannotMoveRule;
        after = *moved;
    }
    if (after == text)
        return text;
    after = withChangesNoted(before, after, context, change.stamp);
    return withoutNeedlessOverrides(before, after, context, override);
}

Result<QByteArray, SeriesFault> textWithoutOccurrence(
    const QByteArray &text, const SeriesContext &context, const QByteArray &recurrenceId, UtcSeconds stamp)
{
    const SeriesText series = seriesIn(text, context);
    const auto place = series.place(recurrenceId);
    if (!place || (!place->isMade && series.overrideAt(*place) < 0))
        return SeriesFault::NoSuchOccurrence;
    const QByteArray without = withoutOccurrence(series, *place, stamp);

    // The items that are left stand closer together.
    const QList<int> removed = series.overridesAt(*place);
    const auto indexAfter = [&](int index) {
        return index - static_cast<int>(std::ranges::count_if(removed, [&](int gone) { return gone < index; }));
    };
    SeriesContext left { { indexAfter(context.items.master), {} }, context.zones, context.local };
    for (const int index : context.items.overrides) {
        if (!removed.contains(index))
            left.items.overrides.append(indexAfter(index));
    }
    return seriesIn(without, left).hasOccurrences() ? without : QByteArray();
}

} // namespace ICalendar
