// SPDX-License-Identifier: MIT
#include "PropertyList.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <plist/plist.h>

#include <cstdlib>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

struct NodeDeleter {
    void operator()(void *node) const { plist_free(node); }
};
using NodePtr = std::unique_ptr<void, NodeDeleter>;

struct MallocDeleter {
    void operator()(void *memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc): libplist's
};
template <typename Value> using MallocPtr = std::unique_ptr<Value, MallocDeleter>;

QVariant valueOf(plist_t node);

QString textOf(plist_t node)
{
    char *text = nullptr;
    plist_get_string_val(node, &text);
    const MallocPtr<char> owned(text);
    return QString::fromUtf8(text);
}

QByteArray dataOf(plist_t node)
{
    char *bytes = nullptr;
    uint64_t length = 0;
    plist_get_data_val(node, &bytes, &length);
    const MallocPtr<char> owned(bytes);
    return { bytes, static_cast<qsizetype>(length) };
}

QDateTime instantOf(plist_t node)
{
    constexpr qint64 appleEpoch = 978307200; // seconds from 1970 to 2001
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return QDateTime::fromSecsSinceEpoch(seconds + appleEpoch, Qt::UTC);
}

QVariantList listOf(plist_t node)
{
    QVariantList list;
    const uint32_t count = plist_array_get_size(node);
    for (uint32_t index = 0; index < count; ++index)
        list.append(valueOf(plist_array_get_item(node, index)));
    return list;
}

QVariantMap dictionaryOf(plist_t node)
{
    QVariantMap dictionary;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const MallocPtr<void> ownedIterator(iterator);
    for (;;) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        const MallocPtr<char> ownedKey(key);
        if (!value)
            return dictionary;
        dictionary.insert(QString::fromUtf8(key), valueOf(value));
    }
}

QVariant valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        // Negative numbers arrive in two's complement.
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return static_cast<qlonglong>(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_STRING:
        return textOf(node);
    case PLIST_DATA:
        return dataOf(node);
    case PLIST_DATE:
        return instantOf(node);
    case PLIST_ARRAY:
        return listOf(node);
    case PLIST_DICT:
        return dictionaryOf(node);
    default:
        return {};
    }
}

} // namespace

Result<QVariant> propertyListFromXml(const QByteArray &xml)
{
    // libplist reports nothing: it leaves the pointer alone when the text is damaged. But a NUL, which
    // XML never holds, ends the process.
    plist_t root = nullptr;
    if (!xml.isEmpty() && xml.size() <= std::numeric_limits<uint32_t>::max() && !xml.contains('\0'))
        plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &root);
    const NodePtr owned(root);
    if (!root)
        return Error { QCoreApplication::translate("Vantle", "This is not a whole property list.") };
    return valueOf(root);
}

Result<QVariantMap> readPropertyListDictionary(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return Error { QCoreApplication::translate("Vantle", "“%1” cannot be read: %2").arg(path, file.errorString()) };
    }
    const Result<QVariant> list = propertyListFromXml(file.readAll());
    if (!list)
        return Error { u"%1: %2"_s.arg(path, list.error().message) };
    if (list.value().typeId() != QMetaType::QVariantMap) {
        return Error { QCoreApplication::translate("Vantle", "“%1” does not hold a dictionary.").arg(path) };
    }
    return list.value().toMap();
}
