// SPDX-License-Identifier: MIT
#include "SystemZone.h"

#include "CivilDate.h"
#include "PosixZoneRule.h"
#include "TransitionZone.h"

#include <QFile>
#include <QtEndian>

#include <limits>
#include <optional>
#include <vector>

namespace ICalendar
{

namespace
{

constexpr qsizetype headerSize = 44;
constexpr qint64 largestZoneFile = 1'000'000;

// The sizes of one block of a file, as its header tells them.
struct BlockSizes {
    qint64 utcIndicators = 0;
    qint64 standardIndicators = 0;
    qint64 leapSeconds = 0;
    qint64 transitions = 0;
    qint64 types = 0;
    qint64 abbreviations = 0;

    qint64 bytes(qint64 timeSize) const
    {
        return transitions * (timeSize + 1) + types * 6 + abbreviations + leapSeconds * (timeSize + 4)
            + standardIndicators + utcIndicators;
    }
};

std::optional<BlockSizes> blockSizes(const QByteArray &data, qsizetype at)
{
    if (data.size() < at + headerSize || !QByteArrayView(data).sliced(at).startsWith("TZif"))
        return std::nullopt;
    const auto number = [&](int index) {
        return static_cast<qint64>(
            qFromBigEndian<quint32>(data.constData() + at + 20 + 4 * static_cast<qsizetype>(index)));
    };
    return BlockSizes { number(0), number(1), number(2), number(3), number(4), number(5) };
}

// What follows the last change of a table.
void appendYearlyChanges(std::vector<ZoneTransition> &transitions, const PosixZoneRule &rule)
{
    const int firstYear = transitions.empty() ? 1 : yearMonthDay(dayOf(transitions.back().at)).year;
    const UtcSeconds last = transitions.empty() ? std::numeric_limits<UtcSeconds>::min() : transitions.back().at;
    for (int year = firstYear; year <= TransitionZone::lastTableYear; ++year) {
        for (const ZoneTransition &transition : rule.transitions(year)) {
            if (transition.at > last)
                transitions.push_back(transition);
        }
    }
}

// The block of 64-bit times, and what follows it.
struct LongBlock {
    qint64 begin = 0;
    qint64 end = 0;
    BlockSizes sizes;
};

std::optional<LongBlock> longBlock(const QByteArray &data)
{
    const auto first = blockSizes(data, 0);
    if (!first || data[4] < '2') // files of the first version, of before 2005, hold no years after 2037
        return std::nullopt;
    const qint64 at = headerSize + first->bytes(4);
    const auto sizes = blockSizes(data, at);
    if (!sizes || sizes->types < 1)
        return std::nullopt;
    const LongBlock block { at + headerSize, at + headerSize + sizes->bytes(8), *sizes };
    return data.size() < block.end ? std::nullopt : std::optional(block);
}

QByteArray footerOf(const QByteArray &data, const LongBlock &block)
{
    return data.sliced(block.end).trimmed();
}

ZonePtr zoneFromData(const QByteArray &data)
{
    const auto block = longBlock(data);
    if (!block)
        return nullptr;
    const BlockSizes &sizes = block->sizes;
    const char *const times = data.constData() + block->begin;
    const char *const typeIndexes = times + sizes.transitions * 8;
    const char *const types = typeIndexes + sizes.transitions;
    const auto offsetOfType = [&](qint64 type) { return static_cast<int>(qFromBigEndian<qint32>(types + type * 6)); };
    std::vector<ZoneTransition> transitions;
    for (qint64 i = 0; i < sizes.transitions; ++i) {
        const qint64 type = static_cast<quint8>(typeIndexes[i]);
        if (type >= sizes.types)
            return nullptr;
        transitions.push_back({ qFromBigEndian<qint64>(times + i * 8), offsetOfType(type) });
    }
    if (const auto rule = PosixZoneRule::parsed(footerOf(data, *block)))
        appendYearlyChanges(transitions, *rule);
    return std::make_shared<TransitionZone>(offsetOfType(0), std::move(transitions));
}

// Empty when it cannot be read.
QByteArray dataOfZoneFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestZoneFile)
        return {};
    return file.readAll();
}

} // namespace

ZonePtr readZoneFile(const QString &path)
{
    return zoneFromData(dataOfZoneFile(path));
}

QByteArray yearlyRuleOfZoneFile(const QString &path)
{
    const QByteArray data = dataOfZoneFile(path);
    const auto block = longBlock(data);
    return block ? footerOf(data, *block) : QByteArray();
}

ZonePtr zoneFromPosixText(const QByteArray &text)
{
    const auto rule = PosixZoneRule::parsed(text);
    if (!rule)
        return nullptr;
    std::vector<ZoneTransition> transitions;
    appendYearlyChanges(transitions, *rule);
    return std::make_shared<TransitionZone>(rule->standardOffset(), std::move(transitions));
}

QString zoneFolder()
{
    const QString folder = qEnvironmentVariable("TZDIR");
    return folder.isEmpty() ? QStringLiteral("/usr/share/zoneinfo") : folder;
}

} // namespace ICalendar
