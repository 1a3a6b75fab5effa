// SPDX-License-Identifier: MIT
#include "StateFolder.h"

#include <QDir>

using namespace Qt::StringLiterals;

QString stateFolder()
{
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home))
        home = QDir::homePath() + u"/.local/state"_s;
    return home + u"/vantle"_s;
}
