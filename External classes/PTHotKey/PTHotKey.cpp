// SPDX-License-Identifier: MIT
#include "PTHotKey.h"

using namespace Qt::StringLiterals;

PTHotKey::PTHotKey(const QString &identifier, const PTKeyComboPtr &keyCombo)
    : mIdentifier(identifier)
{
    setKeyCombo(keyCombo);
}

void PTHotKey::setKeyCombo(const PTKeyComboPtr &keyCombo)
{
    mKeyCombo = keyCombo ? keyCombo : PTKeyCombo::clearKeyCombo();
}

void PTHotKey::invoke()
{
    if (!mTarget || mAction.isEmpty())
        return;
    QMetaObject::invokeMethod(mTarget, mAction.constData(), Qt::DirectConnection, Q_ARG(QObject *, this));
}

QString PTHotKey::description() const
{
    return u"<%1: %2, %3>"_s.arg(QString::fromLatin1(metaObject()->className()), mIdentifier, mKeyCombo->description());
}
