// SPDX-License-Identifier: MIT
#include "SourceList.h"

#include <QPointer>

#include <array>

namespace Service
{

namespace
{

constexpr std::chrono::seconds pauseBetweenAttempts { 2 };

QString textOf(const char *text)
{
    return QString::fromUtf8(text);
}

QString uidOf(ESource *source)
{
    return source ? textOf(e_source_get_uid(source)) : QString();
}

bool isSame(ESource *source, const Owned<ESource> &other)
{
    return other && e_source_equal(source, other.get());
}

QString remotePathOf(ESource *source)
{
    if (!e_source_has_extension(source, E_SOURCE_EXTENSION_WEBDAV_BACKEND))
        return {};
    auto *const webdav = E_SOURCE_WEBDAV(e_source_get_extension(source, E_SOURCE_EXTENSION_WEBDAV_BACKEND));
    return QString::fromUtf8(takenText(e_source_webdav_dup_resource_path(webdav)));
}

bool isKeptHere(ESource *source, const char *extensionName)
{
    auto *const backend = E_SOURCE_BACKEND(e_source_get_extension(source, extensionName));
    const QByteArray name = takenText(e_source_backend_dup_backend_name(backend));
    return name == "local" || name == "contacts" || name == "birthdays" || name == "weather";
}

} // namespace

SourceList::SourceList(QObject *parent)
    : QObject(parent)
{
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &SourceList::read);
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &SourceList::open);
    m_impatience.setSingleShot(true);
    connect(&m_impatience, &QTimer::timeout, this, [this] {
        // The call is given up, so that another one can be made.
        g_cancellable_cancel(m_cancellable.get());
        m_isKnown = true;
        m_isSilent = true;
        Q_EMIT changed();
    });
}

SourceList::~SourceList()
{
    if (m_cancellable)
        g_cancellable_cancel(m_cancellable.get());
    if (m_registry)
        g_signal_handlers_disconnect_by_data(m_registry.get(), this);
}

void SourceList::open()
{
    m_cancellable.reset(g_cancellable_new());
    m_impatience.start(patience);
    e_source_registry_new(
        m_cancellable.get(),
        [](GObject * /*nothing*/, GAsyncResult *answer, gpointer asker) {
            const std::unique_ptr<QPointer<SourceList>> list(static_cast<QPointer<SourceList> *>(asker));
            if (*list)
                (*list)->take(answer);
        },
        new QPointer<SourceList>(this));
}

void SourceList::take(GAsyncResult *answer)
{
    Failure failure;
    m_registry.reset(e_source_registry_new_finish(answer, failure));
    if (!m_registry) {
        m_again.start(pauseBetweenAttempts);
        return;
    }
    // There is one in a process. Whoever gave the last reference away would run the event loop in the middle of an end.
    [[maybe_unused]] static ESourceRegistry *const kept = referenced(m_registry.get()).release();
    // Else the library would end the program with the bus. The connection is there already.
    if (const Owned<GDBusConnection> bus { g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr) })
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    m_impatience.stop();
    m_isSilent = false;
    listen();
    read();
}

void SourceList::listen()
{
    for (const char *const name : { "source-added", "source-changed", "source-removed", "source-enabled",
             "source-disabled", "notify::default-calendar", "notify::default-task-list" }) {
        // Some signals have an argument more than others; none of them is looked at.
        g_signal_connect_swapped(m_registry.get(), name, G_CALLBACK(+[](SourceList *list) { list->readSoon(); }), this);
    }
}

void SourceList::read()
{
    std::vector<SourceDescription> sources;
    for (const char *const extension : { E_SOURCE_EXTENSION_CALENDAR, E_SOURCE_EXTENSION_TASK_LIST }) {
        GList *const listed = e_source_registry_list_sources(m_registry.get(), extension);
        for (const GList *node = listed; node; node = node->next) {
            auto *const source = E_SOURCE(node->data);
            if (e_source_registry_check_enabled(m_registry.get(), source))
                sources.push_back(describe(source, extension));
        }
        g_list_free_full(listed, g_object_unref);
    }
    const bool wasKnown = std::exchange(m_isKnown, true);
    if (wasKnown && sources == m_sources)
        return;
    m_sources = std::move(sources);
    Q_EMIT changed();
}

SourceDescription SourceList::describe(ESource *source, const char *extensionName) const
{
    auto *const selectable = E_SOURCE_SELECTABLE(e_source_get_extension(source, extensionName));
    SourceDescription description;
    description.uid = uidOf(source);
    description.holdsEvents = qstrcmp(extensionName, E_SOURCE_EXTENSION_CALENDAR) == 0;
    description.name = textOf(e_source_get_display_name(source));
    description.color = QColor(QString::fromUtf8(takenText(e_source_selectable_dup_color(selectable))));
    description.order = static_cast<int>(e_source_selectable_get_order(selectable));
    description.account = textOf(e_source_get_parent(source));
    if (const Owned<ESource> account {
            e_source_registry_ref_source(m_registry.get(), description.account.toUtf8().constData()) })
        description.accountName = textOf(e_source_get_display_name(account.get()));
    description.remotePath = remotePathOf(source);
    description.isRemote = !isKeptHere(source, extensionName);
    const Owned<ESource> builtIn(description.holdsEvents ? e_source_registry_ref_builtin_calendar(m_registry.get())
                                                         : e_source_registry_ref_builtin_task_list(m_registry.get()));
    description.isBuiltIn = isSame(source, builtIn);
    const Owned<ESource> chosen(description.holdsEvents ? e_source_registry_ref_default_calendar(m_registry.get())
                                                        : e_source_registry_ref_default_task_list(m_registry.get()));
    description.isDefault = isSame(source, chosen);
    return description;
}

Owned<ESource> SourceList::source(const QString &uid) const
{
    return Owned<ESource>(
        m_registry ? e_source_registry_ref_source(m_registry.get(), uid.toUtf8().constData()) : nullptr);
}

} // namespace Service
