// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>
#include <QSet>
#include <QString>

namespace Items
{

Q_DECLARE_LOGGING_CATEGORY(storeLog)

// Notes what cannot be shown (category "vantle.store"): each problem once per
// run, however often the file is read again.
class ProblemLog final
{
public:
    // `line` is 1-based; 0 when the whole file is meant.
    void note(const QString &file, int line, const QString &reason);

private:
    QSet<QString> m_noted;
};

} // namespace Items
