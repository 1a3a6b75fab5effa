// SPDX-License-Identifier: MIT
#include "KLVRepresentedObjects.h"

#include <CalEvent.h>
#include <CalTask.h>

#include <algorithm>

namespace
{

template <typename List> KLVRepresentedObjects objectsOf(const QVariant &value)
{
    const auto list = value.value<List>();
    return { list.cbegin(), list.cend() };
}

} // namespace

KLVRepresentedObjects toRepresentedObjects(const QVariant &value)
{
    const QMetaType type = value.metaType();
    if (type == QMetaType::fromType<KLVRepresentedObjects>())
        return value.value<KLVRepresentedObjects>();
    if (type == QMetaType::fromType<CalEventList>())
        return objectsOf<CalEventList>(value);
    if (type == QMetaType::fromType<CalTaskList>())
        return objectsOf<CalTaskList>(value);
    if (type == QMetaType::fromType<CalCalendarItemList>())
        return objectsOf<CalCalendarItemList>(value);
    return {};
}

bool containsEqualObject(const KLVRepresentedObjects &objects, const KeyValueObjectPtr &object)
{
    return object && std::ranges::any_of(objects, [&](const KeyValueObjectPtr &other) {
        return other && other->isEqual(*object);
    });
}
