// SPDX-License-Identifier: MIT
#include "FirstStep.h"

#include "FileReading.h"
#include "Limits.h"

#include <ContentLines.h>
#include <ICalendarReader.h>
#include <LineEdits.h>
#include <PropertyLine.h>
#include <TextPatcher.h>
#include <ZoneRegistry.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

using ICalendar::Item;

// A text and what is in it.
struct ReadText {
    ReadText(const QByteArray &text, ICalendar::ZoneRegistry &zones)
        : lines(text)
        , document(ICalendar::readDocument(text, zones))
    {
    }

    // As the file holds it; empty when there is none.
    QByteArray title(const Item &item) const
    {
        const auto found = ICalendar::linesNamed(lines, item.component, "SUMMARY");
        if (found.empty())
            return {};
        return ICalendar::PropertyLine(lines.unfolded(lines.lines()[found.front()])).value().toByteArray();
    }

    QByteArray rawText(const Item &item) const
    {
        const auto &component = lines.components()[static_cast<std::size_t>(item.component)];
        const qsizetype begin = lines.lines()[static_cast<std::size_t>(component.firstLine)].begin;
        const qsizetype end = lines.lines()[static_cast<std::size_t>(component.lastLine)].end;
        return lines.text().sliced(begin, end - begin);
    }

    const Item *counterpart(const Item &item) const
    {
        const auto found = std::ranges::find_if(document.items, [&](const Item &other) {
            return other.kind == item.kind && other.uid == item.uid
                && other.repetition->recurrenceId == item.repetition->recurrenceId;
        });
        return found == document.items.end() ? nullptr : &*found;
    }

    ICalendar::ContentLines lines;
    ICalendar::Document document;
};

// The file that holds the text after the first step: the one that was written, or one of another name beside it.
QString pathNow(const JournaledSave &save)
{
    const QFileInfo file(save.path);
    if (file.exists())
        return save.path;
    const QDir folder = file.dir();
    for (const QFileInfo &other : folder.entryInfoList({ u"*.ics"_s }, QDir::Files | QDir::NoSymLinks)) {
        if (other.size() != save.after.size())
            continue;
        const auto content = readRegularFile(other.filePath(), Limits::itemFileBytes);
        if (content && content.value().bytes == save.after)
            return other.filePath();
    }
    return {};
}

} // namespace

std::optional<QByteArray> textWithoutFirstStep(
    const QByteArray &text, const JournaledSave &save, ICalendar::ZoneRegistry &zones)
{
    const ReadText before(save.before.value_or(QByteArray()), zones);
    const ReadText after(save.after, zones);
    const ReadText present(text, zones);
    if (present.document.isCut || present.document.isConverted)
        return std::nullopt;
    for (const Item &written : after.document.items) {
        const Item *const original = before.counterpart(written);
        const QByteArray title = after.title(written);
        if (!title.startsWith(save.titlePrefix) || (original && before.title(*original) == title))
            continue;
        const Item *const item = present.counterpart(written);
        if (!item || present.title(*item) != title)
            return std::nullopt;

        const bool isUntouched = present.rawText(*item) == after.rawText(written);
        const bool isAlone = present.document.items.size() == 1;
        if (isUntouched && (original || !isAlone)) {
            const auto &component = present.lines.components()[static_cast<std::size_t>(item->component)];
            ICalendar::LineEdits edits(present.lines);
            edits.removeComponent(item->component);
            if (original)
                edits.insertTextAfter(static_cast<std::size_t>(component.lastLine), before.rawText(*original));
            return edits.text();
        }
        const QByteArray own = title.sliced(save.titlePrefix.size());
        ICalendar::TextPatcher patcher(text);
        if (own.isEmpty())
            patcher.removeProperty(item->component, "SUMMARY");
        else
            patcher.setProperty(item->component, "SUMMARY", own);
        return patcher.patchedText();
    }
    return std::nullopt;
}

Result<void, WritingFault> takeBackFirstStep(
    const JournaledSave &save, FileCalls &calls, ICalendar::ZoneRegistry &zones)
{
    using Kind = WritingFault::Kind;

    // Should somebody write at the very same time, what they have written is looked at anew.
    constexpr int mostAttempts = 10;
    Result<void, WritingFault> outcome = WritingFault { Kind::Changed, {} };
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        if (!QFileInfo(save.path).dir().exists())
            return WritingFault { Kind::Vanished, {} };
        const QString path = pathNow(save);
        // Whoever has removed the item meant it.
        if (path.isEmpty())
            return {};
        const auto content = readRegularFile(path, Limits::itemFileBytes);
        if (!content)
            return WritingFault { Kind::Failed, content.error().reason };
        const QByteArray &present = content.value().bytes;
        if (save.before && present == *save.before)
            return {};

        ItemFileWriter writer(calls);
        if (present == save.after && !save.before) {
            const auto removed = writer.remove(path, present);
            outcome = removed ? Result<void, WritingFault>() : Result<void, WritingFault>(removed.error());
        } else {
            const auto text = present == save.after ? save.before : textWithoutFirstStep(present, save, zones);
            if (!text)
                return {};
            outcome = writer.replace(path, present, *text);
        }
        if (outcome || outcome.error().kind != Kind::Changed)
            return outcome;
    }
    return outcome;
}

} // namespace FolderStore
