// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <KLVDatePicker.h>
#include <ScopedTimeZone.h>

#include <QAccessible>
#include <QCalendarWidget>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{

const QDate friday(2026, 11, 20);

QDateTime at(QTime time, QDate day = friday)
{
    return { day, time };
}

// In a window, with the keyboard, at Friday, 20 November 2026, 11:00.
struct Picker : QWidget {
    KLVDatePicker *picker = new KLVDatePicker(this);
    QWidget *other = new QLineEdit(this);

    explicit Picker(const QLocale &locale = QLocale(QLocale::English, QLocale::UnitedKingdom))
    {
        picker->setLocale(locale);
        picker->offerMonth();
        picker->setShowsTime(true);
        picker->setDateValue(at(QTime(11, 0)));
        show();
        activateWindow();
        picker->setFocus();
    }

    void turnWheel() const
    {
        QWheelEvent wheel(QPointF(5, 5), picker->mapToGlobal(QPointF(5, 5)), {}, { 0, 120 }, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(picker, &wheel);
    }
};

} // namespace

class KLVDatePickerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dateAndTimeFollowTheLocale_data();
    void dateAndTimeFollowTheLocale();
    void calendarBeginsWithTheLocalesFirstDay_data();
    void calendarBeginsWithTheLocalesFirstDay();
    void whatIsNotShownStays();
    void changedTimeIsOfWholeMinutes();
    void changedDayKeepsTheTimeToTheFraction();
    void secondOfTwoEqualHoursStays();
    void aTimeThatTheClockSkipsIsTheOneAfterTheGap_data();
    void aTimeThatTheClockSkipsIsTheOneAfterTheGap();
    void aTimeThatIsNotShownStaysWhenTheDayChanges();
    void timeComesBackWhenItIsShownAgain();
    void keysEditTheDate();
    void arrowsWalkThroughTheParts();
    void tabWalksThroughThePartsAndOut();
    void aClickSelectsThePartUnderIt();
    void anotherYearIsTypedInEveryLanguage_data();
    void anotherYearIsTypedInEveryLanguage();
    void aDateIsTypedAsItIsWritten_data();
    void aDateIsTypedAsItIsWritten();
    void wheelTurnsOnlyThePickerWithTheKeyboard();
    void typedTextIsPendingUntilItIsTakenOver();
    void escapeForgetsWhatWasTyped();
    void leavingTakesOverWhatWasTyped();
    void aMenuOnlyBorrowsTheKeyboard();
    void assistiveTechnologyTypesADate();
    void figuresRunFromLeftToRightEverywhere();
};

void KLVDatePickerTest::dateAndTimeFollowTheLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");

    QTest::newRow("Britain") << QLocale(u"en_GB"_s) << u"Fri 20 Nov 2026   15:30"_s;
    QTest::newRow("United States") << QLocale(u"en_US"_s) << u"Fri Nov 20, 2026   3:30 PM"_s;
    QTest::newRow("Germany") << QLocale(u"de_DE"_s) << u"Fr. 20 Nov. 2026   15:30"_s;
    QTest::newRow("Sweden") << QLocale(u"sv_SE"_s) << u"2026-11-20 fre   15:30"_s;
    QTest::newRow("Canada, in French") << QLocale(u"fr_CA"_s) << u"2026-11-20 ven.   15 h 30"_s;
}

void KLVDatePickerTest::dateAndTimeFollowTheLocale()
{
    QFETCH(const QLocale, locale);
    const Picker window(locale);

    window.picker->setDateValue(at(QTime(15, 30)));

    // Some locales part the hour from AM and PM by a narrow blank.
    QTEST(window.picker->text().replace(QChar(0x202F), u' ').replace(QChar::Nbsp, u' '), "text");
}

void KLVDatePickerTest::calendarBeginsWithTheLocalesFirstDay_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<Qt::DayOfWeek>("first");

    QTest::newRow("United States") << QLocale(u"en_US"_s) << Qt::Sunday;
    QTest::newRow("Germany") << QLocale(u"de_DE"_s) << Qt::Monday;
    QTest::newRow("Egypt") << QLocale(u"ar_EG"_s) << Qt::Saturday;
}

void KLVDatePickerTest::calendarBeginsWithTheLocalesFirstDay()
{
    QFETCH(const QLocale, locale);
    const QLocale previous;
    QLocale::setDefault(locale);

    const Picker window(locale);
    const Qt::DayOfWeek first = window.picker->calendarWidget()->firstDayOfWeek();
    QLocale::setDefault(previous);

    QTEST(first, "first");
}

