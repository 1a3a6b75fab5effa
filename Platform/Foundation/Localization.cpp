// SPDX-License-Identifier: MIT
#include "Localization.h"

QString localizedString(const char *key)
{
    return QCoreApplication::translate("Vantle", key);
}
