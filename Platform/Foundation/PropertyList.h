// SPDX-License-Identifier: MIT
#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVariantMap>

// Property lists in XML, as values: booleans as bool, integers as qlonglong,
// reals as double, then QString, QByteArray, QDateTime (UTC), QVariantList and
// QVariantMap.

Result<QVariant> propertyListFromXml(const QByteArray &xml);

// `path` may name a file or a resource. Fails also when the list is no dictionary.
Result<QVariantMap> readPropertyListDictionary(const QString &path);
