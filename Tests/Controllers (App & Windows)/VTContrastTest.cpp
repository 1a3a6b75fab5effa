// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"
#include "MainWindowFixture.h"
#include "PixelChecks.h"

#include <CrispImage.h>
#include <DesktopAlerts.h>
#include <DesktopWorkspace.h>
#include <KLVAccordionView.h>
#include <KLVBarButton.h>
#include <KLVKeyCaps.h>
#include <KLVNotice.h>
#include <KLVStatusLabel.h>
#include <KLVStyle.h>
#include <KLVTableView.h>
#include <ProgramWindows.h>
#include <TestRegistry.h>
#include <VTShortcutsWindow.h>
#include <VTStatusbarMenu.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStyleOption>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

constexpr int ratio = 4;
constexpr double wantedOfSigns = 3; // what is no text

// Inside of a control's line and ring.
QRect insideOf(const QWidget &control)
{
    constexpr int line = 4;
    return control.rect().adjusted(line, line, -line, -line);
}

// Beside the drawing of a box, in the middle of the control.
QRect labelOf(const QAbstractButton &button)
{
    const int box = button.style()->pixelMetric(QStyle::PM_IndicatorWidth) + 4;
    return button.rect().adjusted(box, 0, 0, 0);
}

struct Text {
    QString name;
    QRect rect; // in the window
    bool isSign = false;
};

// Where a control that can be used shows text.
std::optional<Text> textOf(const QWidget &control)
{
    if (const auto *recorder = qobject_cast<const SRRecorderControl *>(&control))
        return Text { recorder->objectName(), insideOf(*recorder) };
    if (const auto *label = qobject_cast<const QLabel *>(&control))
        return label->text().isEmpty() ? std::nullopt : std::optional(Text { label->text(), label->rect() });
    if (qobject_cast<const QCheckBox *>(&control) || qobject_cast<const QRadioButton *>(&control)) {
        const auto &button = dynamic_cast<const QAbstractButton &>(control);
        return Text { button.text(), labelOf(button) };
    }
    if (const auto *button = qobject_cast<const KLVBarButton *>(&control))
        return Text { button->accessibleName(), insideOf(*button), button->text().isEmpty() };
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control); button && !button->text().isEmpty())
        return Text { button->text(), insideOf(*button) };
    if (const auto *line = qobject_cast<const QLineEdit *>(&control)) {
        const bool isEmpty = line->text().isEmpty() && line->placeholderText().isEmpty();
        return isEmpty ? std::nullopt : std::optional(Text { line->objectName(), insideOf(*line) });
    }
    if (const auto *popUp = qobject_cast<const QComboBox *>(&control)) {
        const int icon = popUp->currentIndex() < 0 || popUp->itemIcon(popUp->currentIndex()).isNull() ? 0 : 28;
        return Text { popUp->objectName(), insideOf(*popUp).adjusted(icon, 0, -28, 0) };
    }
    if (const auto *notes = qobject_cast<const QPlainTextEdit *>(&control)) {
        const bool isEmpty = notes->toPlainText().isEmpty() && notes->placeholderText().isEmpty();
        return isEmpty ? std::nullopt : std::optional(Text { notes->objectName(), insideOf(*notes) });
    }
    if (qobject_cast<const KLVKeyCaps *>(&control))
        return Text { control.accessibleName(), insideOf(control) };
    return std::nullopt;
}

QImage pictureOf(QWidget &window)
{
    QCoreApplication::processEvents();
    QImage image = crispImage(QSizeF(window.size()), ratio);
    window.render(&image);
    return image;
}

double contrastIn(const QImage &image, const QRect &rect)
{
    return measuredContrast(image.copy(QRect(rect.topLeft() * ratio, rect.size() * ratio)));
}

// What is too faint in a window; `count` is how many texts have been looked at.
QStringList faintTexts(QWidget &window, Scheme scheme, int &count)
{
    const QImage image = pictureOf(window);
    QStringList faint;
    for (const QWidget *control : window.findChildren<QWidget *>()) {
        if (!control->isVisible() || !control->isEnabled() || control->window() != &window)
            continue;
        std::optional<Text> text = textOf(*control);
        if (!text)
            continue;
        text->rect.moveTopLeft(control->mapTo(&window, text->rect.topLeft()));
        const double contrast = contrastIn(image, text->rect & window.rect());
        if (contrast < (text->isSign ? wantedOfSigns : wantedContrast(scheme)))
            faint.append(u"%1: %2"_s.arg(text->name).arg(contrast));
        ++count;
    }
    return faint;
}

