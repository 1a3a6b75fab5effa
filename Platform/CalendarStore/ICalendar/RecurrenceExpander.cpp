// SPDX-License-Identifier: MIT
#include "RecurrenceExpander.h"

#include "CivilDate.h"
#include "RuleWalker.h"

#include <algorithm>
#include <limits>

namespace ICalendar
{

namespace
{

// No day holds more occurrences of one event that anybody could look at.
constexpr std::size_t mostOccurrences = 10'000;

// The standard wants one rule at most; some programs write a few. Only damage asks for more, and each costs a walk.
constexpr qsizetype mostRules = 100;
constexpr qint64 mostWorkOfAllRules = 1'000'000;

// Wall-clock and universal time never differ by more; nor do a start and the one that a clock change moves it to.
constexpr qint64 widestOffset = 2 * secondsPerDay;

constexpr UtcSeconds earliest = dayNumber(-10, 1, 1) * secondsPerDay;
constexpr UtcSeconds latest = dayNumber(10'010, 1, 1) * secondsPerDay;

class UtcZone final : public Zone
{
public:
    UtcSeconds toUtc(CivilSeconds civil) const override { return civil; }
    CivilSeconds toCivil(UtcSeconds utc) const override { return utc; }
};

const Zone &utcZone()
{
    static const UtcZone zone;
    return zone;
}

// The zone in which a time is meant.
const Zone &zoneOf(const CivilTime &time, const Zone &local)
{
    if (time.form == CivilTime::Form::Utc)
        return utcZone();
    return time.form == CivilTime::Form::Zoned && time.zone ? *time.zone : local;
}

// Names occurrences by their instant, or by their day where the file gives no time.
struct OccurrenceNames {
    std::vector<UtcSeconds> instants;
    std::vector<DayNumber> days;

    void sort()
    {
        std::ranges::sort(instants);
        std::ranges::sort(days);
    }
    bool contains(UtcSeconds instant, DayNumber day) const
    {
        return std::ranges::binary_search(instants, instant) || std::ranges::binary_search(days, day);
    }
};

// One series and the occurrences that are made of it.
class Series
{
public:
    Series(const Item &master, const QList<const Item *> &overrides, const Zone &local);

    Expansion expand(UtcSeconds from, UtcSeconds to);
    std::optional<UtcSeconds> lastEnd();

private:
    struct Made {
        UtcSeconds start;
        Occurrence occurrence;
    };

    void name(OccurrenceNames &names, const CivilTime &time) const;
    void chooseOverrides();
    CivilTime timeInSeries(CivilSeconds civil) const { return { civil, m_start.form, m_start.zone }; }
    CivilTime inFormOfSeries(const CivilTime &recurrenceId) const;
    CivilTime endOf(const CivilTime &start) const;
    static bool overlaps(UtcSeconds start, UtcSeconds end, UtcSeconds from, UtcSeconds to);
    // Takes an occurrence that the series makes if it lies in the range and is neither excluded nor overridden.
    void take(const CivilTime &start, const CivilTime &end);
    bool isBeforeUntil(const RecurrenceRule &rule, CivilSeconds civil) const;
    qsizetype followedRules() const { return std::min(mostRules, m_master.repetition->rules.size()); }
    void takeRule(const RecurrenceRule &rule);
    void takeAddedDates();
    void takeOverrides();
    std::optional<UtcSeconds> lastEndOfRule(const RecurrenceRule &rule);

    const Item &m_master;
    const QList<const Item *> &m_overrides;
    const Zone &m_local;
    CivilTime m_start;
    const Zone &m_zone;
    OccurrenceNames m_excluded;
    OccurrenceNames m_overridden;
    std::vector<int> m_chosenOverrides;
    UtcSeconds m_from = 0;
    UtcSeconds m_to = 0;
    std::vector<Made> m_made;
    bool m_repeatsTooOften = false;
    qint64 m_work = 0;
};

Series::Series(const Item &master, const QList<const Item *> &overrides, const Zone &local)
    : m_master(master)
    , m_overrides(overrides)
    , m_local(local)
    , m_start(master.start.value_or(CivilTime()))
    , m_zone(zoneOf(m_start, local))
{
    for (const CivilTime &time : master.repetition->excluded)
        name(m_excluded, time);
    m_excluded.sort();
    chooseOverrides();
}

void Series::name(OccurrenceNames &names, const CivilTime &time) const
{
    if (m_start.isDate())
        names.days.push_back(dayOf(time.form == CivilTime::Form::Utc ? m_local.toCivil(time.civil) : time.civil));
    else if (time.isDate())
        names.days.push_back(dayOf(time.civil));
    else
        names.instants.push_back(time.toUtc(m_local));
}

// Of several overrides of one occurrence the one with the highest sequence number counts.
void Series::chooseOverrides()
{
    struct Candidate {
        UtcSeconds instant;
        int sequence;
        int index;
    };
    std::vector<Candidate> candidates;
    for (int i = 0; i < static_cast<int>(m_overrides.size()); ++i) {
        const Item &override = *m_overrides[i];
        if (!override.repetition->recurrenceId)
            continue;
        const CivilTime recurrenceId = inFormOfSeries(*override.repetition->recurrenceId);
        candidates.push_back({ recurrenceId.toUtc(m_local), override.sequence, i });
        name(m_overridden, *override.repetition->recurrenceId);
    }
    m_overridden.sort();
    std::ranges::stable_sort(candidates, [](const Candidate &a, const Candidate &b) {
        return a.instant != b.instant ? a.instant < b.instant : a.sequence > b.sequence;
    });
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (i == 0 || candidates[i].instant != candidates[i - 1].instant)
            m_chosenOverrides.push_back(candidates[i].index);
    }
}

// An occurrence is named by the start that the series gives it, so the name is put in the series' own terms.
CivilTime Series::inFormOfSeries(const CivilTime &recurrenceId) const
{
    if (!m_master.start || (recurrenceId.form == m_start.form && recurrenceId.zone == m_start.zone))
        return recurrenceId;
    if (m_start.isDate()) {
        const CivilSeconds civil
            = recurrenceId.form == CivilTime::Form::Utc ? m_local.toCivil(recurrenceId.civil) : recurrenceId.civil;
        return timeInSeries(dayOf(civil) * secondsPerDay);
    }
    if (recurrenceId.isDate())
        return timeInSeries(recurrenceId.civil + timeOfDay(m_start.civil));
    return timeInSeries(m_zone.toCivil(recurrenceId.toUtc(m_local)));
}

CivilTime Series::endOf(const CivilTime &start) const
{
    CivilTime end = start;
    end.civil += m_master.durationDays * secondsPerDay;
    if (m_master.durationSeconds == 0)
        return end;
    return { end.toUtc(m_local) + m_master.durationSeconds, CivilTime::Form::Utc, nullptr };
}

bool Series::overlaps(UtcSeconds start, UtcSeconds end, UtcSeconds from, UtcSeconds to)
{
    return start <= to && (end > from || (end == start && start >= from));
}

void Series::take(const CivilTime &start, const CivilTime &end)
{
    const UtcSeconds startInstant = start.toUtc(m_local);
    const UtcSeconds endInstant = std::max(startInstant, end.toUtc(m_local));
    if (!overlaps(startInstant, endInstant, m_from, m_to))
        return;
    const DayNumber day = dayOf(start.isDate() ? start.civil : m_zone.toCivil(startInstant));
    if (m_excluded.contains(startInstant, day) || m_overridden.contains(startInstant, day))
        return;
    m_made.push_back({ startInstant, { start, start, end.toUtc(m_local) < startInstant ? start : end, -1 } });
}

bool Series::isBeforeUntil(const RecurrenceRule &rule, CivilSeconds civil) const
{
    if (!rule.until)
        return true;
    // A day as the limit means all of it, whatever the time of the occurrences.
    if (m_start.isDate() || rule.until->isDate)
        return dayOf(civil) <= dayOf(rule.until->civil);
    return rule.until->isUtc ? m_zone.toUtc(civil) <= rule.until->civil : civil <= rule.until->civil;
}

void Series::takeRule(const RecurrenceRule &rule)
{
    if (rule.interval == 0 || m_work > mostWorkOfAllRules) {
        m_repeatsTooOften = true;
        return;
    }
    const qint64 lookBack = m_master.durationDays * secondsPerDay + m_master.durationSeconds + widestOffset;
    const std::size_t madeBefore = m_made.size();
    RuleWalker walker(rule, m_start.civil, m_start.isDate());
    const auto outcome = walker.walk(m_from - lookBack, m_to + widestOffset, [&](CivilSeconds civil) {
        if (!isBeforeUntil(rule, civil))
            return false;
        const CivilTime start = timeInSeries(civil);
        if (civil > m_from - lookBack)
            take(start, endOf(start));
        return m_made.size() <= mostOccurrences;
    });
    m_work += walker.work();
    if (outcome == RuleWalker::Outcome::TooMuchWork || m_made.size() > mostOccurrences) {
        m_made.erase(m_made.begin() + static_cast<std::ptrdiff_t>(madeBefore), m_made.end());
        m_repeatsTooOften = true;
    }
}

void Series::takeAddedDates()
{
    for (const AddedDate &added : m_master.repetition->added) {
        CivilTime start = added.start;
        if (m_start.isDate() || start.isDate())
            start = inFormOfSeries(start);
        take(start, added.end.value_or(endOf(start)));
    }
}

void Series::takeOverrides()
{
    for (const int index : m_chosenOverrides) {
        const Item &override = *m_overrides[index];
        const CivilTime start = override.start.value_or(*override.repetition->recurrenceId);
        const CivilTime end = override.end.value_or(start);
        const UtcSeconds startInstant = start.toUtc(m_local);
        const UtcSeconds endInstant = std::max(startInstant, end.toUtc(m_local));
        if (overlaps(startInstant, endInstant, m_from, m_to))
            m_made.push_back(
                { startInstant, { inFormOfSeries(*override.repetition->recurrenceId), start, end, index } });
    }
}

Expansion Series::expand(UtcSeconds from, UtcSeconds to)
{
    m_from = std::clamp(from, earliest, latest);
    m_to = std::clamp(to, earliest, latest);
    if (m_master.start) {
        const bool endsAsWritten = m_master.end && !m_master.hasDuration;
        take(m_start, endsAsWritten ? *m_master.end : endOf(m_start));
        m_repeatsTooOften = m_master.repetition->rules.size() > mostRules;
        for (qsizetype i = 0; i < followedRules(); ++i) {
            if (const auto rule = RecurrenceRule::parsed(m_master.repetition->rules[i]))
                takeRule(*rule);
        }
        takeAddedDates();
        // One instant makes one occurrence, however many rules and dates name it.
        std::ranges::stable_sort(m_made, {}, &Made::start);
        const auto startsTogether = [](const Made &a, const Made &b) { return a.start == b.start; };
        m_made.erase(std::unique(m_made.begin(), m_made.end(), startsTogether), m_made.end());
    }
    takeOverrides();
    std::ranges::stable_sort(m_made, {}, &Made::start);

    Expansion expansion;
    expansion.repeatsTooOften = m_repeatsTooOften;
    expansion.occurrences.reserve(static_cast<qsizetype>(m_made.size()));
    for (const Made &made : m_made)
        expansion.occurrences.append(made.occurrence);
    return expansion;
}

std::optional<UtcSeconds> Series::lastEndOfRule(const RecurrenceRule &rule)
{
    if (rule.interval == 0)
        return m_start.toUtc(m_local);
    if (rule.until) {
        const bool isByDay = m_start.isDate() || rule.until->isDate;
        const CivilSeconds last = isByDay ? (dayOf(rule.until->civil) + 1) * secondsPerDay : rule.until->civil;
        const CivilSeconds civil = rule.until->isUtc && !isByDay ? m_zone.toCivil(last) : last;
        return endOf(timeInSeries(civil)).toUtc(m_local) + secondsPerHour;
    }
    if (!rule.count)
        return std::nullopt;
    CivilSeconds last = m_start.civil;
    qint64 number = 1;
    RuleWalker walker(rule, m_start.civil, m_start.isDate());
    walker.walk(m_start.civil, latest, [&](CivilSeconds civil) {
        last = civil;
        ++number;
        return true;
    });
    m_work += walker.work();
    if (number < *rule.count || m_work > mostWorkOfAllRules)
        return std::nullopt;
    return endOf(timeInSeries(last)).toUtc(m_local);
}

std::optional<UtcSeconds> Series::lastEnd()
{
    UtcSeconds last = std::numeric_limits<UtcSeconds>::min();
    if (m_master.start) {
        last = m_start.toUtc(m_local);
        if (m_master.end)
            last = std::max(last, m_master.end->toUtc(m_local));
        last = std::max(last, endOf(m_start).toUtc(m_local));
        for (qsizetype i = 0; i < followedRules(); ++i) {
            const auto rule = RecurrenceRule::parsed(m_master.repetition->rules[i]);
            if (!rule)
                continue;
            const auto end = lastEndOfRule(*rule);
            if (!end)
                return std::nullopt;
            last = std::max(last, *end);
        }
        for (const AddedDate &added : m_master.repetition->added) {
            const CivilTime start
                = m_start.isDate() || added.start.isDate() ? inFormOfSeries(added.start) : added.start;
            last = std::max({ last, start.toUtc(m_local), added.end.value_or(endOf(start)).toUtc(m_local) });
        }
    }
    for (const int index : m_chosenOverrides) {
        const Item &override = *m_overrides[index];
        const CivilTime start = override.start.value_or(*override.repetition->recurrenceId);
        last = std::max({ last, start.toUtc(m_local), override.end.value_or(start).toUtc(m_local) });
    }
    return last;
}

} // namespace

Expansion expandSeries(
    const Item &master, const QList<const Item *> &overrides, UtcSeconds from, UtcSeconds to, const Zone &local)
{
    return Series(master, overrides, local).expand(from, to);
}

std::optional<UtcSeconds> lastEnd(const Item &master, const QList<const Item *> &overrides, const Zone &local)
{
    return Series(master, overrides, local).lastEnd();
}

} // namespace ICalendar