void KLVDatePickerTest::whatIsNotShownStays()
{
    const Picker window;
    const QDateTime exact = at(QTime(11, 0, 37, 250));

    window.picker->setDateValue(exact);
    QCOMPARE(window.picker->dateValue(), exact);
}

void KLVDatePickerTest::changedTimeIsOfWholeMinutes()
{
    const Picker window;
    window.picker->setDateValue(at(QTime(11, 0, 37, 250)));

    window.picker->setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClick(window.picker, Qt::Key_Up);

    QCOMPARE(window.picker->dateValue(), at(QTime(12, 0)));
}

void KLVDatePickerTest::changedDayKeepsTheTimeToTheFraction()
{
    const Picker window;
    window.picker->setDateValue(at(QTime(11, 0, 37, 250)));

    window.picker->setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::keyClick(window.picker, Qt::Key_Up);

    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0, 37, 250), QDate(2026, 12, 20)));
}

void KLVDatePickerTest::secondOfTwoEqualHoursStays()
{
    const ScopedTimeZone zone("Europe/Berlin");
    const Picker window;
    const QDateTime second = QDateTime(QDate(2026, 10, 25), QTime(1, 30), Qt::UTC);

    window.picker->setDateValue(second);

    QCOMPARE(window.picker->dateValue().toMSecsSinceEpoch(), second.toMSecsSinceEpoch());
}

void KLVDatePickerTest::aTimeThatTheClockSkipsIsTheOneAfterTheGap_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDateTime>("dayBefore");
    QTest::addColumn<bool>("showsTime");
    QTest::addColumn<QDateTime>("instant");

    QTest::newRow("in the night") << QByteArray("Europe/Berlin") << at(QTime(2, 30), QDate(2026, 3, 28)) << true
                                  << QDateTime(QDate(2026, 3, 29), QTime(1, 30), Qt::UTC);
    QTest::newRow("midnight") << QByteArray("Africa/Cairo") << at(QTime(0, 0), QDate(2026, 4, 23)) << true
                              << QDateTime(QDate(2026, 4, 23), QTime(22, 0), Qt::UTC);
    QTest::newRow("midnight, not shown") << QByteArray("Africa/Cairo") << at(QTime(0, 0), QDate(2026, 4, 23)) << false
                                         << QDateTime(QDate(2026, 4, 23), QTime(22, 0), Qt::UTC);
}

void KLVDatePickerTest::aTimeThatTheClockSkipsIsTheOneAfterTheGap()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const QDateTime, dayBefore);
    QFETCH(const bool, showsTime);
    QFETCH(const QDateTime, instant);
    const ScopedTimeZone scope(zone);
    const Picker window;
    window.picker->setShowsTime(showsTime);
    window.picker->setDateValue(QDateTime(dayBefore.date(), dayBefore.time()));

    window.picker->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClick(window.picker, Qt::Key_Up);

    QVERIFY(window.picker->dateValue().isValid());
    QCOMPARE(window.picker->dateValue().toUTC(), instant);
    QCOMPARE(window.picker->dateValue().date(), dayBefore.date().addDays(1));
}

void KLVDatePickerTest::aTimeThatIsNotShownStaysWhenTheDayChanges()
{
    const Picker window;
    window.picker->setShowsTime(false);
    QVERIFY(!window.picker->displayedSections().testFlag(QDateTimeEdit::HourSection));

    window.picker->setSelectedSection(QDateTimeEdit::DaySection);
    QTest::keyClick(window.picker, Qt::Key_Up);

    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0), friday.addDays(1)));
}

void KLVDatePickerTest::timeComesBackWhenItIsShownAgain()
{
    const Picker window;

    window.picker->setShowsTime(false);
    window.picker->setShowsTime(true);

    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0)));
    QCOMPARE(window.picker->text(), u"Fri 20 Nov 2026   11:00"_s);
}

void KLVDatePickerTest::keysEditTheDate()
{
    const Picker window;
    window.picker->setSelectedSection(QDateTimeEdit::HourSection);

    QTest::keyClicks(window.picker, u"09"_s);
    QCOMPARE(window.picker->dateValue(), at(QTime(9, 0)));

    QTest::keyClick(window.picker, Qt::Key_Down);
    QCOMPARE(window.picker->dateValue().date(), friday);
}

