// SPDX-License-Identifier: MIT
#include "KLVDatePicker.h"

#include "KLVKeyBindings.h"
#include "KLVMonthView.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

QString KLVDatePattern(const QLocale &locale)
{
    const QString order = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype day = order.indexOf(u'd');
    const qsizetype month = order.indexOf(u'M');
    const qsizetype year = order.indexOf(u'y');
    if (year < month)
        return u"ddd yyyy-MM-dd"_s;
    return day < month ? u"ddd d MMM yyyy"_s : u"ddd MMM d, yyyy"_s;
}

QString KLVTimePattern(const QLocale &locale)
{
    return locale.language() == QLocale::C ? u"HH:mm"_s : locale.timeFormat(QLocale::ShortFormat);
}

KLVDatePicker::KLVDatePicker(QWidget *parent)
    : QDateTimeEdit(parent)
{
    // Figures of a date run from left to right everywhere; Qt would turn the parts of the date round.
    setAlignment(isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft);
    setLayoutDirection(Qt::LeftToRight);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_hasPendingEdit = true; });
    connect(this, &QDateTimeEdit::dateTimeChanged, this, [this] { m_hasPendingEdit = false; });
}

QDateTime KLVDatePicker::dateValue() const
{
    const QDateTime shown = dateTime();
    if (shown == m_shown)
        return m_given;
    return m_showsTime ? shown : QDateTime(shown.date(), m_given.time());
}

void KLVDatePicker::setDateValue(const QDateTime &instant)
{
    m_given = instant.toLocalTime();
    setDateTime(m_given);
    m_shown = dateTime();
}

void KLVDatePicker::setShowsTime(bool showsTime)
{
    const QDateTime value = m_given.isValid() ? dateValue() : dateTime();
    m_showsTime = showsTime;
    const QString date = KLVDatePattern(locale());
    setDisplayFormat(showsTime ? date + u"   "_s + KLVTimePattern(locale()) : date);
    setDateValue(value);
}

void KLVDatePicker::offerMonth()
{
    setCalendarPopup(true);
    setCalendarWidget(new KLVMonthView(this)); // goes over to what unfolds
}

void KLVDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (!isReturn(*event) && event->key() != Qt::Key_Escape) {
        QDateTimeEdit::keyPressEvent(event);
        return;
    }

    const QScopedValueRollback guard(
        m_returnTookOverAnEdit, isReturn(*event) && std::exchange(m_hasPendingEdit, false));
    if (isReturn(*event))
        interpretText();
    else
        discardEdit();
    // Where no controller takes the message, the key itself goes on to the window or sheet.
    event->setAccepted(KLVKeyBindings::interpretKeyEvent(*event, this));
}

void KLVDatePicker::discardEdit()
{
    m_hasPendingEdit = false;
    const QSignalBlocker blocker(this);
    setDateTime(dateTime());
}

void KLVDatePicker::focusOutEvent(QFocusEvent *event)
{
    QDateTimeEdit::focusOutEvent(event);
    // A menu of the window only borrows the keyboard.
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    m_hasPendingEdit = false;
    Q_EMIT focusLeft();
}

void KLVDatePicker::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QDateTimeEdit::wheelEvent(event);
    else
        event->ignore();
}
