// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTimeEdit>

// A date picker that hands Return and Escape on, as "insertNewline" and
// "cancelOperation", to the controller of its window or sheet. Text that was
// typed is taken over first, so that Return acts on the date that is shown;
// Escape forgets it.
//
// The parts of a date are walked through by Left, Right, Home, End and Tab, and
// each is typed over: a click selects the part under it. The weekday follows from
// the others and is passed by. A date can also be typed as it is written: a blank
// or point after a part that is complete is not taken for one more part.
//
// As a date's value, what the control does not show (seconds, a fraction, the time
// of an all-day event, which of two equal hours it is) stays as it was given, as
// long as the shown part is not changed. A time that is changed is one of whole
// minutes.
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

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    // The keyboard went elsewhere; what had been typed is taken over.
    void focusLeft();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    // Only the picker with the focus is turned by the wheel: passing over it changes nothing.
    void wheelEvent(QWheelEvent *event) override;

private:
    void showPattern(const QString &date);
    bool canTypeAnotherYear();
    void discardEdit();
    int weekdaySection() const;
    // The weekday's neighbour in the direction of the step, when it is the weekday's.
    void selectSection(int index, int step = 1);
    bool walkThroughSections(const QKeyEvent &event);
    void typeIntoSection(QKeyEvent *event);

    bool m_hasTypedInSection = false;
    bool m_hasPendingEdit = false;
    bool m_returnTookOverAnEdit = false;
    bool m_showsTime = true;
    QDateTime m_given; // as set from outside
    QDateTime m_shown; // what the control made of it
};

// How a picker writes a time in a locale, in the letters of QLocale::toString(). The C locale is no person's: it would
// show seconds.
QString KLVTimePattern(const QLocale &locale);