void KLVDatePickerTest::arrowsWalkThroughTheParts()
{
    const Picker window;
    const auto selected = [&] { return window.picker->findChild<QLineEdit *>()->selectedText(); };

    QTest::keyClick(window.picker, Qt::Key_Home);
    QStringList walked { selected() };
    for (int step = 0; step < 5; ++step) {
        QTest::keyClick(window.picker, Qt::Key_Right);
        walked.append(selected());
    }
    QCOMPARE(walked, (QStringList { u"20"_s, u"Nov"_s, u"2026"_s, u"11"_s, u"00"_s, u"00"_s }));

    QTest::keyClick(window.picker, Qt::Key_Left);
    QCOMPARE(selected(), u"11"_s);
    QTest::keyClick(window.picker, Qt::Key_End);
    QCOMPARE(selected(), u"00"_s);
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0)));
}

void KLVDatePickerTest::tabWalksThroughThePartsAndOut()
{
    const Picker window;
    QTRY_VERIFY(window.picker->hasFocus());
    window.other->setFocus();
    QWidget::setTabOrder(window.picker, window.other);

    QTest::keyClick(window.other, Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(window.picker->hasFocus());
    QTest::keyClick(window.picker, Qt::Key_Home);
    for (int part = 0; part < 4; ++part)
        QTest::keyClick(window.picker, Qt::Key_Tab);
    QVERIFY(window.picker->hasFocus());
    QCOMPARE(window.picker->currentSection(), QDateTimeEdit::MinuteSection);

    QTest::keyClick(window.picker, Qt::Key_Tab);
    QVERIFY(window.other->hasFocus());
}

void KLVDatePickerTest::aClickSelectsThePartUnderIt()
{
    const Picker window;
    window.picker->resize(window.picker->sizeHint());
    auto *const field = window.picker->findChild<QLineEdit *>();
    const QString text = field->text();
    const auto clickAt = [&](const QString &part) {
        const int x = field->fontMetrics().horizontalAdvance(text.left(text.indexOf(part)))
            + field->fontMetrics().horizontalAdvance(part) / 2;
        QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(x + 2, field->height() / 2));
    };

    clickAt(u"Nov"_s);
    QCOMPARE(field->selectedText(), u"Nov"_s);
    clickAt(u"2026"_s);
    QTest::keyClicks(window.picker, u"2027"_s);
    QCOMPARE(window.picker->dateValue().date(), QDate(2027, 11, 20));
}

void KLVDatePickerTest::anotherYearIsTypedInEveryLanguage_data()
{
    QTest::addColumn<QLocale>("locale");

    for (const QString &name : { u"ar_EG"_s, u"cs_CZ"_s, u"de_DE"_s, u"en_GB"_s, u"en_US"_s, u"es_ES"_s, u"fi_FI"_s,
             u"fr_CA"_s, u"fr_FR"_s, u"he_IL"_s, u"hu_HU"_s, u"it_IT"_s, u"ja_JP"_s, u"ko_KR"_s, u"nl_NL"_s, u"pl_PL"_s,
             u"pt_BR"_s, u"ru_RU"_s, u"sv_SE"_s, u"th_TH"_s, u"tr_TR"_s, u"uk_UA"_s, u"vi_VN"_s, u"zh_CN"_s })
        QTest::newRow(qPrintable(name)) << QLocale(name);
}

void KLVDatePickerTest::anotherYearIsTypedInEveryLanguage()
{
    QFETCH(const QLocale, locale);
    const Picker window(locale);

    QTest::keyClick(window.picker, Qt::Key_Home);
    while (window.picker->currentSection() != QDateTimeEdit::YearSection)
        QTest::keyClick(window.picker, Qt::Key_Right);
    QTest::keyClicks(window.picker, u"2027"_s);

    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0), QDate(2027, 11, 20)));
}

