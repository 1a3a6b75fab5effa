// SPDX-License-Identifier: MIT
#include "SeriesMove.h"

#include "CivilDate.h"
#include "LineEdits.h"
#include "PropertyLine.h"
#include "RuleMove.h"
#include "RuleWalker.h"
#include "TimesWriter.h"
#include "Values.h"

#include <algorithm>

namespace ICalendar
{

namespace
{

// A series on its way to other times.
class SeriesMover
{
public:
    SeriesMover(const SeriesText &series, const TimesChange &change)
        : m_series(series)
        , m_change(change)
        , m_edits(series.lines())
    {
    }

    std::optional<QByteArray> run();

private:
    void chooseForm();
    void measureMove();
    void measureLength();
    bool moveRules();
    QByteArray withUntilMoved(const QByteArray &before, const QByteArray &after) const;
    std::optional<CivilSeconds> lastUntil(const QByteArray &rule) const;
    void moveDates(const QByteArray &name);
    QByteArray movedValue(const QByteArray &value, const CivilTime &time, const TimeForm &form) const;
    QByteArray movedPeriodEnd(
        const QByteArray &end, const CivilTime &start, const AddedDate &added, const TimeForm &form) const;
    void moveOverride(int index);
    void moveRecurrenceId(int index);

    bool isMoved() const { return m_from != m_to || isOtherKind() || m_newForm.parameters != form().parameters; }
    bool isOtherKind() const { return m_newForm.isDate() != form().isDate(); }
    const TimeForm &form() const { return m_series.form(); }
    const Item &master() const { return m_series.master(); }
    // A time of the series after the move.
    CivilSeconds moved(CivilSeconds civil) const;
    CivilTime moved(const CivilTime &time) const;
    QByteArray unfolded(std::size_t line) const { return m_series.lines().unfolded(m_series.lines().lines()[line]); }

