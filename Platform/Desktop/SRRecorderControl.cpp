// SPDX-License-Identifier: MIT
#include "SRRecorderControl.h"

#include "SRRecorderAccessible.h"
#include "SRRecorderClearButton.h"

#include <KeyboardLayouts.h>
#include <ModifierFlags.h>
#include <VirtualKeyCodes.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

using namespace Qt::StringLiterals;

namespace
{

// The flag of a modifier key itself; 0 for other keys.
quint64 flagForModifierKey(const QKeyEvent &event)
{
    // With Shift held, the Alt key of a PC says that it is Meta.
    constexpr quint32 metaLeft = 0xffe7; // keysyms
    constexpr quint32 metaRight = 0xffe8;
    if (event.nativeVirtualKey() == metaLeft || event.nativeVirtualKey() == metaRight)
        return CocoaModifier::option;

    switch (event.key()) {
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return CocoaModifier::command;
    case Qt::Key_Alt:
        return CocoaModifier::option;
    case Qt::Key_Control:
        return CocoaModifier::control;
    case Qt::Key_Shift:
        return CocoaModifier::shift;
    default:
        return 0;
    }
}

quint64 flagsForModifiers(Qt::KeyboardModifiers modifiers)
{
    quint64 flags = 0;
    if (modifiers & Qt::MetaModifier)
        flags |= CocoaModifier::command;
    if (modifiers & Qt::AltModifier)
        flags |= CocoaModifier::option;
    if (modifiers & Qt::ControlModifier)
        flags |= CocoaModifier::control;
    if (modifiers & Qt::ShiftModifier)
        flags |= CocoaModifier::shift;
    return flags;
}

bool isLockKey(int key)
{
    return key == Qt::Key_CapsLock || key == Qt::Key_NumLock || key == Qt::Key_ScrollLock;
}

bool isDeleteKey(int key)
{
    return key == Qt::Key_Delete || key == Qt::Key_Backspace;
}

bool isStartKey(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Select;
}

bool hasNoModifiers(const QKeyEvent &event)
{
    return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

SRRecorderControl::SRRecorderControl(KeyboardLayouts &layouts, KeyName keyName, QWidget *parent)
    : QWidget(parent)
    , m_keyName(std::move(keyName))
    , m_clearButton(new SRRecorderClearButton(this))
    , m_allowedFlags(CocoaModifier::all)
{
    SRRecorderAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // An input method would take the keys before they arrive here.
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setAttribute(Qt::WA_Hover);

    connect(m_clearButton, &QAbstractButton::clicked, this, &SRRecorderControl::clear);
    connect(&layouts, &KeyboardLayouts::layoutDidChange, this, &SRRecorderControl::updateDisplay);
    updateDisplay();
}

SRRecorderControl::~SRRecorderControl()
{
    if (m_isRecording)
        releaseKeyboard();
}

void SRRecorderControl::setKeyCombo(const SRKeyCombo &keyCombo)
{
    stopRecording();
    takeKeyCombo(keyCombo);
}

void SRRecorderControl::setAllowedFlags(quint64 allowedFlags)
{
    m_allowedFlags = allowedFlags;
}

void SRRecorderControl::setAllowsKeyOnly_escapeKeysRecord(bool allowsKeyOnly, bool escapeKeysRecord)
{
    m_allowsKeyOnly = allowsKeyOnly;
    m_escapeKeysRecord = escapeKeysRecord;
}

QString SRRecorderControl::glyphs() const
{
    if (m_keyCombo.isClear())
        return {};
    return modifierGlyphs(SRCocoaToCarbonFlags(m_keyCombo.flags)) + m_keyName(m_keyCombo.code);
}

QString SRRecorderControl::words() const
{
    if (m_keyCombo.isClear())
        return {};
    const QString modifiers = modifierWords(SRCocoaToCarbonFlags(m_keyCombo.flags));
    const QString key = m_keyName(m_keyCombo.code);
    return modifiers.isEmpty() ? key : modifiers + u'+' + key;
}

QString SRRecorderControl::displayedText() const
{
    if (m_isRecording) {
        switch (m_hint) {
        case Hint::NeedsModifier:
            return QCoreApplication::translate("Vantle", "Hold Ctrl, Alt or Super");
        case Hint::KeyNotUsable:
            return QCoreApplication::translate("Vantle", "Not usable here");
        case Hint::None:
            break;
        }
        const QString held = modifierGlyphs(SRCocoaToCarbonFlags(m_heldFlags));
        return held.isEmpty() ? QCoreApplication::translate("Vantle", "Press the keys") : held + u'…';
    }
    return m_keyCombo.isClear() ? QCoreApplication::translate("Vantle", "Click to record") : glyphs();
}

void SRRecorderControl::startRecording()
{
    if (m_isRecording || !isEnabled())
        return;
    setFocus(Qt::OtherFocusReason);
    m_isRecording = true;
    m_isLevel3Held = false;
    m_heldFlags = 0;
    m_hint = Hint::None;
    grabKeyboard();
    updateDisplay();
    Q_EMIT recordingDidBegin();
}

void SRRecorderControl::stopRecording()
{
    if (!m_isRecording)
        return;
    m_isRecording = false;
    releaseKeyboard();
    updateDisplay();
    Q_EMIT recordingDidEnd();
}

void SRRecorderControl::clear()
{
    stopRecording();
    takeKeyCombo({});
}

bool SRRecorderControl::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // No menu command is carried out by keys that are meant for this field.
        const auto *key = static_cast<const QKeyEvent *>(event);
        if (m_isRecording || (hasNoModifiers(*key) && (isStartKey(key->key()) || isDeleteKey(key->key())))) {
            event->accept();
            return true;
        }
    }
    // Before QWidget takes Tab for itself.
    if (event->type() == QEvent::KeyPress && m_isRecording) {
        recordKeyPress(*static_cast<const QKeyEvent *>(event));
        event->accept();
        return true;
    }
    if (event->type() == QEvent::WindowDeactivate)
        stopRecording();
    return QWidget::event(event);
}

