// SPDX-License-Identifier: MIT
#include "StatusItem.h"

#include <QMetaObject>

void StatusItem::send(const QByteArray &action)
{
    if (m_target && !action.isEmpty())
        QMetaObject::invokeMethod(m_target, action.constData(), Q_ARG(QObject *, this));
}
