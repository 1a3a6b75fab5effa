// SPDX-License-Identifier: MIT
#pragma once

#include "Result.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

// The person's settings: typed values by key, over a layer of factory values.
//
// Reads the settings file once, when made. Changes stay in memory until
// synchronize(), which is called last by the destructor; so a crash loses them
// and an unwritable file disturbs nobody before the exit. Whatever else stands in
// the file is kept.
//
// The file holds text alone, so a value's type comes from its factory value: a
// value that cannot be read as that type, and a file that cannot be read at all,
// count as absent. Factory values answer for absent keys and are never written.
class UserDefaults
{
public:
    // vantle/vantle.conf in the configuration home.
    UserDefaults();
    explicit UserDefaults(const QString &path);
    virtual ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    // Adds to the layer; a later value for a key replaces the earlier one.
    void registerDefaults(const QVariantMap &factoryValues);

    // In the type of the factory value: bool, qlonglong, double, QString or QStringList.
    // Invalid for a key that has neither a value nor a factory value.
    QVariant objectForKey(const QString &key) const;
    // 0 for an absent value; 1 and 0 for true and false.
    qint64 integerForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    // An absent list is nothing; that is not the same as an empty one.
    std::optional<QStringList> arrayForKey(const QString &key) const;

    void setInteger_forKey(qint64 value, const QString &key);
    void setBool_forKey(bool value, const QString &key);
    // Nothing takes the person's own value away.
    void setArray_forKey(const std::optional<QStringList> &value, const QString &key);

    // Writes the changes. A failure is noted in the log too; the changes then stay pending.
    Result<void> synchronize();

protected:
    // Every change comes through here, in the order in which they are made. An invalid value takes the key away.
    virtual void set(const QString &key, const QVariant &value);

private:
    QString m_path;
    QVariantMap m_factoryValues;
    QVariantMap m_values; // the file's, with the changes
    QVariantMap m_changes; // an invalid value takes the key away
};
