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

// What stands between the parts of a date.
bool isSeparator(const QKeyEvent &event)
{
    const QString text = event.text();
    return text.size() == 1 && text.front().isPrint() && !text.front().isLetterOrNumber();
}

// Behind year, month and day.
constexpr int weekdayAtTheEnd = 3;
// Behind weekday, day and month.
constexpr int yearSection = 3;

QTime toTheMinute(QTime time)
{
    return { time.hour(), time.minute() };
}

// A time that the clock skips on that day is counted with the offset from before it (RFC 5545, section 3.3.5).
QDateTime instantOf(QDate day, QTime time)
{
    QDateTime instant(day, time);
    if (instant.isValid())
        return instant;
    const int offset = QDateTime(day.addDays(-1), time).offsetFromUtc(); // seconds
    return QDateTime(day, time, Qt::OffsetFromUTC, offset).toLocalTime();
}

// Weekday, day, month and year in the order of the locale.
QString datePattern(const QLocale &locale)
{
    const QString order = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype day = order.indexOf(u'd');
    const qsizetype month = order.indexOf(u'M');
    const qsizetype year = order.indexOf(u'y');
    if (year < month)
        return u"yyyy-MM-dd ddd"_s;
    return day < month ? u"ddd d MMM yyyy"_s : u"ddd MMM d, yyyy"_s;
}

} // namespace

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
    lineEdit()->installEventFilter(this);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_hasPendingEdit = true; });
    connect(this, &QDateTimeEdit::dateTimeChanged, this, [this] { m_hasPendingEdit = false; });
}

QDateTime KLVDatePicker::dateValue() const
{
    const QDateTime shown = dateTime();
    if (shown == m_shown)
        return m_given;
    const bool isGivenTime = !m_showsTime || toTheMinute(shown.time()) == toTheMinute(m_given.time());
    if (isGivenTime || displayedSections().testFlag(SecondSection))
        return instantOf(shown.date(), isGivenTime ? m_given.time() : shown.time());
    return instantOf(shown.date(), toTheMinute(shown.time()));
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
    showPattern(datePattern(locale()));
    if (!canTypeAnotherYear())
        showPattern(displayFormat().section(u' ', 1, 3) + u" ddd"_s);
    setDateValue(value);
}

void KLVDatePicker::showPattern(const QString &date)
{
    setDisplayFormat(m_showsTime ? date + u"   "_s + KLVTimePattern(locale()) : date);
}

// In some languages the control takes a date for none whose weekday stands in front and belongs to
// another year. So it is asked, with a year that is being typed and one that has been.
bool KLVDatePicker::canTypeAnotherYear()
{
    const QSignalBlocker blocker(this);
    const QDateTime sample(QDate(2026, 11, 20), QTime(11, 0));
    setDateTime(sample);
    setCurrentSectionIndex(yearSection);
    for (const QString &year : { u"2"_s, u"2027"_s }) {
        QString pattern = displayFormat();
        QString typed = locale().toString(sample, pattern.replace(u"yyyy"_s, u'\'' + year + u'\''));
        int cursor = static_cast<int>(typed.indexOf(year) + year.size());
        if (weekdaySection() == 0 && validate(typed, cursor) == QValidator::Invalid)
            return false;
    }
    return true;
}

void KLVDatePicker::offerMonth()
{
    setCalendarPopup(true);
    setCalendarWidget(new KLVMonthView(this)); // goes over to what unfolds
}

void KLVDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (!isReturn(*event) && event->key() != Qt::Key_Escape) {
        if (!walkThroughSections(*event))
            typeIntoSection(event);
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

int KLVDatePicker::weekdaySection() const
{
    return displayFormat().startsWith(u"ddd"_s) ? 0 : weekdayAtTheEnd;
}

void KLVDatePicker::selectSection(int index, int step)
{
    m_hasTypedInSection = false;
    const int first = weekdaySection() == 0 ? 1 : 0;
    const int last = weekdaySection() == sectionCount() - 1 ? sectionCount() - 2 : sectionCount() - 1;
    setCurrentSectionIndex(qBound(first, index == weekdaySection() ? index + step : index, last));
    setSelectedSection(currentSection());
}

bool KLVDatePicker::walkThroughSections(const QKeyEvent &event)
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
        selectSection(currentSectionIndex() - 1, -1);
        return true;
    case Qt::Key_Right:
        selectSection(currentSectionIndex() + 1);
        return true;
    case Qt::Key_Home:
        selectSection(0);
        return true;
    case Qt::Key_End:
        selectSection(sectionCount() - 1);
        return true;
    default:
        return false;
    }
}

void KLVDatePicker::typeIntoSection(QKeyEvent *event)
{
    // A part that is complete has been left already: what ends it must not end the next one.
    if (isSeparator(*event) && !m_hasTypedInSection)
        return;
    const int section = currentSectionIndex();
    const QString before = text();
    QDateTimeEdit::keyPressEvent(event);
    if (currentSectionIndex() != section)
        selectSection(currentSectionIndex());
    else if (text() != before)
        m_hasTypedInSection = true;
}

bool KLVDatePicker::focusNextPrevChild(bool next)
{
    m_hasTypedInSection = false;
    // As if the weekday beside this part had been reached, so that the step goes beyond it.
    const int beside = currentSectionIndex() + (next ? 1 : -1);
    if (beside == weekdaySection())
        setCurrentSectionIndex(beside);
    return QDateTimeEdit::focusNextPrevChild(next);
}

void KLVDatePicker::focusInEvent(QFocusEvent *event)
{
    QDateTimeEdit::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason)
        selectSection(0);
    else if (event->reason() == Qt::BacktabFocusReason)
        selectSection(sectionCount() - 1);
}

bool KLVDatePicker::eventFilter(QObject *watched, QEvent *event)
{
    const bool wasUsed = QDateTimeEdit::eventFilter(watched, event);
    if (watched == lineEdit() && event->type() == QEvent::MouseButtonRelease && !lineEdit()->hasSelectedText())
        selectSection(currentSectionIndex());
    return wasUsed;
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
