// SPDX-License-Identifier: MIT
#include "ProblemLog.h"

using namespace Qt::StringLiterals;

namespace Items
{

Q_LOGGING_CATEGORY(storeLog, "vantle.store")

void ProblemLog::note(const QString &file, int line, const QString &reason)
{
    const QString where = line > 0 ? u"%1:%2"_s.arg(file).arg(line) : file;
    const QString text = where + u": "_s + reason;
    if (m_noted.contains(text))
        return;
    m_noted.insert(text);
    qCWarning(storeLog).noquote() << text;
}

} // namespace Items
