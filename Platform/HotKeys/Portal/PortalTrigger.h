// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// A combination as the portal writes one: "CTRL+ALT+k". Keys have their XKB
// names, printed ones by the current layout. Empty for keys and modifiers that
// cannot be said so.
QString portalTrigger(int virtualKey, quint32 carbonModifiers);
