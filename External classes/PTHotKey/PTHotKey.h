// SPDX-License-Identifier: MIT
#pragma once

#include "PTKeyCombo.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <memory>

// The desktop's handle of a registration; null when there is none.
enum class EventHotKeyRef : quint64 { Null = 0 };

// One global shortcut: a combination, and what it makes happen.
//
// It does nothing by itself until PTHotKeyCenter registers it, which also gives
// it its id and its handle.
class PTHotKey final : public QObject
{
    Q_OBJECT

public:
    // A null identifier is none, and is never found again. Nothing for the combo is the clear combo.
    explicit PTHotKey(const QString &identifier = {}, const PTKeyComboPtr &keyCombo = {});

    QString identifier() const { return mIdentifier; }
    void setIdentifier(const QString &identifier) { mIdentifier = identifier; }
    QString name() const { return mName; }
    void setName(const QString &name) { mName = name; }
    PTKeyComboPtr keyCombo() const { return mKeyCombo; } // never null
    void setKeyCombo(const PTKeyComboPtr &keyCombo);
    QObject *target() const { return mTarget; } // null once it is gone
    void setTarget(QObject *target) { mTarget = target; }
    // The name of a method of the target that can be invoked and takes the
    // sender, a QObject pointer.
    QByteArray action() const { return mAction; }
    void setAction(const QByteArray &action) { mAction = action; }
    quint64 carbonHotKeyID() const { return mCarbonHotKeyID; } // 0 when not registered
    void setCarbonHotKeyID(quint64 hotKeyID) { mCarbonHotKeyID = hotKeyID; }
    EventHotKeyRef carbonEventHotKeyRef() const { return mCarbonEventHotKeyRef; }
    void setCarbonEventHotKeyRef(EventHotKeyRef ref) { mCarbonEventHotKeyRef = ref; }

    // The application's action on the session bus that does the same, for
    // desktops that bind keys to commands only. May be empty.
    QString desktopAction() const { return m_desktopAction; }
    void setDesktopAction(const QString &desktopAction) { m_desktopAction = desktopAction; }

    // Sends the action to the target with the hot key as the sender.
    void invoke();

    // "<PTHotKey: VTAddTaskKeyCode, ⌘⌥T>"
    QString description() const;

private:
    QString mIdentifier;
    QString mName;
    PTKeyComboPtr mKeyCombo;
    QPointer<QObject> mTarget;
    QByteArray mAction;
    quint64 mCarbonHotKeyID = 0;
    EventHotKeyRef mCarbonEventHotKeyRef = EventHotKeyRef::Null;
    QString m_desktopAction;
};

using PTHotKeyPtr = std::shared_ptr<PTHotKey>;
