// SPDX-License-Identifier: MIT
#include "SeriesEdit.h"

#include "LineEdits.h"
#include "SeriesOccurrence.h"
#include "SeriesValues.h"
#include "ValueTexts.h"

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

// Gives a property of an item this value, in its place or after the item's first line.
void setLine(const SeriesText &series, int index, const QByteArray &name, const QByteArray &value, LineEdits &edits)
{
    const int line = series.lineOf(index, name);
    const QByteArray content = name + ':' + value;
    if (line >= 0) {
        edits.replaceLine(static_cast<std::size_t>(line), content);
        return;
    }
    const Component &component = series.lines().components()[static_cast<std::size_t>(series.item(index).component)];
    edits.insertLineAfter(static_cast<std::size_t>(component.firstLine), content);
}

// The text with every item noted as changed whose lines differ from those before. All in one pass: a series may have
// thousands of overrides.
QByteArray withChangesNoted(
    const SeriesText &before, const QByteArray &text, const SeriesContext &context, UtcSeconds stamp)
{
    const SeriesText after = seriesIn(text, context);
    LineEdits edits(after.lines());
    for (const int index : allItems(context.items)) {
        if (rawTextOf(before, index) == rawTextOf(after, index))
            continue;
        setLine(after, index, "DTSTAMP", utcText(stamp), edits);
        setLine(after, index, "LAST-MODIFIED", utcText(stamp), edits);
        setLine(after, index, "SEQUENCE", nextSequenceText(before.item(index).sequence), edits);
    }
    return edits.text();
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
