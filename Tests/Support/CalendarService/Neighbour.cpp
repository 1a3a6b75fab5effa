// SPDX-License-Identifier: MIT
//
// Another program on the desktop's calendar service, for tests.
//
// Reads one request per line from its standard input and writes one answer per
// line: "ok" with a text, or "error" with a message. The fields of a line are
// separated by tabs; in a field \n stands for a new line, \t for a tab and \\ for
// a backslash. KIND is events or tasks. Source and item are uids.
//
//   sources                                          source, kind and name of each
//   add-calendar SOURCE KIND NAME COLOUR             kept by the service itself
//   add-file SOURCE KIND NAME COLOUR FILE WRITABLE   an .ics file; WRITABLE is 1 or 0
//   add-caldav SOURCE KIND NAME COLOUR URL USER      USER empty: an open server
//   set-default SOURCE                               the default of its kind
//   rename SOURCE NAME
//   recolour SOURCE COLOUR
//   enable SOURCE ENABLED                            1 or 0
//   set-writable SOURCE WRITABLE                     of an added file
//   remove-source SOURCE
//   put SOURCE TEXT      the components of one uid, master and overrides, in place of what is there
//   get SOURCE ITEM      the stored text of all components of a uid
//   list SOURCE          uid and title of each stored component
//   remove SOURCE ITEM [RECURRENCE-ID]
//   is-read-only SOURCE  1 or 0
//   authenticate SOURCE USER PASSWORD                for this service only; nothing is kept
//   await-connection SOURCE                          until its server has answered
//   refresh SOURCE                                   asks its server for changes
#include <libecal/libecal.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

constexpr std::chrono::seconds patience { 20 };
constexpr guint32 noWaitForConnection = static_cast<guint32>(-1);

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T> using Owned = std::unique_ptr<T, Unreference>;

struct Free {
    void operator()(gpointer memory) const { g_free(memory); }
};
using Text = std::unique_ptr<char, Free>;

using Fields = std::vector<std::string>;

// Throws with the library's words when the call before failed.
class Failure final
{
public:
    Failure() = default;
    ~Failure() { g_clear_error(&m_error); }
    Failure(const Failure &) = delete;
    Failure &operator=(const Failure &) = delete;

    operator GError **() { return &m_error; }
    void check() const
    {
        if (m_error)
            throw std::runtime_error(m_error->message);
    }

private:
    GError *m_error = nullptr;
};

std::string textOf(char *owned)
{
    const Text text(owned);
    return text ? text.get() : std::string();
}

std::string unescaped(const std::string &text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        ++i;
        result += text[i] == 'n' ? '\n' : text[i] == 't' ? '\t' : text[i];
    }
    return result;
}

std::string escaped(const std::string &text)
{
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '\n':
            result += "\\n";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '\r':
            break;
        default:
            result += character;
        }
    }
    return result;
}

Fields fieldsOf(const std::string &line)
{
    Fields fields;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = line.find('\t', begin);
        fields.push_back(unescaped(line.substr(begin, end == std::string::npos ? end : end - begin)));
        if (end == std::string::npos)
            return fields;
        begin = end + 1;
    }
}

void takeInWhatHappened()
{
    while (g_main_context_iteration(nullptr, FALSE)) { }
}

// Lets notices come in until the question is answered with yes.
void waitUntil(const char *what, const std::function<bool()> &question)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    // Wakes the loop when nothing else does, so that the deadline is seen.
    const guint clock = g_timeout_add(
        50, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    bool answer = question();
    while (!answer && std::chrono::steady_clock::now() < deadline) {
        g_main_context_iteration(nullptr, TRUE);
        answer = question();
    }
    g_source_remove(clock);
    if (!answer)
        throw std::runtime_error(std::string("waited in vain for ") + what);
}

std::string recurrenceIdOf(ICalComponent *component)
{
    return textOf(e_cal_util_component_get_recurid_as_string(component));
}

