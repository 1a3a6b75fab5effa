// SPDX-License-Identifier: MIT
#include "Collection.h"

#include <CalCalendar.h>

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
            values.title = displayNameOfText(only->document().heading->name);
            color = colorOfText(only->document().heading->color);
            if (!color && QColor::isValidColor(only->document().heading->color))
                color = QColor(only->document().heading->color);
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
    removeFile(snapshot->name());
    m_files.insert(snapshot->name(), snapshot);
    if (m_place.kind == FoundCollection::Kind::SingleFile)
        m_record.reset();
    m_items.add(*snapshot);
}

void Collection::removeFile(const QString &fileName)
{
    if (const FileSnapshotPtr known = m_files.take(fileName))
        m_items.remove(*known);
}

} // namespace FolderStore