// The same for an open menu, with the pointer on each of its entries in turn.
QStringList faintEntries(QMenu &menu, Scheme scheme)
{
    QStringList faint;
    for (QAction *pointedAt : menu.actions()) {
        menu.setActiveAction(pointedAt);
        const QImage image = pictureOf(menu);
        for (QAction *action : menu.actions()) {
            if (action->isSeparator() || !action->isEnabled() || !action->isVisible())
                continue;
            const double contrast = contrastIn(image, menu.actionGeometry(action).adjusted(8, 2, -8, -2));
            if (contrast < wantedContrast(scheme))
                faint.append(u"%1: %2"_s.arg(action->text()).arg(contrast));
        }
    }
    return faint;
}

} // namespace
Q_DECLARE_METATYPE(Scheme)

// Every text as it stands on the screen reaches 4.5 : 1, for people who asked for high contrast 7 : 1. What cannot be
// used now may be fainter. The rows of the lists have a test of their own.
class VTContrastTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();

    void mainWindow();
    void emptyLists();
    void menus();
    void windowOfShortcuts();
    void eventSheet();
    void taskSheet();
    void alarmSheet();
    void menuOfTheStatusIcon();
    void preferences();
    void windowsOnTheProgram();
    void alertsAndQuestions();

private:
    QPalette m_before;
    Scheme m_scheme = Scheme::Light;
};

void VTContrastTest::initTestCase_data()
{
    QTest::addColumn<Scheme>("scheme");
    QTest::newRow("light") << Scheme::Light;
    QTest::newRow("dark") << Scheme::Dark;
    QTest::newRow("high contrast, light") << Scheme::HighContrastLight;
    QTest::newRow("high contrast, dark") << Scheme::HighContrastDark;
}

void VTContrastTest::init()
{
    QFETCH_GLOBAL(Scheme, scheme);
    m_scheme = scheme;
    m_before = QApplication::palette();
    QVERIFY(KLVStyle::dressApplication());
    QApplication::setPalette(paletteOf(scheme));
}

void VTContrastTest::cleanup()
{
    QApplication::setPalette(m_before);
}

void VTContrastTest::mainWindow()
{
    MainWindowFixture fixture;
    fixture.addEvent("Tea");
    fixture.wakeWithWindow();
    fixture.controller->setShowCalendarDrawer(true);
    fixture.window->findChild<KLVNotice *>()->say(u"Personal calendars may be out of date."_s);
    int count = 0;

    QCOMPARE(faintTexts(*fixture.window, m_scheme, count).join(u'\n'), QString());

    // Date, two headings, the line, seven buttons, three of the drawer with its field.
    QVERIFY2(count >= 13, qPrintable(QString::number(count)));
}

void VTContrastTest::emptyLists()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    const QImage image = pictureOf(*fixture.window);

    for (KLVAccordionView *list : { fixture.window->eventsAccordion(), fixture.window->tasksAccordion() }) {
        const QRect strip(list->mapTo(fixture.window.get(), QPoint(20, 2)), QSize(list->width() - 40, 17));
        QVERIFY(contrastIn(image, strip) >= wantedContrast(m_scheme));
    }
}

void VTContrastTest::menus()
{
    MainWindowFixture fixture;
    fixture.addEvent("Tea");
    fixture.wakeWithWindow();

    for (QMenu *menu : fixture.window->findChildren<QMenu *>()) {
        menu->popup(QPoint(0, 0));
        QCOMPARE(faintEntries(*menu, m_scheme).join(u'\n'), QString());
        menu->close();
    }
}

void VTContrastTest::windowOfShortcuts()
{
    VTShortcutsWindow window;
    window.resize(420, 1000);
    window.show();
    int count = 0;

    QCOMPARE(faintTexts(window, m_scheme, count).join(u'\n'), QString());

    QVERIFY(count > 50);
}