std::vector<Owned<ICalComponent>> itemsIn(const std::string &text)
{
    const Owned<ICalComponent> whole(i_cal_component_new_from_string(text.c_str()));
    if (!whole)
        throw std::runtime_error("this is no component: " + text);
    std::vector<Owned<ICalComponent>> items;
    const auto isItem = [](ICalComponent *component) {
        const ICalComponentKind kind = i_cal_component_isa(component);
        return kind == I_CAL_VEVENT_COMPONENT || kind == I_CAL_VTODO_COMPONENT;
    };
    if (isItem(whole.get())) {
        items.emplace_back(i_cal_component_clone(whole.get()));
        return items;
    }
    for (ICalComponent *item = i_cal_component_get_first_component(whole.get(), I_CAL_ANY_COMPONENT); item;
         item = i_cal_component_get_next_component(whole.get(), I_CAL_ANY_COMPONENT)) {
        const Owned<ICalComponent> owned(item);
        if (isItem(item))
            items.emplace_back(i_cal_component_clone(item));
    }
    return items;
}

class Neighbour final
{
public:
    Neighbour()
    {
        Failure failure;
        m_registry.reset(e_source_registry_new_sync(nullptr, failure));
        failure.check();
    }

    std::string answer(const Fields &request)
    {
        takeInWhatHappened();
        const auto found = m_requests.find(request.front());
        if (found == m_requests.end())
            throw std::runtime_error("no such request: " + request.front());
        if (request.size() < found->second.fields + 1)
            throw std::runtime_error("too few fields for " + request.front());
        return found->second.answer(request);
    }

private:
    struct Request {
        std::size_t fields; // at least so many follow the request's name
        std::function<std::string(const Fields &)> answer;
    };

    // --- Sources ---

    Owned<ESource> source(const std::string &uid)
    {
        Owned<ESource> found;
        waitUntil("the source", [&] {
            found.reset(e_source_registry_ref_source(m_registry.get(), uid.c_str()));
            return found != nullptr;
        });
        return found;
    }

    static const char *extensionOf(const std::string &kind)
    {
        return kind == "tasks" ? E_SOURCE_EXTENSION_TASK_LIST : E_SOURCE_EXTENSION_CALENDAR;
    }

    static const char *extensionOf(ESource *source)
    {
        return extensionOf(e_source_has_extension(source, E_SOURCE_EXTENSION_TASK_LIST) ? "tasks" : "events");
    }

    // The uid, kind, name and colour stand in this order in all requests that make a source.
    static Owned<ESource> newSource(const Fields &fields, const char *parent, const char *backend)
    {
        Failure failure;
        Owned<ESource> made(e_source_new_with_uid(fields[1].c_str(), nullptr, failure));
        failure.check();
        e_source_set_parent(made.get(), parent);
        e_source_set_display_name(made.get(), fields[3].c_str());
        auto *const extension = e_source_get_extension(made.get(), extensionOf(fields[2]));
        e_source_backend_set_backend_name(E_SOURCE_BACKEND(extension), backend);
        e_source_selectable_set_color(E_SOURCE_SELECTABLE(extension), fields[4].c_str());
        return made;
    }

    std::string commit(const Owned<ESource> &made)
    {
        Failure failure;
        e_source_registry_commit_source_sync(m_registry.get(), made.get(), nullptr, failure);
        failure.check();
        source(e_source_get_uid(made.get()));
        return {};
    }

    std::string write(const Owned<ESource> &changed)
    {
        Failure failure;
        e_source_write_sync(changed.get(), nullptr, failure);
        failure.check();
        return {};
    }

    std::string sources()
    {
        std::string result;
        for (const char *kind : { "events", "tasks" }) {
            GList *const list = e_source_registry_list_sources(m_registry.get(), extensionOf(std::string(kind)));
            for (const GList *node = list; node; node = node->next) {
                ESource *const listed = E_SOURCE(node->data);
                result += std::string(e_source_get_uid(listed)) + ' ' + kind + ' ' + e_source_get_display_name(listed)
                    + '\n';
            }
            g_list_free_full(list, g_object_unref);
        }
        return result;
    }

    std::string addCalendar(const Fields &fields) { return commit(newSource(fields, "local-stub", "local")); }

