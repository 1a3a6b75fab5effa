// SPDX-License-Identifier: MIT
#include "CollectionDescription.h"

#include "FileReading.h"
#include "Limits.h"

#include <ProblemLog.h>

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QStringDecoder>

#include <array>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

constexpr std::array<QRgb, 8> palette { 0x2f7de1, 0xd9433b, 0x2f9e5a, 0xd98324, 0x8e55c7, 0x1d97a6, 0xc2418b,
    0x6b7480 };

std::optional<QString> textOfFile(const QString &path, Items::ProblemLog &log)
{
    const auto content = readRegularFile(path, Limits::descriptionFileBytes);
    if (!content) {
        if (content.error().kind != FileFault::Kind::Missing)
            log.note(path, 0, content.error().reason);
        return std::nullopt;
    }
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(content.value().bytes);
    if (decode.hasError() || text.contains(QChar::Null)) {
        log.note(path, 0, u"is not text"_s);
        return std::nullopt;
    }
    return text.trimmed();
}

template <typename Value>
std::optional<Value> noteIfMissing(
    std::optional<Value> value, const QString &path, const QString &reason, Items::ProblemLog &log)
{
    if (!value)
        log.note(path, 0, reason);
    return value;
}

std::optional<int> numberOfText(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

CollectionDescription CollectionDescription::readFrom(const QString &folder, Items::ProblemLog &log)
{
    CollectionDescription description;
    if (const auto text = textOfFile(folder + u"/displayname"_s, log))
        description.displayName = displayNameOfText(*text);
    const QString colorFile = folder + u"/color"_s;
    if (const auto text = textOfFile(colorFile, log); text && !text->isEmpty())
        description.color = noteIfMissing(colorOfText(*text), colorFile, u"is not a colour"_s, log);
    const QString orderFile = folder + u"/order"_s;
    if (const auto text = textOfFile(orderFile, log); text && !text->isEmpty())
        description.order = noteIfMissing(numberOfText(*text), orderFile, u"is not a number"_s, log);
    return description;
}

bool CollectionDescription::isDescriptionFile(const QString &fileName)
{
    return fileName == u"displayname" || fileName == u"color" || fileName == u"order";
}

std::optional<QColor> colorOfText(const QString &text)
{
    static const QRegularExpression pattern(
        u"^#(?:[0-9a-f]{3,4}|(?:[0-9a-f]{6})(?:[0-9a-f]{2})?)$"_s, QRegularExpression::CaseInsensitiveOption);
    const QString trimmed = text.trimmed();
    if (!pattern.match(trimmed).hasMatch())
        return std::nullopt;
    const bool isShort = trimmed.size() <= 5;
    return QColor(trimmed.left(isShort ? 4 : 7));
}

QString displayNameOfText(const QString &text)
{
    QString name = text;
    for (QChar &character : name) {
        if (character.category() == QChar::Other_Control)
            character = u' ';
    }
    return name.simplified().left(Limits::displayNameCharacters);
}

QColor defaultColor(const QString &name)
{
    // Not qHash, whose answer differs from run to run.
    const QByteArray digest = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Md5);
    return QColor::fromRgb(palette.at(static_cast<unsigned char>(digest.at(0)) % palette.size()));
}

} // namespace FolderStore
