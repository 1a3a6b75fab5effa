// SPDX-License-Identifier: MIT
#include "SourceClient.h"

#include <QPointer>

namespace Service
{

namespace
{

// Before the names of zones that the library brings with it.
constexpr const char *prefixOfBuiltInZones = "/freeassociation.sourceforge.net/";

// What one thread of the library needs to look a zone up, and brings back.
struct ZoneQuestion {
    QPointer<SourceClient> asker;
    quint64 attempt = 0;
    QByteArray name;
    Owned<ECalClient> client;
    QByteArray text; // empty for a zone that the system knows
};

void deleteZoneQuestion(gpointer question)
{
    delete static_cast<ZoneQuestion *>(question);
}

void askForZoneOnThread(GTask *task, gpointer /*source*/, gpointer data, GCancellable *cancellable)
{
    auto *const question = static_cast<ZoneQuestion *>(data);
    ICalTimezone *zone = nullptr; // stays the client's
    Failure failure;
    e_cal_client_get_timezone_sync(question->client.get(), question->name.constData(), &zone, cancellable, failure);
    // For zones of the system the service answers with one of another name.
    if (zone && question->name == i_cal_timezone_get_tzid(zone) && !question->name.startsWith(prefixOfBuiltInZones)) {
        if (const Owned<ICalComponent> definition { i_cal_timezone_get_component(zone) })
            question->text = textOf(definition.get());
    }
    g_task_return_boolean(task, TRUE);
}

} // namespace

// A zone that the service holds for the calendar wins over the system's of the same name.
void SourceClient::learnZones(const QString &uid, const QList<ComponentText> &components)
{
    for (const QByteArray &name : zonesOf(calendarText(components, {}))) {
        if (m_zoneTexts.contains(name) || !m_client)
            continue;
        const bool isAsked = m_zoneUsers.contains(name);
        m_zoneUsers[name].insert(uid);
        if (isAsked)
            continue;
        // Not by the library's own call of this kind: it gives away a reference that the client still needs.
        const Owned<GTask> task(g_task_new(
            nullptr, m_cancellable.get(),
            [](GObject * /*nothing*/, GAsyncResult *answer, gpointer /*data*/) {
                const auto *const asked = static_cast<ZoneQuestion *>(g_task_get_task_data(G_TASK(answer)));
                if (!asked->asker)
                    return;
                if (asked->asker->m_attempt == asked->attempt)
                    asked->asker->takeZone(asked->name, asked->text);
                else
                    asked->asker->m_zoneUsers.remove(asked->name);
            },
            nullptr));
        g_task_set_task_data(
            task.get(), new ZoneQuestion { this, m_attempt, name, referenced(m_client.get()), {} }, deleteZoneQuestion);
        g_task_run_in_thread(task.get(), askForZoneOnThread);
    }
}

void SourceClient::takeZone(const QByteArray &name, const QByteArray &text)
{
    m_zoneTexts.insert(name, text);
    const QSet<QString> users = m_zoneUsers.take(name);
    if (text.isEmpty())
        return;
    for (const QString &uid : users) {
        m_rezoned.insert(uid);
        suspect(uid);
    }
}

} // namespace Service
