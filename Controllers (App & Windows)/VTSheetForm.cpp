// SPDX-License-Identifier: MIT
#include "VTSheetForm.h"

#include <KLVDatePicker.h>
#include <KLVMetrics.h>
#include <KLVReadingDirection.h>
#include <KLVSheet.h>

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr qreal sideMargin = 18;
constexpr qreal endMargin = 16;
constexpr qreal captionGap = 12;
constexpr qreal rowGap = 8;
constexpr qreal rowHeight = 28;
constexpr qreal gapAboveButtons = 16;
constexpr qreal gapBetweenButtons = 8;
constexpr qreal topCaptionInset = 8; // its base line is that of the first line beside it
// The oldest day that the control can show.
const QDate earliestDate(100, 1, 1);
constexpr int captionPixels = 12;
constexpr int titlePixels = 15;

int length(double points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

} // namespace

void VTSheetForm::setUpSheet(KLVSheet &sheet, double width, const QString &title)
{
    sheet.setWindowTitle(title);
    sheet.setAccessibleName(title);
    sheet.setMinimumWidth(length(width));
    QLayout *const layout = sheet.layout();
    layout->setContentsMargins(length(sideMargin), length(endMargin), length(sideMargin), length(endMargin));
    layout->setSpacing(length(gapAboveButtons));
    auto *const fields = sheet.findChild<QGridLayout *>(u"fieldsLayout"_s);
    fields->setHorizontalSpacing(length(captionGap));
    fields->setVerticalSpacing(length(rowGap));
    for (auto *const row : sheet.findChildren<QHBoxLayout *>())
        row->setSpacing(length(gapBetweenButtons));
}

void VTSheetForm::setUpCaption(QLabel &caption, const QString &text)
{
    setUpNote(caption);
    caption.setText(text);
    if (caption.alignment().testFlag(Qt::AlignTop))
        caption.setContentsMargins(0, length(topCaptionInset), 0, 0);
}

void VTSheetForm::setUpNote(QLabel &note)
{
    note.setTextFormat(Qt::PlainText);
    note.setFont(KLVMetrics(QApplication::font()).font(captionPixels));
    // The palette's dim text.
    note.setForegroundRole(QPalette::PlaceholderText);
    KLVFollowReadingDirection(note);
}

void VTSheetForm::setUpValue(QLabel &value)
{
    value.setTextFormat(Qt::PlainText);
    value.setMinimumHeight(length(rowHeight));
    KLVFollowReadingDirection(value);
}

void VTSheetForm::setUpTitleField(QLineEdit &field)
{
    field.setFont(KLVMetrics(QApplication::font()).font(titlePixels, QFont::DemiBold));
}

void VTSheetForm::setUpPicker(KLVDatePicker &picker, const QString &name)
{
    setName(picker, name);
    picker.setMinimumDate(earliestDate);
    picker.offerMonth();
    picker.setFocusPolicy(Qt::StrongFocus);
    picker.setShowsTime(true);
}

void VTSheetForm::setName(QWidget &control, const QString &name)
{
    control.setAccessibleName(name);
}

std::optional<QString> VTSheetForm::presentText(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

QString VTSheetForm::oneLine(const std::optional<QString> &text)
{
    QString line = text.value_or(QString());
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator
            || character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return line;
}

QString VTSheetForm::withoutMnemonic(QString text)
{
    return text.replace(u'&', u"&&"_s);
}
