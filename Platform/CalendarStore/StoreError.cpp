// SPDX-License-Identifier: MIT
#include "StoreError.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype longestTitle = 200; // characters

// As far as it can stand in a sentence: on one line, and with room for the reason below it.
QString inSentence(const QString &title)
{
    QString shown = title.left(longestTitle);
    for (QChar &character : shown) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator
            || character == QChar::ParagraphSeparator)
            character = u' ';
    }
    if (shown.size() == title.size())
        return shown;
    if (shown.back().isHighSurrogate())
        shown.chop(1);
    return shown + u'…';
}

QString sentenceOfItem(StoreError::Action action)
{
    switch (action) {
    case StoreError::Action::Remove:
        return QCoreApplication::translate("Vantle", "“%1” was not deleted.");
    case StoreError::Action::Restore:
        return QCoreApplication::translate("Vantle", "“%1” was not restored.");
    case StoreError::Action::Save:
        break;
    }
    return QCoreApplication::translate("Vantle", "“%1” was not saved.");
}

QString sentenceOfItemInCalendar(StoreError::Action action)
{
    switch (action) {
    case StoreError::Action::Remove:
        return QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not deleted.");
    case StoreError::Action::Restore:
        return QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not restored.");
    case StoreError::Action::Save:
        break;
    }
    return QCoreApplication::translate("Vantle", "“%1” in the calendar “%2” was not saved.");
}

} // namespace

QString StoreError::message() const
{
    const QString what = calendar.isEmpty()
        ? sentenceOfItem(action).arg(inSentence(item))
        : sentenceOfItemInCalendar(action).arg(inSentence(item), inSentence(calendar));
    return reason.isEmpty() ? what : what + u"\n"_s + reason;
}
