// SPDX-License-Identifier: MIT
#include "X11HotKeys.h"

#include "Xcb.h"

#include <VirtualKeyCodes.h>

#include <QPointer>
#include <QSocketNotifier>

#include <algorithm>

namespace
{

constexpr quint16 coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;
constexpr int sentByClient = 0x80; // bit of an event's type

} // namespace

void X11HotKeys::Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

X11HotKeys::X11HotKeys(const QByteArray &display)
{
    int screen = 0;
    m_connection.reset(xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screen));
    if (xcb_connection_has_error(m_connection.get()) || !prepareKeyboard()) {
        m_connection.reset();
        return;
    }

    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
    for (; screen > 0; --screen)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    m_modifierMap = X11ModifierMap(X11KeyTables::read(m_connection.get()));

    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11HotKeys::takeEvents);
    takeEventsLater();
}

X11HotKeys::~X11HotKeys() = default;

Result<void> X11HotKeys::grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label)
{
    if (!m_connection)
        return HotKeyRefusal::keysAreTaken();

    const Result<Keys> keys = findKeys(virtualKey, modifiers);
    if (!keys)
        return keys.error();
    if (grabOf(keys.value()))
        return HotKeyRefusal::keysAreTakenByUs();
    if (Result<void> grabbed = grabKeys(keys.value()); !grabbed)
        return grabbed;

    m_grabs.push_back({ id, virtualKey, modifiers, label, keys.value() });
    return {};
}

void X11HotKeys::release(quint32 id)
{
    const auto grab = std::ranges::find(m_grabs, id, &Grab::id);
    if (grab == m_grabs.end())
        return;
    if (grab->keys)
        ungrabKeys(*grab->keys);
    m_grabs.erase(grab);
}

HotKeyStatus X11HotKeys::status(quint32 id) const
{
    const auto grab = std::ranges::find(m_grabs, id, &Grab::id);
    if (grab == m_grabs.end())
        return {};
    if (!m_connection)
        return HotKeyStatus::notOffered(grab->label.desktopAction);
    if (grab->keys)
        return HotKeyStatus::active();
    const Result<Keys> keys = findKeys(grab->virtualKey, grab->modifiers);
    return HotKeyStatus::refused((keys ? HotKeyRefusal::keysAreTaken() : keys.error()).message);
}

