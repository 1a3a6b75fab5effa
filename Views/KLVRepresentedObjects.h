// SPDX-License-Identifier: MIT
#pragma once

#include <KeyValueObject.h>

#include <QList>
#include <QVariant>

// What a list shows or has selected, in order.
using KLVRepresentedObjects = QList<KeyValueObjectPtr>;

// The objects in a value that was read by key: a list of objects, of calendar
// items, of events or of to-dos. An invalid value, or any other, is an empty list.
KLVRepresentedObjects toRepresentedObjects(const QVariant &value);

// By the objects' own notion of equality.
bool containsEqualObject(const KLVRepresentedObjects &objects, const KeyValueObjectPtr &object);
