// SPDX-License-Identifier: MIT
#include "VTAppController.h"
#include "VTPreferencesWindow.h"
#include "VTSettings.h"

#include <ModifierFlags.h>
#include <PTHotKeyCenter.h>
#include <Presence.h>
#include <UserDefaults.h>

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

// The three global hot keys: from the settings into the recorders, from there to
// the desktop, and what they do.

namespace
{

// All modifiers but caps lock, on either side of the keyboard, in the Carbon encoding.
constexpr quint64 allowedCarbonFlags = 0xFB00;

} // namespace

struct VTAppController::HotKey {
    QString identifier; // also the key of its key code
    QString modifiersKey;
    SRRecorderControl *(VTAppController::*recorder)() const;
    bool isOfMainWindow; // whose controller is then the target, else the application's
    QByteArray action;
    QString desktopAction;
    QString name;
};

const std::vector<VTAppController::HotKey> &VTAppController::hotKeys() const
{
    static const std::vector<HotKey> hotKeys {
        { VTHotkeyKeyCodeKey, VTHotkeyCarbonModiferFlagsKey, &VTAppController::showAppShortcutRecorder, false,
            "toggleAppHiddenStatus", u"toggle"_s, QCoreApplication::translate("Vantle", "Show or hide Vantle") },
        { VTAddEventKeyCodeKey, VTAddEventCarbonModiferFlagsKey, &VTAppController::addEventShortcutRecorder, true,
            "showEventEditSheetWithNewEvent", u"new-event"_s, QCoreApplication::translate("Vantle", "New Event") },
        { VTAddTaskKeyCodeKey, VTAddTaskCarbonModiferFlagsKey, &VTAppController::addTaskShortcutRecorder, true,
            "showTaskEditSheetWithNewTask", u"new-todo"_s, QCoreApplication::translate("Vantle", "New To Do") },
    };
    return hotKeys;
}

SRRecorderControl *VTAppController::recorderOf(const HotKey &hotKey) const
{
    return (this->*hotKey.recorder)();
}

SRRecorderControl *VTAppController::showAppShortcutRecorder() const
{
    return m_preferencesWindow ? m_preferencesWindow->showAppShortcutRecorder() : nullptr;
}

SRRecorderControl *VTAppController::addEventShortcutRecorder() const
{
    return m_preferencesWindow ? m_preferencesWindow->addEventShortcutRecorder() : nullptr;
}

SRRecorderControl *VTAppController::addTaskShortcutRecorder() const
{
    return m_preferencesWindow ? m_preferencesWindow->addTaskShortcutRecorder() : nullptr;
}

void VTAppController::wireHotKeys()
{
    connect(&m_services.hotKeyCenter, &PTHotKeyCenter::willInvoke, this, [this](const HotKeyPress &press) {
        presence().setActivationToken({ press.time, {}, press.waylandToken });
    });
    connect(&m_services.hotKeyCenter, &PTHotKeyCenter::statusChanged, this, &VTAppController::updateHotKeyStatus);
    for (const HotKey &hotKey : hotKeys()) {
        SRRecorderControl *const recorder = recorderOf(hotKey);
        recorder->setDelegate(this);
        // The recorder reports it, and that registers the hot key.
        recorder->setKeyCombo(
            { SRCarbonToCocoaFlags(static_cast<quint64>(m_defaults.integerForKey(hotKey.modifiersKey))),
                m_defaults.integerForKey(hotKey.identifier) });
        recorder->setAllowedFlags(SRCarbonToCocoaFlags(allowedCarbonFlags));
        recorder->setAllowsKeyOnly_escapeKeysRecord(false, false);
    }
}

void VTAppController::shortcutRecorder_keyComboDidChange(SRRecorderControl *recorder, const SRKeyCombo &keyCombo)
{
    const auto hotKey
        = std::ranges::find_if(hotKeys(), [&](const HotKey &candidate) { return recorderOf(candidate) == recorder; });
    if (hotKey == hotKeys().end())
        return;

    PTHotKeyCenter &center = m_services.hotKeyCenter;
    const PTKeyComboPtr combo
        = PTKeyCombo::keyComboWithKeyCode_modifiers(keyCombo.code, SRCocoaToCarbonFlags(keyCombo.flags));
    if (const PTHotKeyPtr previous = center.hotKeyWithIdentifier(hotKey->identifier))
        center.unregisterHotKey(previous);
    if (keyCombo.flags != 0 && keyCombo.code != -1) {
        const auto wanted = std::make_shared<PTHotKey>(hotKey->identifier, combo);
        wanted->setName(hotKey->name);
        wanted->setDesktopAction(hotKey->desktopAction);
        wanted->setTarget(hotKey->isOfMainWindow ? static_cast<QObject *>(&m_mainWindowController) : this);
        wanted->setAction(hotKey->action);
        // A refusal is told by the status.
        [[maybe_unused]] const bool isRegistered = center.registerHotKey(wanted);
    }
    updateHotKeyStatus(hotKey->identifier);
}

void VTAppController::updateHotKeyStatus(const QString &identifier)
{
    const auto hotKey = std::ranges::find(hotKeys(), identifier, &HotKey::identifier);
    if (hotKey == hotKeys().end() || !m_preferencesWindow)
        return;
    const SRRecorderControl *recorder = recorderOf(*hotKey);
    const SRKeyCombo combo = recorder->keyCombo();
    m_preferencesWindow->setHotKeyStatus(recorder,
        m_services.hotKeyCenter.status(
            identifier, *PTKeyCombo::keyComboWithKeyCode_modifiers(combo.code, SRCocoaToCarbonFlags(combo.flags))));
    updateHiding();
}

void VTAppController::saveSettings()
{
    m_defaults.setInteger_forKey(m_iconStatus, VTIconStatusKey);
    m_defaults.setBool_forKey(m_hidesWhenInactive, VTHidesWhenInactiveKey);
    for (const HotKey &hotKey : hotKeys()) {
        const SRKeyCombo combo = recorderOf(hotKey)->keyCombo();
        m_defaults.setInteger_forKey(combo.code, hotKey.identifier);
        m_defaults.setInteger_forKey(static_cast<qint64>(SRCocoaToCarbonFlags(combo.flags)), hotKey.modifiersKey);
    }
}