// Asks to be told of another keyboard or modifier map, and that a held key
// shall send presses and one release instead of pairs of both.
bool X11HotKeys::prepareKeyboard()
{
    xcb_connection_t *x = m_connection.get();
    const XcbMemory<xcb_xkb_use_extension_reply_t> use(xcb_xkb_use_extension_reply(
        x, xcb_xkb_use_extension(x, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    if (!use || !use->supported)
        return false;
    m_firstKeyboardEvent = xcb_get_extension_data(x, &xcb_xkb_id)->first_event;

    constexpr quint32 detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const XcbMemory<xcb_xkb_per_client_flags_reply_t> flags(xcb_xkb_per_client_flags_reply(
        x, xcb_xkb_per_client_flags(x, coreKeyboard, detectable, detectable, 0, 0, 0), nullptr));
    if (!flags || !(flags->value & detectable))
        return false;

    constexpr quint16 events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr quint16 parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(x, coreKeyboard, events, 0, events, parts, parts, nullptr);
    xcb_flush(x);
    return true;
}

// How long it may take until a held key repeats for the first time. The server's
// timer is not exact, and we may be busy.
std::chrono::milliseconds X11HotKeys::longestRepeatDelay() const
{
    constexpr std::chrono::milliseconds usualDelay { 660 };
    constexpr std::chrono::milliseconds margin { 250 };
    xcb_connection_t *x = m_connection.get();
    const XcbMemory<xcb_xkb_get_controls_reply_t> controls(
        xcb_xkb_get_controls_reply(x, xcb_xkb_get_controls(x, coreKeyboard), nullptr));
    return margin + (controls ? std::chrono::milliseconds(controls->repeatDelay) : usualDelay);
}

bool X11HotKeys::isDown(quint8 keycode) const
{
    xcb_connection_t *x = m_connection.get();
    const XcbMemory<xcb_query_keymap_reply_t> keymap(xcb_query_keymap_reply(x, xcb_query_keymap(x), nullptr));
    return keymap && (keymap->keys[keycode / 8] & (1U << (keycode % 8U)));
}

Result<X11HotKeys::Keys> X11HotKeys::findKeys(int virtualKey, quint32 modifiers) const
{
    const std::optional<int> keycode = x11KeycodeForVirtualKey(virtualKey);
    const xcb_setup_t *setup = xcb_get_setup(m_connection.get());
    if (!keycode || *keycode < setup->min_keycode || *keycode > setup->max_keycode)
        return HotKeyRefusal::keyIsMissing();
    const std::optional<quint16> stateBits = m_modifierMap.stateBits(modifiers);
    if (!stateBits)
        return HotKeyRefusal::modifierIsMissing();
    return Keys { static_cast<quint8>(*keycode), *stateBits };
}

// One grab for every state of the lock keys, since a grab is for an exact state.
// All are asked for before the first answer is waited for.
Result<void> X11HotKeys::grabKeys(const Keys &keys)
{
    xcb_connection_t *x = m_connection.get();
    // A key that is held while it is grabbed (a recorder field took it just now)
    // goes on repeating into the grab. That is no press.
    if (!m_heldKeys.value(keys.keycode).id && isDown(keys.keycode))
        m_heldKeys.insert(keys.keycode, { std::nullopt, QDeadlineTimer(longestRepeatDelay()) });

    // With owner_events, the release would go to our own focused window.
    constexpr quint8 ownerEvents = 0;
    std::vector<xcb_void_cookie_t> requests;
    for (const quint16 locks : m_modifierMap.lockStates(keys.stateBits))
        requests.push_back(xcb_grab_key_checked(
            x, ownerEvents, m_root, keys.stateBits | locks, keys.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));

    bool isRefused = false;
    for (const xcb_void_cookie_t request : requests)
        isRefused = XcbMemory<xcb_generic_error_t>(xcb_request_check(x, request)) || isRefused;
    if (isRefused)
        ungrabKeys(keys);
    takeEventsLater();
    return isRefused ? Result<void>(HotKeyRefusal::keysAreTaken()) : Result<void>();
}

// Taking back what was refused is harmless: only this client's grabs go.
void X11HotKeys::ungrabKeys(const Keys &keys)
{
    if (!m_connection)
        return;
    for (const quint16 locks : m_modifierMap.lockStates(keys.stateBits))
        xcb_ungrab_key(m_connection.get(), keys.keycode, m_root, keys.stateBits | locks);
    xcb_flush(m_connection.get());
}

const X11HotKeys::Grab *X11HotKeys::grabOf(const Keys &keys) const
{
    const auto grab = std::ranges::find(m_grabs, std::optional(keys), &Grab::keys);
    return grab == m_grabs.end() ? nullptr : &*grab;
}

// Waiting for an answer may have read events into the library's own queue,
// where the notifier does not see them.
void X11HotKeys::takeEventsLater()
{
    QMetaObject::invokeMethod(this, &X11HotKeys::takeEvents, Qt::QueuedConnection);
}

void X11HotKeys::takeEvents()
{
    bool isKeyboardInDoubt = false;
    const QPointer<X11HotKeys> self = this; // an action may end all of this
    while (m_connection) {
        const XcbMemory<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (!event)
            break;
        const int type = event->response_type & ~sentByClient;
        if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event.get());
            if (type == XCB_KEY_PRESS)
                setLatestPress({ .time = key->time, .waylandToken = {} });
            if (type == XCB_KEY_PRESS)
                keyWentDown({ key->detail, m_modifierMap.withoutLocks(key->state) });
            else
                keyWentUp(key->detail);
            if (!self)
                return;
        } else if (type == XCB_MAPPING_NOTIFY || type == m_firstKeyboardEvent) {
            isKeyboardInDoubt = true;
        }
    }

    if (m_connection && xcb_connection_has_error(m_connection.get()))
        becomeUnavailable();
    else if (m_connection && isKeyboardInDoubt)
        followKeyboard();
}

void X11HotKeys::keyWentDown(const Keys &keys)
{
    const auto held = m_heldKeys.constFind(keys.keycode);
    if (held != m_heldKeys.constEnd()) {
        const bool isRepeat = held->id || !held->firstRepeat.hasExpired();
        m_heldKeys[keys.keycode].firstRepeat = QDeadlineTimer(QDeadlineTimer::Forever);
        if (isRepeat)
            return;
    }
    const Grab *grab = grabOf(keys);
    if (!grab)
        return;
    m_heldKeys.insert(keys.keycode, { grab->id, QDeadlineTimer(QDeadlineTimer::Forever) });
    Q_EMIT pressed(grab->id);
}

void X11HotKeys::keyWentUp(quint8 keycode)
{
    const std::optional<quint32> id = m_heldKeys.take(keycode).id;
    if (id && std::ranges::find(m_grabs, *id, &Grab::id) != m_grabs.end())
        Q_EMIT released(*id);
}

// The server keeps grabs when the keyboard changes; only where modifiers moved
// to other bits they have to be made anew.
void X11HotKeys::followKeyboard()
{
    X11ModifierMap map(X11KeyTables::read(m_connection.get()));
    takeEventsLater();
    if (map == m_modifierMap)
        return;

    for (const Grab &grab : m_grabs) {
        if (grab.keys)
            ungrabKeys(*grab.keys);
    }
    m_modifierMap = map;
    for (Grab &grab : m_grabs) {
        const bool wasActive = grab.keys.has_value();
        grab.keys.reset();
        const Result<Keys> keys = findKeys(grab.virtualKey, grab.modifiers);
        if (keys && !grabOf(keys.value()) && grabKeys(keys.value()))
            grab.keys = keys.value();
        if (grab.keys.has_value() != wasActive)
            announceLater(grab.id);
    }
}

// A dead connection stays readable for ever.
void X11HotKeys::becomeUnavailable()
{
    m_notifier->setEnabled(false);
    m_connection.reset();
    m_heldKeys.clear();
    for (Grab &grab : m_grabs) {
        grab.keys.reset();
        announceLater(grab.id);
    }
}

void X11HotKeys::announceLater(quint32 id)
{
    QMetaObject::invokeMethod(
        this, [this, id] { Q_EMIT statusChanged(id); }, Qt::QueuedConnection);
}
