// SPDX-License-Identifier: MIT
#include "ActivationToken.h"

#include <QtGlobal>

ActivationToken ActivationToken::fromEnvironment()
{
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    return { userTimeOf(startupId), startupId, qgetenv("XDG_ACTIVATION_TOKEN") };
}

quint32 ActivationToken::userTimeOf(const QByteArray &startupId)
{
    constexpr QByteArrayView mark = "_TIME";
    const qsizetype at = startupId.lastIndexOf(mark);
    // Not a number: 0, which is unknown. Servers count past 32 bits on some launchers.
    return at < 0 ? 0 : static_cast<quint32>(startupId.mid(at + mark.size()).toULongLong());
}
