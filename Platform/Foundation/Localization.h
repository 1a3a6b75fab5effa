// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

// The text for the person at the screen. The English text is the key; a text
// that a translation lacks is shown in English. All texts share one context,
// so that the same English text is translated once. `key` must be a literal in
// the call, or marked with QT_TRANSLATE_NOOP("Vantle", …), for lupdate to find it:
// call it as QCoreApplication::translate("Vantle", "…") or through this function
// with a marked key.
QString localizedString(const char *key);
