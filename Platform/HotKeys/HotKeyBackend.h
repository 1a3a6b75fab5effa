// SPDX-License-Identifier: MIT
#pragma once

#include "HotKeyStatus.h"

#include <Result.h>

#include <QByteArray>
#include <QObject>

// How a hot key is called where the desktop itself shows or keeps it.
struct HotKeyLabel {
    QString identifier; // the same in every run; the desktop remembers the person's choice under it
    QString name; // for the person
    QString desktopAction; // of the application on the session bus, which does the same; may be empty
};

// What the desktop says of a press, for the window that comes up by it. Both may be absent.
struct HotKeyPress {
    quint32 time = 0; // the X server's, in milliseconds; 0 for unknown
    QByteArray waylandToken;
};

// Hears key combinations while another application is in front.
//
// Knows nothing of actions: it is given an id and a combination and says that
// the id was pressed. Owns its grabs and gives all of them back when it goes.
//
// Keys are virtual key codes, modifiers are Carbon bits; bits that stand for no
// key of this desktop do not count.
class HotKeyBackend : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // False when this desktop cannot do it at all.
    virtual bool isAvailable() const = 0;

    // Ids are the caller's and never in use twice. Success means accepted: where
    // the desktop decides later, or offers nothing, status() tells. A refusal
    // (another program holds the keys) leaves everything as it was.
    virtual Result<void> grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label) = 0;
    // Unknown ids are ignored.
    virtual void release(quint32 id) = 0;

    // Unset for an id that is not grabbed.
    virtual HotKeyStatus status(quint32 id) const = 0;

    // Of the one that pressed() tells of last.
    const HotKeyPress &latestPress() const { return m_latestPress; }

Q_SIGNALS:
    // Once for each press, however long the keys are held.
    void pressed(quint32 id);
    void released(quint32 id);
    // Never from within grab() or release().
    void statusChanged(quint32 id);

protected:
    void setLatestPress(const HotKeyPress &press) { m_latestPress = press; }

private:
    HotKeyPress m_latestPress;
};

// Why a grab fails on every desktop alike.
namespace HotKeyRefusal
{

Error keysAreTaken();
Error keysAreTakenByUs();
Error keyIsMissing();
Error modifierIsMissing();

} // namespace HotKeyRefusal
