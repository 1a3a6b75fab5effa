// SPDX-License-Identifier: MIT
#include "ComponentTexts.h"

#include <ContentLines.h>
#include <PropertyLine.h>

#include <QCryptographicHash>

#include <algorithm>
#include <array>
#include <tuple>

namespace Service
{

namespace
{

using ICalendar::Component;
using ICalendar::ContentLines;

QByteArray textOfComponent(const ContentLines &lines, const Component &component)
{
    const qsizetype begin = lines.lines()[static_cast<std::size_t>(component.firstLine)].begin;
    return lines.text().sliced(begin, lines.lines()[static_cast<std::size_t>(component.lastLine)].end - begin);
}

QByteArray recurrenceIdOf(ICalComponent *component)
{
    return takenText(e_cal_util_component_get_recurid_as_string(component));
}

// Ends with the next parameter or with the value.
void removeParameter(QByteArray &line, const QByteArray &beginning)
{
    const qsizetype begin = line.indexOf(beginning);
    if (begin < 0)
        return;
    qsizetype end = begin + beginning.size();
    while (end < line.size() && line.at(end) != ';' && line.at(end) != ':')
        ++end;
    line.remove(begin, end - begin);
}

} // namespace

QByteArray textOf(ICalComponent *component)
{
    QByteArray text = takenText(i_cal_component_as_ical_string(component));
    if (!text.endsWith('\n'))
        text += "\r\n";
    return text;
}

ComponentText componentText(ICalComponent *component)
{
    return { textOf(component), recurrenceIdOf(component) };
}

ComponentText rewritten(const ComponentText &component)
{
    const Owned<ICalComponent> read = CalendarParts::parsed(component.text);
    return read ? ComponentText { textOf(read.get()), component.recurrenceId } : component;
}

QByteArrayList contentOf(const ComponentText &component)
{
    static constexpr std::array notes { "DTSTAMP", "LAST-MODIFIED", "CREATED", "SEQUENCE", "X-EVOLUTION-" };
    QByteArrayList content;
    const ContentLines lines(component.text);
    for (const auto &line : lines.lines()) {
        QByteArray whole = lines.unfolded(line);
        if (std::ranges::any_of(notes, [&](const char *note) { return whole.startsWith(note); }))
            continue;
        removeParameter(whole, ";X-EVOLUTION-ENDDATE=");
        content << std::move(whole);
    }
    std::ranges::sort(content);
    return content;
}

QByteArray versionOf(const QList<ComponentText> &components)
{
    QByteArrayList contents;
    for (const ComponentText &each : components)
        contents << each.recurrenceId + '\n' + contentOf(each).join('\n');
    std::ranges::sort(contents);
    return QCryptographicHash::hash(contents.join('\n'), QCryptographicHash::Sha1);
}

bool isOfSeries(ICalComponent *component)
{
    return e_cal_util_component_has_recurrences(component) || e_cal_util_component_is_instance(component);
}

QByteArrayList zonesOf(const QByteArray &text)
{
    QByteArrayList zones;
    if (!text.contains("TZID"))
        return zones;
    const ContentLines lines(text);
    for (const auto &line : lines.lines()) {
        const ICalendar::PropertyLine property(lines.unfolded(line));
        if (const auto zone = property.parameter("TZID"); zone && !zone->isEmpty() && !zones.contains(*zone))
            zones << *zone;
    }
    return zones;
}

QByteArray calendarText(QList<ComponentText> components, const QByteArrayList &zones)
{
    std::ranges::sort(components, {}, [](const ComponentText &each) { return std::tie(each.recurrenceId, each.text); });
    QByteArray text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + zones.join();
    for (const ComponentText &each : components)
        text += each.text;
    return text + "END:VCALENDAR\r\n";
}

CalendarParts::CalendarParts(const QByteArray &text)
{
    const ContentLines lines(text);
    for (const Component &component : lines.components()) {
        const bool isOnTop = component.parent >= 0
            && lines.components()[static_cast<std::size_t>(component.parent)].name == "VCALENDAR";
        if (!isOnTop)
            continue;
        const QByteArray own = textOfComponent(lines, component);
        if (component.name == "VTIMEZONE") {
            zones << own;
        } else {
            const Owned<ICalComponent> read = parsed(own);
            components << ComponentText { own, read ? recurrenceIdOf(read.get()) : QByteArray() };
        }
    }
}

Owned<ICalComponent> CalendarParts::parsed(const QByteArray &text)
{
    return Owned<ICalComponent>(i_cal_component_new_from_string(text.constData()));
}

bool isVersion(const QByteArray &version, QList<ComponentText> components)
{
    constexpr int rewritings = 3;
    for (int count = 0; count <= rewritings; ++count) {
        if (versionOf(components) == version)
            return true;
        for (ComponentText &each : components)
            each = rewritten(each);
    }
    return false;
}

} // namespace Service
