// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QAction;
class QMenu;

// The letters by which entries of a menu are chosen, given by the program: each
// entry gets one of its own, in every language and with titles from calendars
// in it, and nobody has to think of two that are the same.

// The texts with a & before the letter of each: the initial of a word where one is free, else any free letter. A text
// without a free letter gets none. Marks that are in the texts are taken away; && stays what it is, a plain &.
QStringList VTWithMnemonics(const QStringList &texts);

// Does this to what the menu shows, whenever it opens.
void VTGiveMnemonics(QMenu &menu);
// A text that the action has already keeps its letter: the menu may be open.
void VTSetTextOfAction(QAction &action, const QString &text);