void VTContrastTest::eventSheet()
{
    EditSheetFixture fixture;
    const CalEventPtr event
        = makeOccurrence(u"1"_s, u"Lunch"_s, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:00"));
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=WEEKLY" });
    event->setNotes(u"Bring bread."_s);
    event->setLocation(u"Harbour"_s);
    event->setAlarms({ makeAlarm(-900), makeAlarm(-3600) });
    fixture.open(event);
    KLVSheet *const sheet = fixture.events.window();
    int count = 0;

    QCOMPARE(faintTexts(*sheet, m_scheme, count).join(u'\n'), QString());

    QVERIFY2(count >= 20, qPrintable(QString::number(count)));
    const auto *const table = sheet->findChild<KLVTableView *>();
    const QImage image = pictureOf(*sheet);
    for (int row = 0; row < 2; ++row) {
        QRect cell = table->visualRect(table->model()->index(row, KLVTableView::textColumn));
        cell.moveTopLeft(table->viewport()->mapTo(sheet, cell.topLeft()));
        QVERIFY(contrastIn(image, cell) >= wantedContrast(m_scheme));
    }
}

void VTContrastTest::taskSheet()
{
    EditSheetFixture fixture;
    fixture.open(makeTaskDue(u"2"_s, u"Milk"_s, fixture.clock.now()));
    int count = 0;

    QCOMPARE(faintTexts(*fixture.tasks.window(), m_scheme, count).join(u'\n'), QString());

    QVERIFY2(count >= 14, qPrintable(QString::number(count)));
}

void VTContrastTest::alarmSheet()
{
    EditSheetFixture fixture;
    fixture.open(makeTaskDue(u"2"_s, u"Milk"_s, fixture.clock.now()));
    fixture.tasks.showAlarmEditSheetWithNewAlarm();
    int count = 0;

    QCOMPARE(faintTexts(*fixture.tasks.alarmController()->window(), m_scheme, count).join(u'\n'), QString());

    QVERIFY2(count >= 10, qPrintable(QString::number(count)));
}

void VTContrastTest::menuOfTheStatusIcon()
{
    VTStatusbarMenu menu;
    menu.popup(QPoint(0, 0));

    QCOMPARE(faintEntries(menu, m_scheme).join(u'\n'), QString());
}

void VTContrastTest::preferences()
{
    for (const PreferencesState state :
        { PreferencesState::Usual, PreferencesState::KeyTaken, PreferencesState::AsksThePerson,
            PreferencesState::WithoutHotKeys, PreferencesState::CannotStartAtLogin }) {
        PreferencesInState preferences(state);
        preferences.window().show();
        int count = 0;

        QCOMPARE(faintTexts(preferences.window(), m_scheme, count).join(u'\n'), QString());

        // Two headings, five choices, and three keys with their captions.
        QVERIFY2(count >= 13, qPrintable(QString::number(count)));
    }
}

void VTContrastTest::windowsOnTheProgram()
{
    int count = 0;
    AboutInState about;
    about.window().show();
    QCOMPARE(faintTexts(about.window(), m_scheme, count).join(u'\n'), QString());
    QVERIFY2(count >= 7, qPrintable(QString::number(count)));

    FeedbackInState feedback({}, u"It is fine."_s);
    feedback.window().show();
    count = 0;
    QCOMPARE(faintTexts(feedback.window(), m_scheme, count).join(u'\n'), QString());
    QVERIFY2(count >= 7, qPrintable(QString::number(count)));

    FeedbackInState offer(exampleOfCrashReport());
    offer.window().show();
    count = 0;
    QCOMPARE(faintTexts(offer.window(), m_scheme, count).join(u'\n'), QString());
    QVERIFY2(count >= 6, qPrintable(QString::number(count)));
}

void VTContrastTest::alertsAndQuestions()
{
    QStringList faint;
    int count = 0;
    const auto lookAtNext = [this, &faint, &count] {
        QTimer::singleShot(0, this, [this, &faint, &count] {
            QWidget *const box = QApplication::activeModalWidget();
            faint << faintTexts(*box, m_scheme, count);
            box->close();
        });
    };

    lookAtNext();
    SystemAlerts().runModal(u"The event “Tea” could not be saved.\nThe calendar is full."_s);
    lookAtNext();
    DesktopWorkspace().openURL(QUrl(u"tel:+49301234"_s));

    QCOMPARE(faint.join(u'\n'), QString());
    // A text in each, one button and two.
    QVERIFY2(count >= 5, qPrintable(QString::number(count)));
}

VANTLE_TEST(VTContrastTest)
#include "VTContrastTest.moc"
