// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPixmap>

// What the programs that take pictures of windows have in common.

// English texts in Inter of 13 pixels, in our own style. False, and told, without that font.
bool dressForPictures();
void setFontPixels(int size);

// As the window stands on the screen once it is shown, without a caret.
QPixmap pictureOf(QWidget &window);
// In a row, on the colour of a desktop.
QPixmap beside(const QList<QPixmap> &pictures);
