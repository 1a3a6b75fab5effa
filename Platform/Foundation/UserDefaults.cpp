// SPDX-License-Identifier: MIT
#include "UserDefaults.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSettings>
#include <QStandardPaths>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(settingsLog, "vantle.settings")

namespace
{

QString standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/vantle/vantle.conf"_s;
}

QVariantMap readSettings(const QString &path)
{
    // Opening anything but a file could wait for ever.
    if (QFileInfo info(path); info.exists() && !info.isFile())
        return {};

    const QSettings settings(path, QSettings::IniFormat);
    QVariantMap values;
    for (const QString &key : settings.childKeys())
        values.insert(key, settings.value(key));
    return values;
}

bool isTrueWord(const QString &text)
{
    return text.compare("true"_L1, Qt::CaseInsensitive) == 0 || text.compare("yes"_L1, Qt::CaseInsensitive) == 0;
}

bool isFalseWord(const QString &text)
{
    return text.compare("false"_L1, Qt::CaseInsensitive) == 0 || text.compare("no"_L1, Qt::CaseInsensitive) == 0;
}

// The number that a text begins with, whatever follows it. Numbers beyond the range read as its end.
std::optional<qint64> leadingInteger(const QString &text)
{
    qsizetype position = 0;
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+'))
        ++position;

    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    constexpr qint64 base = 10;
    const qsizetype firstDigit = position;
    qint64 value = 0;
    for (; position < text.size() && text[position] >= u'0' && text[position] <= u'9'; ++position) {
        const qint64 digit = text[position].unicode() - u'0';
        value = value > (largest - digit) / base ? largest : value * base + digit;
    }
    if (position == firstDigit)
        return std::nullopt;
    return isNegative ? -value : value;
}

std::optional<qint64> integerFromText(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (isTrueWord(trimmed))
        return 1;
    if (isFalseWord(trimmed))
        return 0;
    return leadingInteger(trimmed);
}

std::optional<qint64> integerFromReal(double value)
{
    constexpr double limit = 9.2e18; // just inside the range of 64 bits
    if (!std::isfinite(value) || std::abs(value) > limit)
        return std::nullopt;
    return static_cast<qint64>(value);
}

std::optional<qint64> integerFrom(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::ULongLong:
        return static_cast<qint64>(
            std::min<quint64>(value.toULongLong(), static_cast<quint64>(std::numeric_limits<qint64>::max())));
    case QMetaType::Double:
        return integerFromReal(value.toDouble());
    case QMetaType::QString:
        return integerFromText(value.toString());
    default:
        return std::nullopt;
    }
}

// The settings file cannot tell a text from a list of one text, nor nothing from an empty list.
std::optional<QStringList> listFrom(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringList();
    case QMetaType::QString:
        return value.toString().isEmpty() ? QStringList() : QStringList(value.toString());
    case QMetaType::QStringList:
        return value.toStringList();
    case QMetaType::QVariantList: {
        QStringList list;
        for (const QVariant &element : value.toList()) {
            if (element.typeId() != QMetaType::QString)
                return std::nullopt;
            list.append(element.toString());
        }
        return list;
    }
    default:
        return std::nullopt;
    }
}

template <typename Value> QVariant variantOf(const std::optional<Value> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

// The value in the type of a model; invalid when it cannot be read so.
QVariant converted(const QVariant &value, const QVariant &model)
{
    switch (model.typeId()) {
    case QMetaType::Bool: {
        const std::optional<qint64> number = integerFrom(value);
        return number ? QVariant(*number != 0) : QVariant();
    }
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return variantOf(integerFrom(value));
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return variantOf(listFrom(value));
    default:
        return value.canConvert(model.metaType()) ? value : QVariant();
    }
}

} // namespace

UserDefaults::UserDefaults()
    : UserDefaults(standardPath())
{
}

UserDefaults::UserDefaults(const QString &path)
    : m_path(path)
    , m_values(readSettings(path))
{
}

UserDefaults::~UserDefaults()
{
    // A failure has been noted; there is nobody left to tell.
    static_cast<void>(synchronize());
}

void UserDefaults::registerDefaults(const QVariantMap &factoryValues)
{
    m_factoryValues.insert(factoryValues);
}

QVariant UserDefaults::objectForKey(const QString &key) const
{
    const QVariant factoryValue = m_factoryValues.value(key);
    const auto own = m_values.constFind(key);
    if (own == m_values.cend())
        return factoryValue.isValid() ? converted(factoryValue, factoryValue) : QVariant();
    if (!factoryValue.isValid())
        return *own;

    const QVariant value = converted(*own, factoryValue);
    return value.isValid() ? value : converted(factoryValue, factoryValue);
}

qint64 UserDefaults::integerForKey(const QString &key) const
{
    return integerFrom(objectForKey(key)).value_or(0);
}

bool UserDefaults::boolForKey(const QString &key) const
{
    return integerForKey(key) != 0;
}

std::optional<QStringList> UserDefaults::arrayForKey(const QString &key) const
{
    if (!m_values.contains(key) && !m_factoryValues.contains(key))
        return std::nullopt;
    return listFrom(objectForKey(key));
}

void UserDefaults::setInteger_forKey(qint64 value, const QString &key)
{
    set(key, value);
}

void UserDefaults::setBool_forKey(bool value, const QString &key)
{
    set(key, value);
}

void UserDefaults::setArray_forKey(const std::optional<QStringList> &value, const QString &key)
{
    set(key, variantOf(value));
}

void UserDefaults::set(const QString &key, const QVariant &value)
{
    m_changes.insert(key, value);
    if (value.isValid())
        m_values.insert(key, value);
    else
        m_values.remove(key);
}

Result<void> UserDefaults::synchronize()
{
    if (m_changes.isEmpty())
        return {};

    const QFileInfo info(m_path);
    bool isWritten = QDir().mkpath(info.absolutePath()) && (!info.exists() || info.isFile());
    if (isWritten) {
        QSettings settings(m_path, QSettings::IniFormat);
        for (auto change = m_changes.cbegin(); change != m_changes.cend(); ++change) {
            if (change.value().isValid())
                settings.setValue(change.key(), change.value());
            else
                settings.remove(change.key());
        }
        settings.sync();
        // A file that was damaged before is replaced; only a refused write counts.
        isWritten = settings.status() != QSettings::AccessError;
    }
    if (!isWritten) {
        const QString message
            = QCoreApplication::translate("Vantle", "The settings could not be written to “%1”.").arg(m_path);
        qCWarning(settingsLog).noquote() << message;
        return Error { message };
    }
    m_changes.clear();
    return {};
}