    std::string addFile(const Fields &fields)
    {
        const Owned<ESource> made = newSource(fields, "local-stub", "local");
        auto *const local = E_SOURCE_LOCAL(e_source_get_extension(made.get(), E_SOURCE_EXTENSION_LOCAL_BACKEND));
        const Owned<GFile> file(g_file_new_for_path(fields[5].c_str()));
        e_source_local_set_custom_file(local, file.get());
        e_source_local_set_writable(local, fields[6] == "1");
        return commit(made);
    }

    std::string addCalDav(const Fields &fields)
    {
        const Owned<ESource> made = newSource(fields, "caldav-stub", "caldav");
        Failure failure;
        const std::unique_ptr<GUri, void (*)(GUri *)> uri(
            g_uri_parse(fields[5].c_str(), G_URI_FLAGS_NONE, failure), g_uri_unref);
        failure.check();
        const std::string &user = fields[6];
        auto *const webdav = E_SOURCE_WEBDAV(e_source_get_extension(made.get(), E_SOURCE_EXTENSION_WEBDAV_BACKEND));
        auto *const login
            = E_SOURCE_AUTHENTICATION(e_source_get_extension(made.get(), E_SOURCE_EXTENSION_AUTHENTICATION));
        e_source_authentication_set_host(login, g_uri_get_host(uri.get()));
        e_source_authentication_set_port(login, static_cast<guint16>(g_uri_get_port(uri.get())));
        e_source_authentication_set_method(login, user.empty() ? "none" : "plain/password");
        e_source_authentication_set_user(login, user.c_str());
        e_source_webdav_set_uri(webdav, uri.get());
        auto *const offline = E_SOURCE_OFFLINE(e_source_get_extension(made.get(), E_SOURCE_EXTENSION_OFFLINE));
        e_source_offline_set_stay_synchronized(offline, TRUE);
        return commit(made);
    }

    std::string setDefault(const Fields &fields)
    {
        const Owned<ESource> chosen = source(fields[1]);
        if (e_source_has_extension(chosen.get(), E_SOURCE_EXTENSION_TASK_LIST))
            e_source_registry_set_default_task_list(m_registry.get(), chosen.get());
        else
            e_source_registry_set_default_calendar(m_registry.get(), chosen.get());
        return {};
    }

    std::string rename(const Fields &fields)
    {
        const Owned<ESource> changed = source(fields[1]);
        e_source_set_display_name(changed.get(), fields[2].c_str());
        return write(changed);
    }

    std::string recolour(const Fields &fields)
    {
        const Owned<ESource> changed = source(fields[1]);
        auto *const extension = e_source_get_extension(changed.get(), extensionOf(changed.get()));
        e_source_selectable_set_color(E_SOURCE_SELECTABLE(extension), fields[2].c_str());
        return write(changed);
    }

    std::string enable(const Fields &fields)
    {
        const Owned<ESource> changed = source(fields[1]);
        e_source_set_enabled(changed.get(), fields[2] == "1");
        return write(changed);
    }

    std::string setWritable(const Fields &fields)
    {
        const Owned<ESource> changed = source(fields[1]);
        auto *const local = E_SOURCE_LOCAL(e_source_get_extension(changed.get(), E_SOURCE_EXTENSION_LOCAL_BACKEND));
        e_source_local_set_writable(local, fields[2] == "1");
        return write(changed);
    }

    std::string removeSource(const Fields &fields)
    {
        const Owned<ESource> removed = source(fields[1]);
        m_clients.erase(fields[1]);
        Failure failure;
        e_source_remove_sync(removed.get(), nullptr, failure);
        failure.check();
        waitUntil("the end of the source", [&] {
            const Owned<ESource> left(e_source_registry_ref_source(m_registry.get(), fields[1].c_str()));
            return left == nullptr;
        });
        return {};
    }

    // --- Items ---

