// SPDX-License-Identifier: MIT
#include "SourceDescription.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace Service
{

namespace
{

using Sources = std::vector<const SourceDescription *>;
using Match = std::function<bool(const SourceDescription &events, const SourceDescription &tasks)>;

struct Calendar {
    const SourceDescription *events = nullptr;
    const SourceDescription *tasks = nullptr;

    const SourceDescription &first() const { return events ? *events : *tasks; }
    bool isDefault() const { return first().isDefault; }
};

// Takes each source that finds a partner out of its list.
void pair(std::vector<Calendar> &calendars, Sources &events, Sources &tasks, const Match &match)
{
    std::erase_if(events, [&](const SourceDescription *each) {
        const auto partner = std::ranges::find_if(tasks, [&](const auto *other) { return match(*each, *other); });
        if (partner == tasks.end())
            return false;
        calendars.push_back({ each, *partner });
        tasks.erase(partner);
        return true;
    });
}

} // namespace

std::vector<CalendarDescription> pairedCalendars(const std::vector<SourceDescription> &sources)
{
    Sources events;
    Sources tasks;
    for (const SourceDescription &each : sources)
        (each.holdsEvents ? events : tasks).push_back(&each);

    std::vector<Calendar> calendars;
    pair(calendars, events, tasks, [](const auto &one, const auto &other) { return one.isDefault && other.isDefault; });
    pair(calendars, events, tasks, [](const auto &one, const auto &other) { return one.isBuiltIn && other.isBuiltIn; });
    pair(calendars, events, tasks, [](const auto &one, const auto &other) {
        return std::tie(one.account, one.name, one.remotePath) == std::tie(other.account, other.name, other.remotePath);
    });
    for (const SourceDescription *each : events)
        calendars.push_back({ each, nullptr });
    for (const SourceDescription *each : tasks)
        calendars.push_back({ nullptr, each });

    std::ranges::sort(calendars, {}, [](const Calendar &each) {
        const SourceDescription &first = each.first();
        // Without a default calendar, the default list of to-dos comes first.
        return std::tuple(!each.isDefault(), !first.holdsEvents && each.isDefault(), first.order, first.name.toLower(),
            first.name, first.uid);
    });

    std::vector<CalendarDescription> descriptions;
    for (const Calendar &each : calendars) {
        CalendarDescription description;
        description.events = each.events ? each.events->uid : QString();
        description.tasks = each.tasks ? each.tasks->uid : QString();
        description.title = each.first().name;
        description.color = each.first().color;
        description.isDefault = each.isDefault();
        descriptions.push_back(std::move(description));
    }
    return descriptions;
}

} // namespace Service
