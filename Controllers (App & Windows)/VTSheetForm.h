// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

class KLVDatePicker;
class KLVSheet;
class QLabel;
class QLineEdit;
class QWidget;

// How the forms of the sheets are dressed, the same in all of them.
namespace VTSheetForm
{

// Margins, gaps and the least width, in points at the person's font; the name of the sheet.
void setUpSheet(KLVSheet &sheet, double width, const QString &title);
// A caption in dim, smaller text. One beside something of several lines stands at its first line.
void setUpCaption(QLabel &caption, const QString &text);
// The same look for a sentence.
void setUpNote(QLabel &note);
// A line that stands where other rows have a field.
void setUpValue(QLabel &value);
// The one loud field.
void setUpTitleField(QLineEdit &field);
// With a calendar to open, and all that is needed to show any date.
void setUpPicker(KLVDatePicker &picker, const QString &name);
// What assistive technology calls a control.
void setName(QWidget &control, const QString &name);

// The text of a field as a record has it: nothing for an empty one.
std::optional<QString> presentText(const QString &text);
// On one line, as a field can show it.
QString oneLine(const std::optional<QString> &text);
// For buttons, where a single & would stand for a key.
QString withoutMnemonic(QString text);

} // namespace VTSheetForm