    ECalClient *client(const std::string &uid)
    {
        if (const auto known = m_clients.find(uid); known != m_clients.end()) {
            if (!m_dead.erase(uid))
                return known->second.get();
            m_clients.erase(known);
        }
        const Owned<ESource> opened = source(uid);
        const bool holdsTasks = e_source_has_extension(opened.get(), E_SOURCE_EXTENSION_TASK_LIST);
        Failure failure;
        Owned<EClient> made(e_cal_client_connect_sync(opened.get(),
            holdsTasks ? E_CAL_CLIENT_SOURCE_TYPE_TASKS : E_CAL_CLIENT_SOURCE_TYPE_EVENTS, noWaitForConnection, nullptr,
            failure));
        failure.check();
        g_signal_connect_data(made.get(), "backend-died", G_CALLBACK(+[](EClient *dead, gpointer neighbour) {
            static_cast<Neighbour *>(neighbour)->m_dead.insert(e_source_get_uid(e_client_get_source(dead)));
        }),
            this, nullptr, static_cast<GConnectFlags>(0));
        ECalClient *const result = E_CAL_CLIENT(made.release());
        m_clients.emplace(uid, result);
        return result;
    }

    static std::vector<Owned<ICalComponent>> stored(ECalClient *client, const std::string &item)
    {
        std::vector<Owned<ICalComponent>> result;
        GSList *components = nullptr;
        // An item that is not there is an error to the library.
        if (!e_cal_client_get_objects_for_uid_sync(client, item.c_str(), &components, nullptr, nullptr))
            return result;
        for (const GSList *node = components; node; node = node->next)
            result.emplace_back(i_cal_component_clone(e_cal_component_get_icalcomponent(E_CAL_COMPONENT(node->data))));
        g_slist_free_full(components, g_object_unref);
        return result;
    }

    std::string put(const Fields &fields)
    {
        ECalClient *const calendar = client(fields[1]);
        const std::vector<Owned<ICalComponent>> items = itemsIn(fields[2]);
        if (items.empty())
            throw std::runtime_error("nothing to put in: " + fields[2]);
        const std::string uid = i_cal_component_get_uid(items.front().get());
        std::set<std::string> before;
        for (const Owned<ICalComponent> &item : stored(calendar, uid))
            before.insert(recurrenceIdOf(item.get()));
        bool isThere = !before.empty();
        for (const Owned<ICalComponent> &item : items) {
            putOne(calendar, item.get(), isThere);
            before.erase(recurrenceIdOf(item.get()));
            isThere = true;
        }
        for (const std::string &recurrenceId : before)
            removeFrom(calendar, uid, recurrenceId, E_CAL_OBJ_MOD_ONLY_THIS);
        return {};
    }

    // `isThere` says whether the calendar holds a component of this uid.
    static void putOne(ECalClient *calendar, ICalComponent *item, bool isThere)
    {
        const std::string recurrenceId = recurrenceIdOf(item);
        Failure failure;
        if (isThere)
            e_cal_client_modify_object_sync(calendar, item,
                recurrenceId.empty() ? E_CAL_OBJ_MOD_ALL : E_CAL_OBJ_MOD_THIS, E_CAL_OPERATION_FLAG_NONE, nullptr,
                failure);
        else
            e_cal_client_create_object_sync(calendar, item, E_CAL_OPERATION_FLAG_NONE, nullptr, nullptr, failure);
        failure.check();
    }

    static void removeFrom(
        ECalClient *calendar, const std::string &uid, const std::string &recurrenceId, ECalObjModType what)
    {
        Failure failure;
        e_cal_client_remove_object_sync(calendar, uid.c_str(), recurrenceId.empty() ? nullptr : recurrenceId.c_str(),
            what, E_CAL_OPERATION_FLAG_NONE, nullptr, failure);
        failure.check();
    }

    std::string get(const Fields &fields)
    {
        std::string result;
        for (const Owned<ICalComponent> &item : stored(client(fields[1]), fields[2]))
            result += textOf(i_cal_component_as_ical_string(item.get()));
        return result;
    }

    std::string list(const Fields &fields)
    {
        GSList *components = nullptr;
        Failure failure;
        e_cal_client_get_object_list_sync(client(fields[1]), "#t", &components, nullptr, failure);
        failure.check();
        std::string result;
        for (const GSList *node = components; node; node = node->next) {
            auto *const item = I_CAL_COMPONENT(node->data);
            const char *const title = i_cal_component_get_summary(item);
            result += std::string(i_cal_component_get_uid(item)) + ' ' + (title ? title : "") + '\n';
        }
        g_slist_free_full(components, g_object_unref);
        return result;
    }

