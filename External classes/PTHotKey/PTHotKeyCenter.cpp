// SPDX-License-Identifier: MIT
#include "PTHotKeyCenter.h"

#include <AssertionHandler.h>
#include <HotKeyBackendFactory.h>

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int unknownClassLine = 221;
constexpr int invalidSignatureLine = 234;
constexpr int invalidIdLine = 235;
constexpr int unknownKindLine = 250;

void failAssertion(const QString &message, int line)
{
    AssertionHandler::current().handleFailure(message, u"External classes/PTHotKey/PTHotKeyCenter"_s, line);
}

OSStatus hotKeyEventHandler(PTHotKeyCenter &center, const CarbonEvent &event)
{
    return center.sendCarbonEvent(event);
}

CarbonEvent makeEvent(quint32 kind, quint32 id)
{
    return { .eventClass = HotKeyEvents::keyboardClass,
        .eventKind = kind,
        .directObject = { .signature = HotKeyEvents::signature, .id = id } };
}

} // namespace

PTHotKeyCenter &PTHotKeyCenter::sharedCenter()
{
    static QPointer<PTHotKeyCenter> center;
    if (!center)
        center
            = new PTHotKeyCenter(makeHotKeyBackend(HotKeySurroundings::ofThisSession()), QCoreApplication::instance());
    return *center;
}

PTHotKeyCenter::PTHotKeyCenter(std::unique_ptr<HotKeyBackend> backend, QObject *parent)
    : QObject(parent)
    , m_backend(std::move(backend))
{
    connect(m_backend.get(), &HotKeyBackend::statusChanged, this, [this](quint32 id) {
        if (const PTHotKeyPtr hotKey = _hotKeyForCarbonHotKeyID({ .signature = HotKeyEvents::signature, .id = id }))
            Q_EMIT statusChanged(hotKey->identifier());
    });
}

PTHotKeyCenter::~PTHotKeyCenter() = default;

bool PTHotKeyCenter::registerHotKey(const PTHotKeyPtr &hotKey)
{
    if (isRegistered(hotKey))
        unregisterHotKey(hotKey);
    m_refusals.remove(hotKey->identifier());
    const PTKeyComboPtr combo = hotKey->keyCombo();
    if (!combo->isValidHotKeyCombo())
        return true;

    // Raised before the desktop is asked: a refused registration uses up its id.
    const quint32 id = ++mHotKeyCount;
    const Result<void> grabbed = m_backend->grab(id, static_cast<int>(combo->keyCode()),
        static_cast<quint32>(combo->modifiers()), { hotKey->identifier(), hotKey->name(), hotKey->desktopAction() });
    if (!grabbed) {
        m_refusals.insert(hotKey->identifier(), { combo, grabbed.error().message });
        Q_EMIT statusChanged(hotKey->identifier());
        return false;
    }

    hotKey->setCarbonHotKeyID(id);
    // The desktops give no handles. The id is as good: it never comes again.
    hotKey->setCarbonEventHotKeyRef(EventHotKeyRef { id });
    mHotKeys.insert_or_assign(id, hotKey);
    _updateEventHandler();
    Q_EMIT statusChanged(hotKey->identifier());
    return true;
}

void PTHotKeyCenter::unregisterHotKey(const PTHotKeyPtr &hotKey)
{
    if (!isRegistered(hotKey) || hotKey->carbonEventHotKeyRef() == EventHotKeyRef::Null)
        return;
    // A reference of our own: the caller's may be the one in the registry.
    const PTHotKeyPtr lasting = hotKey;
    m_backend->release(static_cast<quint32>(lasting->carbonEventHotKeyRef()));
    mHotKeys.erase(static_cast<quint32>(lasting->carbonHotKeyID()));
    lasting->setCarbonHotKeyID(0);
    lasting->setCarbonEventHotKeyRef(EventHotKeyRef::Null);
    _updateEventHandler();
    Q_EMIT statusChanged(lasting->identifier());
}

QList<PTHotKeyPtr> PTHotKeyCenter::allHotKeys() const
{
    QList<PTHotKeyPtr> all;
    for (const auto &[id, hotKey] : mHotKeys)
        all.append(hotKey);
    return all;
}