void KLVDatePickerTest::aDateIsTypedAsItIsWritten_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QDateTime>("instant");

    const QLocale british(u"en_GB"_s);
    const QDateTime wanted(QDate(2027, 12, 3), QTime(9, 45));
    QTest::newRow("as it is shown") << british << u"3 Dec 2027   09:45"_s << wanted;
    QTest::newRow("one blank") << british << u"3 Dec 2027 09:45"_s << wanted;
    QTest::newRow("without anything between") << british << u"03Dec20270945"_s << wanted;
    QTest::newRow("with points") << british << u"03.Dec.2027 09:45"_s << wanted;
    QTest::newRow("the day alone") << british << u"3 "_s << at(QTime(11, 0), QDate(2026, 11, 3));
    QTest::newRow("month first") << QLocale(u"en_US"_s) << u"Dec 3, 2027   9:45"_s << wanted;
    QTest::newRow("year first") << QLocale(u"sv_SE"_s) << u"2027-12-03   09:45"_s << wanted;
    QTest::newRow("weekday behind") << QLocale(u"pt_BR"_s) << u"20 dez. 2027   09:45"_s
                                    << QDateTime(QDate(2027, 12, 20), QTime(9, 45));
}

void KLVDatePickerTest::aDateIsTypedAsItIsWritten()
{
    QFETCH(const QLocale, locale);
    QFETCH(const QString, typed);
    const Picker window(locale);

    QTest::keyClick(window.picker, Qt::Key_Home);
    QTest::keyClicks(window.picker, typed);
    QTest::keyClick(window.picker, Qt::Key_Return);

    QTEST(window.picker->dateValue(), "instant");
}

void KLVDatePickerTest::wheelTurnsOnlyThePickerWithTheKeyboard()
{
    const Picker window;
    QTRY_VERIFY(window.picker->hasFocus());
    window.other->setFocus();

    window.turnWheel();
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0)));

    window.picker->setFocus();
    window.picker->setSelectedSection(QDateTimeEdit::DaySection);
    window.turnWheel();
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0), friday.addDays(1)));
}

void KLVDatePickerTest::typedTextIsPendingUntilItIsTakenOver()
{
    const Picker window;
    window.picker->setKeyboardTracking(false);
    QTest::keyClick(window.picker, Qt::Key_Home);

    QTest::keyClicks(window.picker, u"2"_s);
    QVERIFY(window.picker->hasPendingEdit());
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0)));

    QTest::keyClick(window.picker, Qt::Key_Return);
    QVERIFY(!window.picker->hasPendingEdit());
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0), QDate(2026, 11, 2)));
}

void KLVDatePickerTest::escapeForgetsWhatWasTyped()
{
    const Picker window;
    window.picker->setKeyboardTracking(false);
    QTest::keyClick(window.picker, Qt::Key_Home);
    QTest::keyClicks(window.picker, u"2"_s);

    QTest::keyClick(window.picker, Qt::Key_Escape);

    QVERIFY(!window.picker->hasPendingEdit());
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0)));
    QCOMPARE(window.picker->text(), u"Fri 20 Nov 2026   11:00"_s);
}

void KLVDatePickerTest::leavingTakesOverWhatWasTyped()
{
    const Picker window;
    QTRY_VERIFY(window.picker->hasFocus());
    const QSignalSpy left(window.picker, &KLVDatePicker::focusLeft);
    window.picker->setKeyboardTracking(false);
    QTest::keyClick(window.picker, Qt::Key_Home);
    QTest::keyClicks(window.picker, u"2"_s);

    window.other->setFocus();

    QCOMPARE(left.size(), 1);
    QCOMPARE(window.picker->dateValue(), at(QTime(11, 0), QDate(2026, 11, 2)));
}

void KLVDatePickerTest::aMenuOnlyBorrowsTheKeyboard()
{
    const Picker window;
    QTRY_VERIFY(window.picker->hasFocus());
    const QSignalSpy left(window.picker, &KLVDatePicker::focusLeft);

    QFocusEvent toMenu(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(window.picker, &toMenu);

    QCOMPARE(left.size(), 0);
}

void KLVDatePickerTest::assistiveTechnologyTypesADate()
{
    const Picker window;
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(window.picker);
    QVERIFY(accessible->editableTextInterface());

    accessible->editableTextInterface()->replaceText(
        0, static_cast<int>(window.picker->text().size()), u"Sat 21 Nov 2026   09:15"_s);

    QCOMPARE(window.picker->dateValue(), at(QTime(9, 15), friday.addDays(1)));
}

void KLVDatePickerTest::figuresRunFromLeftToRightEverywhere()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const Picker window;
    QApplication::setLayoutDirection(Qt::LeftToRight);

    QCOMPARE(window.picker->layoutDirection(), Qt::LeftToRight);
    QVERIFY(window.picker->alignment().testFlag(Qt::AlignRight));
}

VANTLE_TEST(KLVDatePickerTest)
#include "KLVDatePickerTest.moc"