void SRRecorderControl::keyPressEvent(QKeyEvent *event)
{
    const bool isCommand = !event->isAutoRepeat() && hasNoModifiers(*event);
    if (isCommand && isStartKey(event->key()))
        startRecording();
    else if (isCommand && isDeleteKey(event->key()))
        clear();
    else
        event->ignore();
}

void SRRecorderControl::keyReleaseEvent(QKeyEvent *event)
{
    if (!m_isRecording || event->isAutoRepeat()) {
        event->ignore();
        return;
    }
    if (event->key() == Qt::Key_AltGr)
        m_isLevel3Held = false;
    m_heldFlags &= ~flagForModifierKey(*event);
    updateDisplay();
}

void SRRecorderControl::recordKeyPress(const QKeyEvent &event)
{
    if (event.isAutoRepeat() || isLockKey(event.key()))
        return;
    if (const quint64 flag = flagForModifierKey(event)) {
        m_heldFlags |= flag;
        giveHint(Hint::None);
        return;
    }
    if (event.key() == Qt::Key_AltGr) {
        m_isLevel3Held = true;
        return;
    }

    const quint64 flags = flagsForModifiers(event.modifiers());
    const bool isTab = event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
    if (isTab && (flags & ~CocoaModifier::shift) == 0) {
        stopRecording();
        focusNextPrevChild(flags == 0);
        return;
    }
    // The place of the key counts, not what it prints: the X server and Wayland number it alike.
    const std::optional<int> virtualKey = virtualKeyForX11Keycode(event.nativeScanCode());
    if (!m_escapeKeysRecord && (event.key() == Qt::Key_Escape || virtualKey == VirtualKey::escape)) {
        stopRecording();
        return;
    }
    if (flags == 0 && isDeleteKey(event.key()) && !(m_allowsKeyOnly && m_escapeKeysRecord)) {
        clear();
        return;
    }
    if (!virtualKey || m_isLevel3Held || (flags & ~m_allowedFlags) != 0) {
        giveHint(Hint::KeyNotUsable);
        return;
    }
    if (flags == 0 && !m_allowsKeyOnly) {
        giveHint(Hint::NeedsModifier);
        return;
    }
    stopRecording();
    takeKeyCombo({ .flags = flags, .code = *virtualKey });
}

void SRRecorderControl::mousePressEvent(QMouseEvent *event)
{
    m_isPressInside = event->button() == Qt::LeftButton;
}

void SRRecorderControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !std::exchange(m_isPressInside, false))
        return;
    if (!rect().contains(event->position().toPoint()))
        return;
    if (m_isRecording)
        stopRecording();
    else
        startRecording();
}

void SRRecorderControl::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    update();
}

void SRRecorderControl::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    stopRecording();
    update();
}

void SRRecorderControl::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::EnabledChange:
        if (!isEnabled())
            stopRecording();
        break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
        updateGeometry();
        break;
    case QEvent::LanguageChange:
    case QEvent::LayoutDirectionChange:
    case QEvent::PaletteChange:
        break;
    default:
        return;
    }
    layOutClearButton();
    updateDisplay();
}

void SRRecorderControl::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    stopRecording();
}

void SRRecorderControl::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOutClearButton();
}

void SRRecorderControl::takeKeyCombo(const SRKeyCombo &keyCombo)
{
    // Modifiers without a key mean nothing.
    m_keyCombo = keyCombo.isClear() ? SRKeyCombo {} : keyCombo;
    updateDisplay();
    if (m_delegate)
        m_delegate->shortcutRecorder_keyComboDidChange(this, m_keyCombo);
}

void SRRecorderControl::giveHint(Hint hint)
{
    m_hint = hint;
    updateDisplay();
}

void SRRecorderControl::updateDisplay()
{
    setToolTip(m_isRecording ? QString() : words());
    m_clearButton->setVisible(!m_isRecording && !m_keyCombo.isClear());
    update();

    // The words, too: two combinations may look alike but for a glyph that is read as nothing.
    const QString text = displayedText() + u'\n' + words();
    if (std::exchange(m_announcedText, text) == text)
        return;
    SRRecorderAccessible::announceChange(*this);
    Q_EMIT displayDidChange();
}
