// SPDX-License-Identifier: MIT
#include "VTMnemonics.h"

#include <QAction>
#include <QMenu>
#include <QSet>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

QString withoutMark(const QString &text)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != u'&') {
            plain += text.at(i);
        } else if (i + 1 < text.size() && text.at(i + 1) == u'&') {
            plain += u"&&"_s;
            ++i;
        }
    }
    return plain;
}

// Of a letter that is still free; those at the beginning of a word first.
std::optional<qsizetype> placeFor(const QString &text, const QSet<QChar> &used)
{
    std::optional<qsizetype> inside;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text.at(i).isLetterOrNumber() || used.contains(text.at(i).toLower()))
            continue;
        if (i == 0 || text.at(i - 1).isSpace())
            return i;
        if (!inside)
            inside = i;
    }
    return inside;
}

} // namespace

QStringList VTWithMnemonics(const QStringList &texts)
{
    QSet<QChar> used;
    QStringList result;
    for (const QString &text : texts) {
        QString marked = withoutMark(text);
        if (const auto place = placeFor(marked, used)) {
            used.insert(marked.at(*place).toLower());
            marked.insert(*place, u'&');
        }
        result << marked;
    }
    return result;
}

void VTGiveMnemonics(QMenu &menu)
{
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] {
        QList<QAction *> shown;
        QStringList texts;
        for (QAction *action : menu.actions()) {
            if (action->isSeparator() || !action->isVisible())
                continue;
            shown << action;
            texts << action->text();
        }
        const QStringList marked = VTWithMnemonics(texts);
        for (qsizetype i = 0; i < shown.size(); ++i)
            shown.at(i)->setText(marked.at(i));
    });
}

void VTSetTextOfAction(QAction &action, const QString &text)
{
    if (withoutMark(action.text()) != text)
        action.setText(text);
}
