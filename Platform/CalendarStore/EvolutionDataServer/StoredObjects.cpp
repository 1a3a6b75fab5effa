// SPDX-License-Identifier: MIT
#include "StoredObjects.h"

#include "Deadline.h"

#include <TextPatcher.h>

#include <QCoreApplication>

#include <algorithm>

namespace Service
{

namespace
{

using Kind = ServiceFault::Kind;

// Guests are the business of who invites them. And where the calendar lies on a server, what another machine has
// written there since the service looked last is not overwritten: the server itself compares.
constexpr auto carefully
    = static_cast<ECalOperationFlags>(E_CAL_OPERATION_FLAG_DISABLE_ITIP_MESSAGE | E_CAL_OPERATION_FLAG_CONFLICT_FAIL);

ServiceFault noAnswer()
{
    return { Kind::NoAnswer,
        QCoreApplication::translate(
            "Vantle", "The calendar service did not answer in time. It may still make the change later.") };
}

ServiceFault hangs()
{
    return { Kind::NoAnswer, QCoreApplication::translate("Vantle", "The calendar service does not answer.") };
}

ServiceFault lost()
{
    return { Kind::Lost, QCoreApplication::translate("Vantle", "The calendar service is not there at the moment.") };
}

ServiceFault faultOf(const Failure &failure, const Deadline &deadline)
{
    if (deadline.hasPassed())
        return noAnswer();
    if (failure.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND))
        return { Kind::NotFound, failure.reason() };
    if (failure.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_ID_ALREADY_EXISTS))
        return { Kind::Taken, failure.reason() };
    if (failure.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_INVALID_OBJECT))
        return { Kind::Refused, failure.reason() };
    if (failure.is(E_CLIENT_ERROR, E_CLIENT_ERROR_OUT_OF_SYNC))
        return { Kind::Changed, failure.reason() };
    if (failure.is(E_CLIENT_ERROR, E_CLIENT_ERROR_PERMISSION_DENIED))
        return { Kind::ReadOnly, failure.reason() };
    const bool isGone = failure.is(G_IO_ERROR, G_IO_ERROR_FAILED) || failure.is(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY)
        || failure.is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)
        || failure.is(G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER)
        // It has been started anew, and does not know what it gave out before.
        || failure.is(G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD)
        || failure.is(G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT);
    if (isGone)
        return lost();
    return { Kind::Failed, failure.reason() };
}

const ComponentText *counterpart(const CalendarParts &parts, const ComponentText &component)
{
    const auto found = std::ranges::find(parts.components, component.recurrenceId, &ComponentText::recurrenceId);
    return found == parts.components.end() ? nullptr : &*found;
}

// By this the service finds out whether the server still holds what it knows. It stands in each component.
constexpr const char *serverTag = "X-EVOLUTION-CALDAV-ETAG";

QByteArray tagOf(const QList<ComponentText> &components)
{
    for (const ComponentText &each : components) {
        if (const auto tag = ICalendar::TextPatcher(each.text).property(0, serverTag))
            return *tag;
    }
    return {};
}

// With the tag of what is there, from whichever earlier state the text was made.
ComponentText tagged(const ComponentText &component, const QByteArray &tag)
{
    ICalendar::TextPatcher patcher(component.text);
    const auto present = patcher.property(0, serverTag);
    if (tag.isEmpty() ? !present : present == tag)
        return component;
    if (tag.isEmpty())
        patcher.removeProperty(0, serverTag);
    else
        patcher.setProperty(0, serverTag, tag);
    return { patcher.patchedText(), component.recurrenceId };
}

CalendarParts tagged(CalendarParts parts, const CalendarParts &present)
{
    const QByteArray tag = tagOf(present.components);
    for (ComponentText &each : parts.components)
        each = tagged(each, tag);
    return parts;
}

// The series before its overrides.
QList<ComponentText> inOrder(QList<ComponentText> components)
{
    std::ranges::stable_sort(components, {}, [](const ComponentText &each) { return !each.recurrenceId.isEmpty(); });
    return components;
}

} // namespace

StoredObjects::StoredObjects(SourceClient &source)
    : m_source(source)
{
}

Result<void, ServiceFault> StoredObjects::ask() const
{
    if (!m_source.client())
        return lost();
    const Deadline deadline(limitOfQuestion);
    const Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), nullptr));
    if (!bus)
        return lost();
    Failure failure;
    GVariant *const answer = g_dbus_connection_call_sync(bus.get(), m_source.busName().toUtf8().constData(), "/",
        "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
        deadline.cancellable(), failure);
    if (answer) {
        g_variant_unref(answer);
        return {};
    }
    if (deadline.hasPassed()) {
        m_source.setUnanswering(true);
        return hangs();
    }
    return lost();
}

Result<QList<ComponentText>, ServiceFault> StoredObjects::read(const QString &uid) const
{
    if (const auto asked = ask(); !asked)
        return asked.error();
    const Deadline deadline(limitOfReading);
    GSList *found = nullptr;
    Failure failure;
    if (!e_cal_client_get_objects_for_uid_sync(
            m_source.client(), uid.toUtf8().constData(), &found, deadline.cancellable(), failure))
        return faultOf(failure, deadline);
    QList<ComponentText> components;
    for (const GSList *node = found; node; node = node->next)
        components << componentText(e_cal_component_get_icalcomponent(E_CAL_COMPONENT(node->data)));
    g_slist_free_full(found, g_object_unref);
    if (components.isEmpty())
        return ServiceFault { Kind::NotFound, {} };
    return components;
}

