// SPDX-License-Identifier: MIT
#include "ICalendarReader.h"

#include "CivilDate.h"
#include "ContentLines.h"
#include "PropertyLine.h"
#include "Values.h"
#include "ZoneRegistry.h"

#include <QHash>
#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <utility>

namespace ICalendar
{

namespace
{

constexpr qsizetype longestLine = 4'000'000;
constexpr qsizetype mostProblems = 20;

// UTF-16 is told by its mark, or by every other byte of "BEGIN" being NUL.
std::optional<QByteArray> convertedFromUtf16(const QByteArray &text)
{
    const bool isLittleEndian = text.startsWith("\xFF\xFE") || text.startsWith(QByteArrayView("B\0E\0", 4));
    const bool isBigEndian = text.startsWith("\xFE\xFF") || text.startsWith(QByteArrayView("\0B\0E", 4));
    if (!isLittleEndian && !isBigEndian)
        return std::nullopt;
    QStringDecoder decoder(isLittleEndian ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
    const QString converted = decoder(text);
    return converted.toUtf8();
}

// An empty text counts as none.
std::optional<QString> presentText(QString text)
{
    if (text.isEmpty())
        return std::nullopt;
    return text;
}

QString addressWithoutScheme(const QString &uri)
{
    return uri.startsWith(QStringLiteral("mailto:"), Qt::CaseInsensitive) ? uri.mid(7) : uri;
}

// What is said about an item in several lines, until all of them are read.
struct Draft {
    Item item;
    std::optional<CivilTime> end; // DTEND
    std::optional<CivilTime> due; // DUE
    std::optional<DurationValue> duration;
    bool hasStatus = false;
    bool hasSequence = false;
    bool hasPriority = false;
    bool hasCompleted = false;
    int line = 0; // where it begins
};

class Reader
{
public:
    Reader(const ContentLines &lines, ZoneRegistry &zones, Document &document)
        : m_lines(lines)
        , m_zones(zones)
        , m_document(document)
        , m_roles(lines.components().size())
    {
    }

    void read();

private:
    // What a component is to us, and which draft or alarm it fills.
    struct Role {
        enum class Kind { Nothing, Calendar, Item, Alarm };

        Kind kind = Kind::Nothing;
        std::size_t draft = 0;
        qsizetype alarm = 0;
    };

    void assignRoles();
    int calendarOf(int component) const;
    void takeCalendarProperty(const PropertyLine &property);
    void takeItemProperty(Draft &draft, const PropertyLine &property, int number);
    bool takeTimeProperty(Draft &draft, const PropertyLine &property, int number);
    void takeCompleted(Draft &draft, const PropertyLine &property, int number);
    void takeAlarmProperty(Alarm &alarm, const PropertyLine &property);
    void takeAddedDates(Item &item, const PropertyLine &property, int number);
    void finish(Draft &draft);
    static void finishAlarms(QList<Alarm> &alarms);
    void finishEvent(Draft &draft);
    void finishTask(Draft &draft);

    std::optional<CivilTime> time(const PropertyLine &property, QByteArrayView text);
    ZonePtr zone(const QByteArray &tzid);
    void findEmbeddedZones();
    void note(int line, const QString &text);
    void noteValue(const PropertyLine &property, int number);

    const ContentLines &m_lines;
    ZoneRegistry &m_zones;
    Document &m_document;
    std::vector<Role> m_roles; // one for each component
    std::vector<Draft> m_drafts;
    // What is named in one calendar of a text may be something else in another (RFC 5545, section 3.6.5).
    using ZoneName = std::pair<int, QByteArray>; // the calendar's component, TZID
    constexpr static int anyCalendar = -2;

    int m_calendar = -1; // the one around the line being read
    QHash<ZoneName, ZonePtr> m_zonesByName;
    bool m_knowsEmbeddedZones = false;
    QHash<ZoneName, QByteArray> m_embeddedZones; // texts; those of any calendar once more
    ZonePtr m_local = ZoneRegistry::localZone();
};

void Reader::read()
{
    assignRoles();
    for (const ContentLine &line : m_lines.lines()) {
        if (line.component < 0)
            continue;
        const Role &role = m_roles[static_cast<std::size_t>(line.component)];
        if (role.kind == Role::Kind::Nothing)
            continue;
        if (line.end - line.begin > longestLine) {
            note(line.number, QStringLiteral("a line is too long and is left out"));
            continue;
        }
        m_calendar = calendarOf(line.component);
        const PropertyLine property(m_lines.unfolded(line));
        if (role.kind == Role::Kind::Calendar)
            takeCalendarProperty(property);
        else if (role.kind == Role::Kind::Item)
            takeItemProperty(m_drafts[role.draft], property, line.number);
        else
            takeAlarmProperty(m_drafts[role.draft].item.alarms.edit()[role.alarm], property);
    }
    // Exactly as much as it takes: most texts hold one item, and thousands of them are kept.
    m_document.items.reserve(static_cast<qsizetype>(m_drafts.size()));
    for (Draft &draft : m_drafts)
        finish(draft);
}

void Reader::assignRoles()
{
    const auto &components = m_lines.components();
    for (std::size_t i = 0; i < components.size(); ++i) {
        const Component &component = components[i];
        if (component.name == "VCALENDAR") {
            m_roles[i].kind = Role::Kind::Calendar;
        } else if (component.name == "VEVENT" || component.name == "VTODO") {
            Draft draft;
            draft.item.kind = component.name == "VEVENT" ? Item::Kind::Event : Item::Kind::Task;
            draft.item.component = static_cast<int>(i);
            draft.line = m_lines.lines()[static_cast<std::size_t>(component.firstLine)].number;
            m_roles[i] = { Role::Kind::Item, m_drafts.size(), 0 };
            m_drafts.push_back(std::move(draft));
        } else if (component.name == "VALARM" && component.parent >= 0) {
            const Role &parent = m_roles[static_cast<std::size_t>(component.parent)];
            if (parent.kind != Role::Kind::Item)
                continue;
            QList<Alarm> &alarms = m_drafts[parent.draft].item.alarms.edit();
            m_roles[i] = { Role::Kind::Alarm, parent.draft, alarms.size() };
            alarms.append(Alarm());
        }
    }
}

// The outermost component, which is the calendar; an item may stand by itself.
int Reader::calendarOf(int component) const
{
    const auto &components = m_lines.components();
    while (components[static_cast<std::size_t>(component)].parent >= 0)
        component = components[static_cast<std::size_t>(component)].parent;
    return component;
}

void Reader::takeCalendarProperty(const PropertyLine &property)
{
    const QByteArray &name = property.name();
    Seldom<Heading> &heading = m_document.heading;
    if (name == "X-WR-CALNAME" && heading->name.isEmpty())
        heading.edit().name = parsedText(property.value());
    else if (name == "X-APPLE-CALENDAR-COLOR" || (name == "COLOR" && heading->color.isEmpty()))
        heading.edit().color = parsedText(property.value()).trimmed();
}

void Reader::takeItemProperty(Draft &draft, const PropertyLine &property, int number)
{
    Item &item = draft.item;
    const QByteArray &name = property.name();
    const auto takeText = [](QString &field, const QString &text) {
        if (field.isEmpty())
            field = text;
    };
    const auto takeSeldomText = [](Seldom<QString> &field, const QString &text) {
        if (field->isEmpty() && !text.isEmpty())
            field.edit() = text;
    };
    if (takeTimeProperty(draft, property, number))
        return;
    if (name == "UID") {
        if (item.uid.isEmpty())
            item.uid = parsedText(property.value()).trimmed();
    } else if (name == "SUMMARY") {
        takeText(item.summary, parsedText(property.value()));
    } else if (name == "DESCRIPTION") {
        takeSeldomText(item.description, parsedText(property.value()));
    } else if (name == "LOCATION") {
        takeText(item.location, parsedText(property.value()));
    } else if (name == "URL") {
        takeSeldomText(item.url, decoded(property.value()).trimmed());
    } else if (name == "STATUS") {
        const QByteArray status = property.value().toByteArray().trimmed().toUpper();
        if (!draft.hasStatus) {
            item.isCancelled = status == "CANCELLED";
            if (status == "COMPLETED")
                item.toDo.edit().isCompleted = true;
        }
        draft.hasStatus = true;
    } else if (name == "SEQUENCE") {
        if (!draft.hasSequence)
            item.sequence = static_cast<int>(
                std::clamp<qint64>(parsedInteger(property.value()).value_or(0), 0, std::numeric_limits<int>::max()));
        draft.hasSequence = true;
    } else if (name == "PRIORITY") {
        const auto priority = std::clamp<qint64>(parsedInteger(property.value()).value_or(0), 0, 9);
        if (!draft.hasPriority && priority > 0)
            item.toDo.edit().priority = static_cast<int>(priority);
        draft.hasPriority = true;
    } else if (name == "RRULE") {
        if (!property.value().trimmed().isEmpty())
            item.repetition.edit().rules.append(property.value().trimmed().toByteArray());
    } else if (name == "ATTENDEE") {
        Attendee attendee;
        attendee.address = decoded(property.value()).trimmed();
        if (const auto commonName = property.parameter("CN"))
            attendee.commonName = presentText(decoded(*commonName));
        if (const auto status = property.parameter("PARTSTAT"))
            attendee.status = presentText(decoded(status->toUpper()));
        item.attendees.edit().append(attendee);
    }
}

bool Reader::takeTimeProperty(Draft &draft, const PropertyLine &property, int number)
{
    Item &item = draft.item;
    const QByteArray &name = property.name();
    const auto takeTime = [&](std::optional<CivilTime> &field) {
        if (field)
            return;
        field = time(property, property.value());
        if (!field)
            noteValue(property, number);
    };
    if (name == "DTSTART") {
        takeTime(item.start);
    } else if (name == "DTEND") {
        takeTime(draft.end);
    } else if (name == "DUE") {
        takeTime(draft.due);
    } else if (name == "RECURRENCE-ID") {
        takeTime(item.repetition.edit().recurrenceId);
    } else if (name == "DURATION") {
        if (!draft.duration)
            draft.duration = parsedDuration(property.value());
        if (!draft.duration)
            noteValue(property, number);
    } else if (name == "EXDATE") {
        for (const QByteArray &one : property.value().toByteArray().split(',')) {
            if (const auto excluded = time(property, one))
                item.repetition.edit().excluded.append(*excluded);
            else
                noteValue(property, number);
        }
    } else if (name == "RDATE") {
        takeAddedDates(item, property, number);
    } else if (name == "COMPLETED") {
        takeCompleted(draft, property, number);
    } else {
        return false;
    }
    return true;
}

void Reader::takeCompleted(Draft &draft, const PropertyLine &property, int number)
{
    if (draft.hasCompleted || property.value().trimmed().isEmpty())
        return;
    draft.hasCompleted = true;
    draft.item.toDo.edit().isCompleted = true;
    if (const auto completed = time(property, property.value()))
        draft.item.toDo.edit().completed = completed->toUtc(*m_local);
    else
        noteValue(property, number);
}

void Reader::takeAddedDates(Item &item, const PropertyLine &property, int number)
{
    for (const QByteArray &one : property.value().toByteArray().split(',')) {
        const qsizetype slash = one.indexOf('/');
        const auto start = time(property, QByteArrayView(one).first(slash < 0 ? one.size() : slash));
        if (!start) {
            noteValue(property, number);
            continue;
        }
        AddedDate added { *start, std::nullopt };
        if (slash >= 0) {
            const QByteArrayView end = QByteArrayView(one).sliced(slash + 1);
            if (const auto duration = parsedDuration(end)) {
                const UtcSeconds first
                    = CivilTime { start->civil + duration->days * secondsPerDay, start->form, start->zone }.toUtc(
                        *m_local);
                added.end = CivilTime { first + duration->seconds, CivilTime::Form::Utc, nullptr };
            } else {
                added.end = time(property, end);
            }
        }
        item.repetition.edit().added.append(added);
    }
}

void Reader::takeAlarmProperty(Alarm &alarm, const PropertyLine &property)
{
    const QByteArray &name = property.name();
    if (name == "ACTION") {
        if (alarm.action.isEmpty())
            alarm.action = QString::fromLatin1(property.value().trimmed().toByteArray().toUpper());
    } else if (name == "TRIGGER") {
        if (const auto duration = parsedDuration(property.value())) {
            alarm.relativeTrigger = duration->days * secondsPerDay + duration->seconds;
            alarm.relatedToEnd = property.parameter("RELATED").value_or(QByteArray()).toUpper() == "END";
        } else if (const auto instant = time(property, property.value())) {
            alarm.absoluteTrigger = instant->toUtc(*m_local);
        }
    } else if (name == "ATTACH") {
        // Which of the two it is depends on an action that may follow.
        if (!alarm.sound)
            alarm.sound = alarm.url = presentText(decoded(property.value()).trimmed());
    } else if (name == "ATTENDEE") {
        if (!alarm.emailAddress)
            alarm.emailAddress = presentText(addressWithoutScheme(decoded(property.value()).trimmed()));
    }
}

void Reader::finishAlarms(QList<Alarm> &alarms)
{
    for (Alarm &alarm : alarms) {
        if (alarm.action != QStringLiteral("AUDIO"))
            alarm.sound.reset();
        if (alarm.action != QStringLiteral("PROCEDURE"))
            alarm.url.reset();
    }
    alarms.squeeze();
}

void Reader::finish(Draft &draft)
{
    if (!draft.item.alarms->isEmpty())
        finishAlarms(draft.item.alarms.edit());
    if (draft.item.kind == Item::Kind::Event)
        finishEvent(draft);
    else
        finishTask(draft);
    m_document.items.append(std::move(draft.item));
}

// The start with a length added: days by the calendar, then exact seconds.
CivilTime later(const CivilTime &start, const DurationValue &length)
{
    CivilTime result = start;
    result.civil += length.days * secondsPerDay;
    if (length.seconds == 0)
        return result;
    if (start.form == CivilTime::Form::Zoned && start.zone)
        return { start.zone->toUtc(result.civil) + length.seconds, CivilTime::Form::Utc, nullptr };
    result.civil += length.seconds;
    return result;
}

void Reader::finishEvent(Draft &draft)
{
    Item &item = draft.item;
    if (!item.start && !item.repetition->recurrenceId) {
        note(draft.line, QStringLiteral("an event has no start and is not shown"));
        return;
    }
    const CivilTime start = item.start.value_or(item.repetition->recurrenceId.value_or(CivilTime()));
    const DurationValue given = draft.duration.value_or(DurationValue());
    DurationValue length { std::max<qint64>(given.days, 0), std::max<qint64>(given.seconds, 0) };
    item.hasDuration = !draft.end && draft.duration;
    if (start.isDate()) {
        if (draft.end)
            length = { dayOf(draft.end->civil) - dayOf(start.civil), 0 };
        else
            length = { length.days + (length.seconds + secondsPerDay - 1) / secondsPerDay, 0 };
        item.durationDays = std::max<qint64>(length.days, 1);
        item.end = later(start, { item.durationDays, 0 });
        return;
    }
    if (!draft.end) {
        item.durationDays = length.days;
        item.durationSeconds = length.seconds;
        item.end = later(start, length);
        return;
    }
    CivilTime end = *draft.end;
    if (end.isDate()) {
        end.form = start.form;
        end.zone = start.zone;
    }
    const bool isBothFloating = start.form == CivilTime::Form::Floating && end.form == CivilTime::Form::Floating;
    const qint64 seconds = isBothFloating ? end.civil - start.civil : end.toUtc(*m_local) - start.toUtc(*m_local);
    item.durationSeconds = std::max<qint64>(seconds, 0);
    item.end = seconds < 0 ? start : end;
}

void Reader::finishTask(Draft &draft)
{
    Item &item = draft.item;
    if (draft.due)
        item.toDo.edit().due = draft.due;
    else if (item.start && draft.duration)
        item.toDo.edit().due = later(
            *item.start, { std::max<qint64>(draft.duration->days, 0), std::max<qint64>(draft.duration->seconds, 0) });
}

std::optional<CivilTime> Reader::time(const PropertyLine &property, QByteArrayView text)
{
    const auto value = parsedDateTime(text);
    if (!value)
        return std::nullopt;
    if (value->isDate)
        return CivilTime { value->civil, CivilTime::Form::Date, nullptr };
    if (property.parameter("VALUE").value_or(QByteArray()).toUpper() == "DATE")
        return CivilTime { dayOf(value->civil) * secondsPerDay, CivilTime::Form::Date, nullptr };
    if (value->isUtc)
        return CivilTime { value->civil, CivilTime::Form::Utc, nullptr };
    const auto tzid = property.parameter("TZID");
    const ZonePtr found = tzid ? zone(*tzid) : nullptr;
    if (!found)
        return CivilTime { value->civil, CivilTime::Form::Floating, nullptr };
    return CivilTime { value->civil, CivilTime::Form::Zoned, found };
}

ZonePtr Reader::zone(const QByteArray &tzid)
{
    const ZoneName here { m_calendar, tzid };
    const auto known = m_zonesByName.constFind(here);
    if (known != m_zonesByName.constEnd())
        return *known;

    findEmbeddedZones();
    const QByteArray name = tzid.trimmed();
    auto embedded = m_embeddedZones.constFind({ m_calendar, name });
    if (embedded == m_embeddedZones.constEnd())
        embedded = m_embeddedZones.constFind({ anyCalendar, name });
    ZonePtr found;
    if (embedded != m_embeddedZones.constEnd())
        found = m_zones.embeddedZone(*embedded);
    if (!found)
        found = m_zones.systemZone(decoded(tzid));
    if (!found)
        note(0, QStringLiteral("the time zone \"%1\" is not known; local time stands in").arg(decoded(tzid.left(100))));
    m_zonesByName.insert(here, found);
    return found;
}

// Of several by one name in a calendar, the first.
void Reader::findEmbeddedZones()
{
    if (m_knowsEmbeddedZones)
        return;
    m_knowsEmbeddedZones = true;
    const auto &lines = m_lines.lines();
    const auto take = [this](const ZoneName &name, const QByteArray &text) {
        if (!m_embeddedZones.contains(name))
            m_embeddedZones.insert(name, text);
    };
    for (std::size_t index = 0; index < m_lines.components().size(); ++index) {
        const Component &component = m_lines.components()[index];
        if (component.name != "VTIMEZONE")
            continue;
        const qsizetype begin = lines[static_cast<std::size_t>(component.firstLine)].begin;
        const qsizetype end = lines[static_cast<std::size_t>(component.lastLine)].end;
        for (int i = component.firstLine; i <= component.lastLine; ++i) {
            const ContentLine &line = lines[static_cast<std::size_t>(i)];
            const QByteArrayView raw = QByteArrayView(m_lines.text()).sliced(line.begin, line.end - line.begin);
            if (propertyName(raw.first(std::min<qsizetype>(raw.size(), 16))) != "TZID")
                continue;
            const QByteArray name = PropertyLine(m_lines.unfolded(line)).value().trimmed().toByteArray();
            const QByteArray text = m_lines.text().sliced(begin, end - begin);
            take({ calendarOf(static_cast<int>(index)), name }, text);
            take({ anyCalendar, name }, text);
            break;
        }
    }
}

void Reader::note(int line, const QString &text)
{
    if (m_document.problems->size() < mostProblems)
        m_document.problems.edit().append({ line, text });
}

void Reader::noteValue(const PropertyLine &property, int number)
{
    note(
        number, QStringLiteral("the value of %1 is not understood").arg(QString::fromLatin1(property.name().left(40))));
}

// An item within an alarm, say, is there because something lacks its end.
bool isInPlace(const Component &component, const ContentLines &lines)
{
    const bool isItem = component.name == "VEVENT" || component.name == "VTODO";
    return !isItem || component.parent < 0
        || lines.components()[static_cast<std::size_t>(component.parent)].name == "VCALENDAR";
}

} // namespace

Document readDocument(const QByteArray &text, ZoneRegistry &zones)
{
    Document document;
    const auto converted = convertedFromUtf16(text);
    document.isConverted = converted.has_value();
    const ContentLines lines(converted ? *converted : text);
    document.isCut = lines.isCut();
    document.isUnclosed = !std::ranges::all_of(lines.components(),
        [&](const Component &component) { return component.isClosed && isInPlace(component, lines); });
    if (lines.components().empty())
        document.problems.edit().append({ 0, QStringLiteral("there is no calendar data in it") });
    else if (document.isCut)
        document.problems.edit().append({ 0, QStringLiteral("the text ends before its components do") });
    else if (document.isUnclosed)
        document.problems.edit().append(
            { 0, QStringLiteral("a component lacks its end, so nothing is changed in it") });
    Reader(lines, zones, document).read();
    return document;
}

} // namespace ICalendar
