// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

// The names of keys, from a property list, in the person's language.
//
// Read when first asked for. A file that cannot be read is tried again at the
// next question; one that was read is never read again.
class PTKeyCodesTable final
{
public:
    explicit PTKeyCodesTable(QString path);

    // Empty when the file cannot be read.
    const QVariantMap &dictionary();

private:
    QString m_path;
    QVariantMap m_dictionary;
};