Result<QList<ComponentText>, ServiceFault> StoredObjects::write(
    const QString &uid, const QByteArray &before, const QByteArray &after) const
{
    if (const auto asked = ask(); !asked)
        return asked.error();
    const CalendarParts old(before);
    const CalendarParts wanted = tagged(CalendarParts(after), old);
    if (const auto changed = change(uid, old, wanted); !changed) {
        ServiceFault fault = changed.error();
        if (fault.kind == Kind::NoAnswer)
            m_source.setUnanswering(true);
        fault.mayBeHalfDone = takesSeveralCalls(before, after) && (fault.mayHappen() || !restore(uid, old));
        return fault;
    }
    if (wanted.components.isEmpty())
        return QList<ComponentText>();
    auto written = read(uid);
    // It is done, whatever became of the service afterwards.
    return written ? written.value() : wanted.components;
}

bool StoredObjects::takesSeveralCalls(const QByteArray &before, const QByteArray &after)
{
    const CalendarParts old(before);
    const CalendarParts wanted = tagged(CalendarParts(after), old);
    if (wanted.components.isEmpty())
        return false;
    const auto removed = std::ranges::count_if(
        old.components, [&](const ComponentText &each) { return counterpart(wanted, each) == nullptr; });
    const auto written = std::ranges::count_if(wanted.components, [&](const ComponentText &each) {
        const ComponentText *const known = counterpart(old, each);
        return !known || known->text != each.text;
    });
    return removed + written > 1;
}

// As it was before some of several calls, as far as the service takes it.
bool StoredObjects::restore(const QString &uid, const CalendarParts &before) const
{
    const auto present = read(uid);
    if (!present)
        return present.error().kind == Kind::NotFound && before.components.isEmpty();
    const CalendarParts half(m_source.textFor(present.value()));
    return change(uid, half, tagged(before, half)).isOk();
}

Result<void, ServiceFault> StoredObjects::change(
    const QString &uid, const CalendarParts &before, const CalendarParts &after) const
{
    ECalClient *const client = m_source.client();
    if (!client)
        return lost();
    const Deadline deadline(limitOfWriting);
    Failure failure;
    const QByteArray name = uid.toUtf8();
    if (after.components.isEmpty()) {
        if (e_cal_client_remove_object_sync(
                client, name.constData(), nullptr, E_CAL_OBJ_MOD_ALL, carefully, deadline.cancellable(), failure))
            return {};
        return faultOf(failure, deadline);
    }
    if (auto told = tellZones(after, deadline.cancellable()); !told)
        return told;

    QByteArray tag = tagOf(before.components);
    // Every call makes another version on the server.
    const auto renewTag = [&] {
        if (tag.isEmpty())
            return;
        if (const auto written = read(uid))
            tag = tagOf(written.value());
    };
    for (const ComponentText &each : before.components) {
        if (counterpart(after, each))
            continue;
        // Without a trace in the series: whether it leaves a gap is said by the series itself.
        if (!e_cal_client_remove_object_sync(client, name.constData(), each.recurrenceId.constData(),
                E_CAL_OBJ_MOD_ONLY_THIS, carefully, deadline.cancellable(), failure))
            return faultOf(failure, deadline);
        renewTag();
    }
    bool isThere = !before.components.isEmpty();
    for (const ComponentText &each : inOrder(after.components)) {
        const ComponentText *const known = counterpart(before, each);
        if (known && known->text == each.text)
            continue;
        const Owned<ICalComponent> component = CalendarParts::parsed(tagged(each, tag).text);
        if (!component)
            return ServiceFault { Kind::Refused, {} };
        const auto span = each.recurrenceId.isEmpty() ? E_CAL_OBJ_MOD_ALL : E_CAL_OBJ_MOD_THIS;
        const bool isDone = isThere
            ? e_cal_client_modify_object_sync(client, component.get(), span, carefully, deadline.cancellable(), failure)
            : e_cal_client_create_object_sync(
                client, component.get(), carefully, nullptr, deadline.cancellable(), failure);
        if (!isDone)
            return faultOf(failure, deadline);
        isThere = true;
        renewTag();
    }
    return {};
}

// Other programs find the zones of an item with the service.
Result<void, ServiceFault> StoredObjects::tellZones(const CalendarParts &parts, GCancellable *cancellable) const
{
    for (const QByteArray &text : parts.zones) {
        if (m_source.isZoneTold(text))
            continue;
        const Owned<ICalComponent> definition = CalendarParts::parsed(text);
        const Owned<ICalTimezone> zone(i_cal_timezone_new());
        if (!definition || !i_cal_timezone_set_component(zone.get(), definition.get()))
            continue;
        Failure failure;
        if (!e_cal_client_add_timezone_sync(m_source.client(), zone.get(), cancellable, failure)
            && g_cancellable_is_cancelled(cancellable))
            return noAnswer();
        m_source.zoneIsTold(text);
    }
    return {};
}

} // namespace Service