PTHotKeyPtr PTHotKeyCenter::hotKeyWithIdentifier(const QString &identifier) const
{
    // Absent and empty texts compare equal, but an absent identifier names nothing.
    const auto found = std::ranges::find_if(mHotKeys, [&identifier](const auto &entry) {
        const QString candidate = entry.second->identifier();
        return !candidate.isNull() && candidate == identifier;
    });
    return identifier.isNull() || found == mHotKeys.end() ? nullptr : found->second;
}

PTHotKeyPtr PTHotKeyCenter::_hotKeyForCarbonHotKey(EventHotKeyRef ref) const
{
    const auto found = std::ranges::find_if(
        mHotKeys, [ref](const auto &entry) { return entry.second->carbonEventHotKeyRef() == ref; });
    return found == mHotKeys.end() ? nullptr : found->second;
}

PTHotKeyPtr PTHotKeyCenter::_hotKeyForCarbonHotKeyID(const EventHotKeyID &hotKeyID) const
{
    const auto found = mHotKeys.find(hotKeyID.id);
    return found == mHotKeys.end() ? nullptr : found->second;
}

HotKeyStatus PTHotKeyCenter::status(const QString &identifier, const PTKeyCombo &keyCombo) const
{
    if (const PTHotKeyPtr hotKey = hotKeyWithIdentifier(identifier); hotKey && hotKey->keyCombo()->isEqual(keyCombo))
        return m_backend->status(static_cast<quint32>(hotKey->carbonHotKeyID()));
    const auto refusal = m_refusals.constFind(identifier);
    if (refusal != m_refusals.constEnd() && refusal->keyCombo->isEqual(keyCombo))
        return HotKeyStatus::refused(refusal->reason);
    return {};
}

// Once installed, the handler stays, also while no hot key is registered.
void PTHotKeyCenter::_updateEventHandler()
{
    if (mHotKeys.empty() || mEventHandlerInstalled)
        return;
    connect(m_backend.get(), &HotKeyBackend::pressed, this,
        [this](quint32 id) { hotKeyEventHandler(*this, makeEvent(HotKeyEvents::hotKeyPressed, id)); });
    connect(m_backend.get(), &HotKeyBackend::released, this,
        [this](quint32 id) { hotKeyEventHandler(*this, makeEvent(HotKeyEvents::hotKeyReleased, id)); });
    mEventHandlerInstalled = true;
}

OSStatus PTHotKeyCenter::sendCarbonEvent(const CarbonEvent &event)
{
    if (event.eventClass != HotKeyEvents::keyboardClass)
        failAssertion(u"Unknown event class"_s, unknownClassLine);
    if (event.directObjectStatus != noErr)
        return event.directObjectStatus;
    if (event.directObject.signature != HotKeyEvents::signature)
        failAssertion(u"Invalid hot key id"_s, invalidSignatureLine);
    if (event.directObject.id == 0)
        failAssertion(u"Invalid hot key id"_s, invalidIdLine);

    const PTHotKeyPtr hotKey = _hotKeyForCarbonHotKeyID(event.directObject);
    switch (event.eventKind) {
    case HotKeyEvents::hotKeyPressed:
        _hotKeyDown(hotKey);
        break;
    case HotKeyEvents::hotKeyReleased:
        _hotKeyUp(hotKey);
        break;
    default:
        failAssertion(u"Unknown event kind"_s, unknownKindLine);
    }
    return noErr;
}

void PTHotKeyCenter::sendEvent(const ApplicationEvent &event)
{
    if (event.type != HotKeyEvents::systemDefined || event.data1 == EventHotKeyRef::Null)
        return;
    if (event.subtype == HotKeyEvents::pressSubtype)
        _hotKeyDown(_hotKeyForCarbonHotKey(event.data1));
    else if (event.subtype == HotKeyEvents::releaseSubtype)
        _hotKeyUp(_hotKeyForCarbonHotKey(event.data1));
}

void PTHotKeyCenter::_hotKeyDown(const PTHotKeyPtr &hotKey)
{
    if (!hotKey)
        return;
    Q_EMIT willInvoke(m_backend->latestPress());
    hotKey->invoke();
}

// Actions are sent when the keys go down, never when they come up.
void PTHotKeyCenter::_hotKeyUp(const PTHotKeyPtr & /*hotKey*/) { }

bool PTHotKeyCenter::isRegistered(const PTHotKeyPtr &hotKey) const
{
    return std::ranges::any_of(mHotKeys, [&hotKey](const auto &entry) { return entry.second == hotKey; });
}
