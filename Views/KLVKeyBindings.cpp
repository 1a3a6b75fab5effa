// SPDX-License-Identifier: MIT
#include "KLVKeyBindings.h"

#include <QKeyEvent>
#include <QMetaMethod>
#include <QPointer>
#include <QVariant>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto nextResponderProperty = "nextResponder";

struct Binding {
    int key;
    const char *action;
};

constexpr std::array bindings {
    Binding { Qt::Key_Up, "moveUp" },
    Binding { Qt::Key_Down, "moveDown" },
    Binding { Qt::Key_Left, "moveLeft" },
    Binding { Qt::Key_Right, "moveRight" },
    Binding { Qt::Key_Return, "insertNewline" },
    Binding { Qt::Key_Enter, "insertNewline" },
    Binding { Qt::Key_Backspace, "deleteBackward" },
    Binding { Qt::Key_Delete, "deleteForward" },
    Binding { Qt::Key_Escape, "cancelOperation" },
};

bool invoke(QObject *object, const QByteArray &action, QObject *sender)
{
    const QMetaObject *meta = object->metaObject();
    const int withSender = meta->indexOfMethod(QByteArray(action + "(QObject*)").constData());
    if (withSender >= 0)
        return meta->method(withSender).invoke(object, Qt::DirectConnection, Q_ARG(QObject *, sender));
    const int withoutSender = meta->indexOfMethod(QByteArray(action + "()").constData());
    return withoutSender >= 0 && meta->method(withoutSender).invoke(object, Qt::DirectConnection);
}

} // namespace

QString KLVKeyBindings::actionForKey(const QKeyEvent &event)
{
    // Keys with Control, Alt or Super are shortcuts, which are not ours; keypad and Shift make no difference.
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return {};
    const auto *const found = std::ranges::find(bindings, event.key(), &Binding::key);
    if (found == bindings.end())
        return {};
    const QString action = QString::fromLatin1(found->action);
    // A key held too long walks on, but does nothing twice: Return that saved a sheet would go on
    // to tick a to-do under it.
    return event.isAutoRepeat() && !action.startsWith(u"move"_s) ? QString() : action;
}

void KLVKeyBindings::setNextResponder(QObject *responder, QObject *next)
{
    responder->setProperty(nextResponderProperty, next ? QVariant::fromValue(QPointer<QObject>(next)) : QVariant());
}

QObject *KLVKeyBindings::nextResponder(const QObject *responder)
{
    QObject *const next = responder->property(nextResponderProperty).value<QPointer<QObject>>();
    return next ? next : responder->parent();
}

bool KLVKeyBindings::sendAction(const QString &action, QObject *firstResponder, QObject *sender)
{
    const QByteArray name = action.toLatin1();
    for (QObject *responder = firstResponder; responder; responder = nextResponder(responder)) {
        if (invoke(responder, name, sender))
            return true;
    }
    return false;
}

bool KLVKeyBindings::interpretKeyEvent(const QKeyEvent &event, QObject *firstResponder)
{
    const QString action = actionForKey(event);
    return !action.isEmpty() && sendAction(action, firstResponder, firstResponder);
}