    const SeriesText &m_series;
    const TimesChange &m_change;
    LineEdits m_edits;
    TimeForm m_newForm;
    CivilSeconds m_from = 0; // the occurrence by the clock of the series
    CivilSeconds m_to = 0;
    DayMap m_days = DayMap::byDays(0);
    std::optional<qint64> m_newLength; // nothing when it stays
};

std::optional<QByteArray> SeriesMover::run()
{
    if (!master().start)
        return std::nullopt;
    chooseForm();
    measureMove();
    measureLength();
    if (isMoved() && !moveRules())
        return std::nullopt;
    TimesWriter(m_series, m_series.items().master, m_edits).write(m_newForm, moved(master().start->civil), m_newLength);
    if (isMoved()) {
        moveDates("EXDATE");
        moveDates("RDATE");
    }
    for (const int index : m_series.items().overrides)
        moveOverride(index);
    return m_edits.text();
}

// Only what the person switched is switched: an override may be of another kind than its series.
void SeriesMover::chooseForm()
{
    m_newForm = form();
    if (m_change.read.isAllDay == m_change.changed.isAllDay)
        return;
    if (m_change.changed.isAllDay)
        m_newForm = TimeForm::date();
    else if (form().isDate())
        m_newForm = m_change.timedForm;
}

void SeriesMover::measureMove()
{
    const EventTimes &read = m_change.read;
    const EventTimes &changed = m_change.changed;
    const Zone &local = m_series.local();
    const UtcSeconds placeInstant = m_change.place.start.toUtc(local);
    m_from = form().civilOf(m_change.place.start, local);
    const auto civilOf = [&](const EventTimes &times, const TimeForm &clock) {
        return times.isAllDay ? times.start : clock.civilAt(times.start, local);
    };
    const bool isAtPlace
        = read.isAllDay == form().isDate() && (read.isAllDay ? read.start == m_from : read.start == placeInstant);
    if (read == changed || (read.start == changed.start && read.isAllDay == changed.isAllDay)) {
        m_to = m_from;
    } else if (isAtPlace) {
        m_to = civilOf(changed, m_newForm);
    } else if (read.isAllDay == changed.isAllDay) {
        m_to = m_from + civilOf(changed, form()) - civilOf(read, form());
    } else {
        const CivilSeconds readDay = read.isAllDay ? read.start : local.toCivil(read.start);
        const CivilSeconds newTime = civilOf(changed, m_newForm);
        m_to = (dayOf(m_from) + dayOf(newTime) - dayOf(readDay)) * secondsPerDay + timeOfDay(newTime);
    }
    if (m_newForm.isDate())
        m_to = dayOf(m_to) * secondsPerDay;
}

void SeriesMover::measureLength()
{
    const EventTimes &read = m_change.read;
    const EventTimes &changed = m_change.changed;
    const qint64 before = read.end - read.start;
    const qint64 after = changed.end - changed.start;
    if (read.isAllDay != changed.isAllDay) {
        m_newLength = isOtherKind() ? std::optional(after) : std::nullopt;
        return;
    }
    if (before == after || changed.isAllDay != form().isDate())
        return;
    // An override with a length of its own lengthens the others by what it was lengthened.
    const qint64 own = lengthOf(master());
    const qint64 length = own + after - before;
    const bool isTooShort = length <= 0 && after > 0;
    m_newLength = m_change.override < 0 || isTooShort ? after : length;
}

CivilSeconds SeriesMover::moved(CivilSeconds civil) const
{
    const CivilSeconds day = m_days.moved(dayOf(civil)) * secondsPerDay;
    if (m_newForm.isDate())
        return day;
    if (form().isDate())
        return day + timeOfDay(m_to);
    return day + timeOfDay(civil) + timeOfDay(m_to) - timeOfDay(m_from);
}

CivilTime SeriesMover::moved(const CivilTime &time) const
{
    const Zone &local = m_series.local();
    return m_newForm.time(moved(form().civilOf(time, local)));
}

bool SeriesMover::moveRules()
{
    const OccurrenceMove move { m_from, m_to, form().isDate(), m_newForm.isDate() };
    m_days = DayMap::byDays(dayOf(m_to) - dayOf(m_from));
    bool isFirst = true;
    std::vector<std::pair<std::size_t, QByteArray>> values;
    for (const std::size_t line : linesNamed(m_series.lines(), master().component, "RRULE")) {
        const QByteArray value = m_series.property(static_cast<int>(line)).value().trimmed().toByteArray();
        const auto rule = movedRule(value, master().start->civil, move);
        if (!rule)
            return false;
        if (isFirst)
            m_days = rule->days;
        isFirst = false;
        values.emplace_back(line, rule->value);
    }
    for (const auto &[line, value] : values) {
        const PropertyLine property = m_series.property(static_cast<int>(line));
        const QByteArray before = property.value().trimmed().toByteArray();
        const QByteArray after = withUntilMoved(before, value);
        if (after != before)
            m_edits.replaceLine(line, lineWithValue(property, unfolded(line), after));
    }
    // Programs that still know such rules leave out what they make.
    for (const std::size_t line : linesNamed(m_series.lines(), master().component, "EXRULE")) {
        const PropertyLine property = m_series.property(static_cast<int>(line));
        const QByteArray before = property.value().trimmed().toByteArray();
        if (const auto rule = movedRule(before, master().start->civil, move))
            m_edits.replaceLine(line, lineWithValue(property, unfolded(line), withUntilMoved(before, rule->value)));
    }
    return true;
}

// The last instance that the limit of a rule allows.
std::optional<CivilSeconds> SeriesMover::lastUntil(const QByteArray &rule) const
{
    auto parsed = RecurrenceRule::parsed(rule);
    if (!parsed || !parsed->until || parsed->interval == 0)
        return std::nullopt;
    const DateTimeValue until = *parsed->until;
    parsed->until.reset();
    std::optional<CivilSeconds> last;
    const CivilSeconds start = master().start->civil;
    const auto isAllowed = [&](CivilSeconds civil) {
        if (form().isDate() || until.isDate)
            return dayOf(civil) <= dayOf(until.civil);
        return until.isUtc ? form().time(civil).toUtc(m_series.local()) <= until.civil : civil <= until.civil;
    };
    if (isAllowed(start))
        last = start;
    const CivilSeconds end = until.civil + 2 * secondsPerDay;
    const auto outcome = RuleWalker(*parsed, start, form().isDate()).walk(start, end, [&](CivilSeconds civil) {
        if (!isAllowed(civil))
            return false;
        last = civil;
        return true;
    });
    return outcome == RuleWalker::Outcome::Finished ? last : std::nullopt;
}

QByteArray SeriesMover::withUntilMoved(const QByteArray &before, const QByteArray &after) const
{
    RuleText text(after);
    const auto part = text.part("UNTIL");
    const auto until = part ? parsedDateTime(*part) : std::nullopt;
    if (!until)
        return after;
    const Zone &local = m_series.local();
    const qint64 days = (dayOf(m_to) - dayOf(m_from)) * secondsPerDay;
    const TimeForm clock { until->isUtc ? CivilTime::Form::Utc : CivilTime::Form::Floating, nullptr, {} };
    const auto last = m_days.isUniform() && !isOtherKind() ? std::nullopt : lastUntil(before);
    if (last) {
        // RFC 5545, section 3.3.10: a day for days, the clock's time for times without a zone, else UTC.
        const TimeForm limit = m_newForm.form == CivilTime::Form::Zoned ? TimeForm::utc() : m_newForm;
        text.setPart("UNTIL", limit.text(limit.civilOf(m_newForm.time(moved(*last)), local)));
    } else if (until->isDate || form().isDate()) {
        const CivilSeconds civil = until->civil + days;
        text.setPart("UNTIL", until->isDate ? TimeForm::date().text(civil) : clock.text(civil));
    } else if (until->isUtc) {
        const CivilSeconds civil = form().civilAt(until->civil, local) + m_to - m_from;
        text.setPart("UNTIL", TimeForm::utc().text(form().time(civil).toUtc(local)));
    } else {
        text.setPart("UNTIL", clock.text(until->civil + m_to - m_from));
    }
    return text.value();
}

QByteArray SeriesMover::movedValue(const QByteArray &value, const CivilTime &time, const TimeForm &form) const
{
    // A day that stands for whatever takes place on it.
    if (time.isDate() && !m_series.form().isDate())
        return TimeForm::date().text(m_days.moved(dayOf(time.civil)) * secondsPerDay);
    const CivilTime after = moved(time);
    return value.isEmpty() ? QByteArray() : form.text(form.civilOf(after, m_series.local()));
}

QByteArray SeriesMover::movedPeriodEnd(
    const QByteArray &end, const CivilTime &start, const AddedDate &added, const TimeForm &form) const
{
    if (parsedDuration(end) || !added.end)
        return end;
    const Zone &local = m_series.local();
    const qint64 length = added.end->toUtc(local) - added.start.toUtc(local);
    return form.text(form.civilAt(start.toUtc(local) + length, local));
}

// EXDATE or RDATE. The values are those of the item, in the same order, but for those that are not understood.
void SeriesMover::moveDates(const QByteArray &name)
{
    const bool isAdded = name == "RDATE";
    qsizetype next = 0;
    const Item::Repetition &repetition = *master().repetition;
    for (const std::size_t line : linesNamed(m_series.lines(), master().component, name)) {
        const PropertyLine property = m_series.property(static_cast<int>(line));
        QByteArrayList values;
        TimeForm lineForm = m_newForm;
        for (const QByteArray &value : property.value().toByteArray().split(',')) {
            const qsizetype slash = isAdded ? value.indexOf('/') : -1;
            const QByteArray start = slash < 0 ? value : value.first(slash);
            if (!parsedDateTime(start) || next >= (isAdded ? repetition.added.size() : repetition.excluded.size())) {
                values.append(value);
                continue;
            }
            const AddedDate added
                = isAdded ? repetition.added.at(next) : AddedDate { repetition.excluded.at(next), {} };
            ++next;
            if (!isOtherKind())
                lineForm = TimeForm::of(property, added.start);
            const bool isDayOfTimed = added.start.isDate() && !form().isDate();
            if (isDayOfTimed && isOtherKind())
                lineForm = TimeForm::date();
            QByteArray text = movedValue(start, added.start, lineForm);
            if (slash >= 0 && !lineForm.isDate())
                text += '/' + movedPeriodEnd(value.sliced(slash + 1), moved(added.start), added, lineForm);
            values.append(text);
        }
        const QByteArray joined = values.join(',');
        m_edits.replaceLine(line,
            isOtherKind() ? name + lineForm.parameters + ':' + joined
                          : lineWithValue(property, unfolded(line), joined));
    }
}

void SeriesMover::moveRecurrenceId(int index)
{
    const int line = m_series.lineOf(index, "RECURRENCE-ID");
    const auto &recurrenceId = m_series.item(index).repetition->recurrenceId;
    if (line < 0 || !recurrenceId)
        return;
    const PropertyLine property = m_series.property(line);
    const QByteArray whole = unfolded(static_cast<std::size_t>(line));
    if (isOtherKind()) {
        const CivilSeconds civil = recurrenceId->isDate() && !form().isDate()
            ? m_days.moved(dayOf(recurrenceId->civil)) * secondsPerDay
            : moved(*recurrenceId).civil;
        m_edits.replaceLine(
            static_cast<std::size_t>(line), "RECURRENCE-ID" + m_newForm.parameters + ':' + m_newForm.text(civil));
        return;
    }
    const TimeForm own = TimeForm::of(property, *recurrenceId);
    m_edits.replaceLine(
        static_cast<std::size_t>(line), lineWithValue(property, whole, movedValue("x", *recurrenceId, own)));
}

void SeriesMover::moveOverride(int index)
{
    const Item &item = m_series.item(index);
    const Zone &local = m_series.local();
    if (!item.repetition->recurrenceId)
        return;
    if (isMoved())
        moveRecurrenceId(index);
    TimesWriter writer(m_series, index, m_edits);
    if (index == m_change.override) {
        const EventTimes &times = m_change.changed;
        TimeForm clock = writer.startForm(m_newForm);
        if (times.isAllDay)
            clock = TimeForm::date();
        else if (clock.isDate())
            clock = m_newForm.isDate() ? m_change.timedForm : m_newForm;
        const bool isSameLength = times.isAllDay == m_change.read.isAllDay
            && times.end - times.start == m_change.read.end - m_change.read.start;
        if (!times.isAllDay)
            clock = clock.naming(times.start);
        writer.write(clock, times.isAllDay ? times.start : clock.civilAt(times.start, local),
            isSameLength ? std::nullopt : std::optional(times.end - times.start));
        return;
    }
    const SeriesText::Place place = m_series.place(*item.repetition->recurrenceId);
    if (!item.start || item.start->isDate() != form().isDate() || item.start->toUtc(local) != place.start.toUtc(local))
        return;
    const bool isAsLong = lengthOf(item) == lengthOf(master());
    TimeForm clock = isOtherKind() ? m_newForm : writer.startForm(m_newForm);
    const CivilTime start = moved(place.start);
    writer.write(clock, clock.civilOf(start, local), isAsLong || isOtherKind() ? m_newLength : std::nullopt);
}

} // namespace

std::optional<QByteArray> seriesWithTimesMoved(const SeriesText &series, const TimesChange &change)
{
    return SeriesMover(series, change).run();
}

QByteArray itemWithTimes(
    const SeriesText &series, int item, const EventTimes &read, const EventTimes &changed, const TimeForm &timedForm)
{
    LineEdits edits(series.lines());
    TimesWriter writer(series, item, edits);
    TimeForm form = writer.startForm(series.form());
    if (changed.isAllDay)
        form = TimeForm::date();
    else if (form.isDate())
        form = series.form().isDate() ? timedForm : series.form();
    if (!changed.isAllDay)
        form = form.naming(changed.start);
    const qint64 length = changed.end - changed.start;
    const bool isSameLength = read.isAllDay == changed.isAllDay && length == read.end - read.start;
    writer.write(form, changed.isAllDay ? changed.start : form.civilAt(changed.start, series.local()),
        isSameLength ? std::nullopt : std::optional(length));
    return edits.text();
}

} // namespace ICalendar
