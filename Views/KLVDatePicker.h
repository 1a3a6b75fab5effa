// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTimeEdit>

// A date picker that hands Return and Escape on, as "insertNewline" and
// "cancelOperation", to the controller of its window or sheet. Text that was
// typed is taken over first, so that Return acts on the date that is shown;
// Escape forgets it.
//
// As a date's value, what the control does not show (seconds, a fraction, the time
// of an all-day event, which of two equal hours it is) stays as it was given, as
// long as the shown part is not changed.
class KLVDatePicker final : public QDateTimeEdit
{
    Q_OBJECT

public:
    explicit KLVDatePicker(QWidget *parent = nullptr);

    // In local time.
    QDateTime dateValue() const;
    void setDateValue(const QDateTime &instant);

    // Shows weekday, day, month and year in the order of the picker's locale, and the time or not.
    bool showsTime() const { return m_showsTime; }
    void setShowsTime(bool showsTime);

    // Also offers a month to choose a day from, at an arrow.
    void offerMonth();

    // Whether something was typed that has not become the picker's date yet.
    bool hasPendingEdit() const { return m_hasPendingEdit; }
    // Whether the Return that is being handed on took over what had been typed.
    bool returnTookOverAnEdit() const { return m_returnTookOverAnEdit; }

Q_SIGNALS:
    // The keyboard went elsewhere; what had been typed is taken over.
    void focusLeft();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    // Only the picker with the focus is turned by the wheel: passing over it changes nothing.
    void wheelEvent(QWheelEvent *event) override;

private:
    void discardEdit();

    bool m_hasPendingEdit = false;
    bool m_returnTookOverAnEdit = false;
    bool m_showsTime = true;
    QDateTime m_given; // as set from outside
    QDateTime m_shown; // what the control made of it
};

// How a picker writes a date in a locale, in the letters of QLocale::toString().
QString KLVDatePattern(const QLocale &locale);
// The same for a time. The C locale is no person's: it would show seconds.
QString KLVTimePattern(const QLocale &locale);
