// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>

// A message box over the active window, for texts from calendars: nothing in
// them acts as markup, and everything in it has a name for assistive technology.
class PlainMessageBox final : public QMessageBox
{
    Q_OBJECT

public:
    // A warning or a question.
    PlainMessageBox(QMessageBox::Icon icon, const QString &text);

    // In the language of the other texts, which the toolkit need not have.
    QPushButton *addOk();
    QPushButton *addCancel();
};
