// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>

class QIcon;
class QMenu;

// One icon among the desktop's status icons, there for as long as the object is.
//
// A press sends the action to the target, two presses in quick succession send
// the double action instead; each is the name of an invokable method that takes
// the sender. Some desktops pass no presses on and show the menu alone, so
// everything that a press does belongs into the menu, too.
class StatusItem : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void setTarget(QObject *target) { m_target = target; }
    QObject *target() const { return m_target; }
    void setAction(const QByteArray &action) { m_action = action; }
    QByteArray action() const { return m_action; }
    void setDoubleAction(const QByteArray &action) { m_doubleAction = action; }
    QByteArray doubleAction() const { return m_doubleAction; }

    virtual void setImage(const QIcon &image) = 0;
    // Takes the image's place while the menu is open that was popped up here.
    virtual void setAlternateImage(const QIcon &image) = 0;
    virtual void setToolTip(const QString &text) = 0;
    // What the desktop itself shows, mostly at a right press. Not owned, outlives the item.
    virtual void setMenu(QMenu *menu) = 0;
    // At the pointer.
    virtual void popUpMenu(QMenu *menu) = 0;

    // Whether it is to be seen anywhere at present.
    virtual bool isShown() const = 0;

protected:
    void sendAction() { send(m_action); }
    void sendDoubleAction() { send(m_doubleAction); }

private:
    void send(const QByteArray &action);

    QPointer<QObject> m_target;
    QByteArray m_action;
    QByteArray m_doubleAction;
};