    std::string remove(const Fields &fields)
    {
        const bool isOccurrence = fields.size() > 3;
        removeFrom(client(fields[1]), fields[2], isOccurrence ? fields[3] : std::string(),
            isOccurrence ? E_CAL_OBJ_MOD_THIS : E_CAL_OBJ_MOD_ALL);
        return {};
    }

    std::string isReadOnly(const Fields &fields)
    {
        return e_client_is_readonly(E_CLIENT(client(fields[1]))) ? "1" : "0";
    }

    // --- Servers ---

    std::string authenticate(const Fields &fields)
    {
        client(fields[1]);
        const Owned<ESource> asking = source(fields[1]);
        ENamedParameters *const credentials = e_named_parameters_new();
        e_named_parameters_set(credentials, E_SOURCE_CREDENTIAL_USERNAME, fields[2].c_str());
        e_named_parameters_set(credentials, E_SOURCE_CREDENTIAL_PASSWORD, fields[3].c_str());
        Failure failure;
        e_source_invoke_authenticate_sync(asking.get(), credentials, nullptr, failure);
        e_named_parameters_free(credentials);
        failure.check();
        return {};
    }

    std::string awaitConnection(const Fields &fields)
    {
        client(fields[1]);
        const Owned<ESource> connecting = source(fields[1]);
        waitUntil("the server",
            [&] { return e_source_get_connection_status(connecting.get()) == E_SOURCE_CONNECTION_STATUS_CONNECTED; });
        return {};
    }

    std::string refresh(const Fields &fields)
    {
        Failure failure;
        e_client_refresh_sync(E_CLIENT(client(fields[1])), nullptr, failure);
        failure.check();
        return {};
    }

    Owned<ESourceRegistry> m_registry;
    std::map<std::string, Owned<ECalClient>> m_clients;
    std::set<std::string> m_dead; // sources whose service has ended since they were opened
    const std::map<std::string, Request> m_requests {
        { "sources", { 0, [this](const Fields &) { return sources(); } } },
        { "add-calendar", { 4, [this](const Fields &fields) { return addCalendar(fields); } } },
        { "add-file", { 6, [this](const Fields &fields) { return addFile(fields); } } },
        { "add-caldav", { 6, [this](const Fields &fields) { return addCalDav(fields); } } },
        { "set-default", { 1, [this](const Fields &fields) { return setDefault(fields); } } },
        { "rename", { 2, [this](const Fields &fields) { return rename(fields); } } },
        { "recolour", { 2, [this](const Fields &fields) { return recolour(fields); } } },
        { "enable", { 2, [this](const Fields &fields) { return enable(fields); } } },
        { "set-writable", { 2, [this](const Fields &fields) { return setWritable(fields); } } },
        { "remove-source", { 1, [this](const Fields &fields) { return removeSource(fields); } } },
        { "put", { 2, [this](const Fields &fields) { return put(fields); } } },
        { "get", { 2, [this](const Fields &fields) { return get(fields); } } },
        { "list", { 1, [this](const Fields &fields) { return list(fields); } } },
        { "remove", { 2, [this](const Fields &fields) { return remove(fields); } } },
        { "is-read-only", { 1, [this](const Fields &fields) { return isReadOnly(fields); } } },
        { "authenticate", { 3, [this](const Fields &fields) { return authenticate(fields); } } },
        { "await-connection", { 1, [this](const Fields &fields) { return awaitConnection(fields); } } },
        { "refresh", { 1, [this](const Fields &fields) { return refresh(fields); } } },
    };
};

} // namespace

int main()
{
    try {
        Neighbour neighbour;
        std::string line;
        while (std::getline(std::cin, line)) {
            try {
                std::cout << "ok\t" << escaped(neighbour.answer(fieldsOf(line))) << std::endl;
            } catch (const std::runtime_error &error) {
                std::cout << "error\t" << escaped(error.what()) << std::endl;
            }
        }
    } catch (const std::runtime_error &error) {
        std::cerr << "The calendar service does not answer: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
