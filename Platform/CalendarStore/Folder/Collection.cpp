// SPDX-License-Identifier: MIT
#include "Collection.h"

#include <CalCalendar.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace FolderStore
{

namespace
{

QString withoutEnding(const QString &fileName)
{
    return fileName.left(fileName.lastIndexOf(u'.'));
}

} // namespace

Collection::Collection(FoundCollection place)
    : m_place(std::move(place))
{
}

QString Collection::pathOf(const QString &fileName) const
{
    return m_place.kind == FoundCollection::Kind::SingleFile ? m_place.path : m_place.path + u'/' + fileName;
}

void Collection::setPlace(const FoundCollection &place)
{
    m_place = place;
    m_record.reset();
}

void Collection::setDescription(const CollectionDescription &description)
{
    m_description = description;
    m_record.reset();
}

const CalCalendarPtr &Collection::record() const
{
    if (!m_record)
        m_record = makeRecord();
    return m_record;
}

CalCalendarPtr Collection::makeRecord() const
{
    CalCalendar::Values values;
    values.uid = uid();
    values.title = m_description.displayName;
    std::optional<QColor> color = m_description.color;
    if (m_place.kind == FoundCollection::Kind::SingleFile) {
        values.isEditable = false;
        if (const FileSnapshotPtr only = file(m_place.name)) {
            values.title = displayNameOfText(only->document().calendarName);
            color = colorOfText(only->document().calendarColor);
            if (!color && QColor::isValidColor(only->document().calendarColor))
                color = QColor(only->document().calendarColor);
        }
        if (values.title.isEmpty())
            values.title = displayNameOfText(withoutEnding(uid()));
    } else {
        values.isEditable = m_place.isWritable;
    }
    if (values.title.isEmpty())
        values.title = displayNameOfText(uid());
    values.color = color.value_or(defaultColor(uid()));
    return std::make_shared<CalCalendar>(std::move(values));
}

void Collection::setFile(const FileSnapshotPtr &snapshot)
{
    removeFile(snapshot->fileName());
    m_files.insert(snapshot->fileName(), snapshot);
    if (m_place.kind == FoundCollection::Kind::SingleFile)
        m_record.reset();
    m_events.add(*snapshot);
    m_tasks.add(*snapshot);
    for (const QString &uid : snapshot->uids()) {
        QStringList &names = m_filesByUid[uid];
        names.insert(std::ranges::lower_bound(names, snapshot->fileName()), snapshot->fileName());
        m_sharedUids += names.size() == 2 ? 1 : 0;
    }
}

void Collection::removeFile(const QString &fileName)
{
    const FileSnapshotPtr known = m_files.take(fileName);
    if (!known)
        return;
    m_events.remove(*known);
    m_tasks.remove(*known);
    m_expansions.forget(*known);
    for (const QString &uid : known->uids()) {
        const auto names = m_filesByUid.find(uid);
        names->removeOne(fileName);
        m_sharedUids -= names->size() == 1 ? 1 : 0;
        if (names->isEmpty())
            m_filesByUid.erase(names);
    }
}

QString Collection::distinctionOf(const GroupRef &ref) const
{
    const int ordinal = ref.get().ordinal;
    const auto names = m_filesByUid.constFind(ref.file->uidOf(ref.get()));
    if (ordinal == 0 && (names == m_filesByUid.cend() || names->first() == ref.file->fileName()))
        return {};
    return ordinal == 0 ? ref.file->fileName() : u"%1#%2"_s.arg(ref.file->fileName()).arg(ordinal + 1);
}

} // namespace FolderStore
