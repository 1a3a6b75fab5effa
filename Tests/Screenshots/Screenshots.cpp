// SPDX-License-Identifier: MIT
#include "Pictures.h"
#include "WholeApplication.h"

#include <CalendarStoreBackend.h>
#include <KLVSplitView.h>
#include <LengthenedTexts.h>
#include <ManualClock.h>
#include <MemoryBackend.h>
#include <VTMainWindow.h>
#include <VTShortcutsWindow.h>

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPixmap>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

const QDate shownDay(2026, 11, 20);

enum class Look { Light, Dark, HighContrast };
enum class Panes { Both, EventsOnly, TasksOnly };

struct Scene {
    QString calendars; // a folder
    int daysOn = 0;
    QString selectedTitle = {}; // empty: what is selected at the start
    QSize size { 340, 600 };
    Look look = Look::Light;
    bool hasDrawer = false;
    Panes panes = Panes::Both;
    int fontPixels = 13;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    bool hasLongTexts = false;
    QStringList silentCalendars = {};
    bool hasAccounts = false; // one that asks for its password, and one whose server is not reached
};

// What the desktop would show by itself: the look is taken from it.
QPalette platformPalette(Look look)
{
    switch (look) {
    case Look::Light:
        return { Qt::lightGray, QColor(0xef, 0xef, 0xef) };
    case Look::Dark:
        return { Qt::darkGray, QColor(0x30, 0x30, 0x30) };
    case Look::HighContrast:
        return { Qt::black, Qt::black };
    }
    return {};
}

// The application as a scene wishes it, and as it was afterwards.
class Setting final
{
public:
    explicit Setting(const Scene &scene)
    {
        QFont font = m_font;
        font.setPixelSize(scene.fontPixels);
        QApplication::setFont(font);
        QGuiApplication::setLayoutDirection(scene.direction);
        if (scene.hasLongTexts)
            m_longTexts.emplace();
    }
    ~Setting()
    {
        m_longTexts.reset();
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setFont(m_font);
    }
    Setting(const Setting &) = delete;
    Setting &operator=(const Setting &) = delete;

private:
    QFont m_font = QApplication::font();
    std::optional<LengthenedTexts> m_longTexts;
};

std::unique_ptr<CalendarStoreBackend> accounts()
{
    using Availability = CalCalendar::Availability;
    const auto account = [](const QString &name, const QColor &color, Availability availability) {
        return std::make_shared<CalCalendar>(
            CalCalendar::Values { .uid = name, .title = name, .color = color, .availability = availability });
    };
    auto backend = std::make_unique<MemoryBackend>();
    backend->addCalendar(account(u"Choir"_s, QColor(0xc0, 0x6a, 0x10), Availability::CredentialsRequired));
    backend->addCalendar(account(u"Harbour association"_s, QColor(0x20, 0x90, 0x90), Availability::Offline));
    return backend;
}

void arrange(VTMainWindow &window, Panes panes)
{
    constexpr int all = 10000;
    if (panes == Panes::EventsOnly)
        window.splitView()->setSizes({ all, 0 });
    else if (panes == Panes::TasksOnly)
        window.splitView()->setSizes({ 0, all });
}

QPixmap picture(const Scene &scene)
{
    const Setting setting(scene);
    const QTemporaryDir home;
    ManualClock clock(QDateTime(shownDay, QTime(10, 5)));
    WholeApplication application(
        scene.calendars, home.path(), clock, platformPalette(scene.look), scene.silentCalendars);
    if (scene.hasAccounts)
        application.store().addBackend(accounts());
    if (scene.hasDrawer)
        application.controller().setShowCalendarDrawer(true);
    application.window().resize(scene.size);
    arrange(application.window(), scene.panes);
    QApplication::processEvents(); // a selection is brought into sight of the window as it is
    if (scene.daysOn != 0)
        application.controller().setDate(QDateTime(shownDay.addDays(scene.daysOn), QTime(10, 5)));
    if (!scene.selectedTitle.isEmpty()) {
        const CalCalendarItemPtr item = application.itemTitled(scene.selectedTitle);
        if (!item)
            qFatal("No item has the title %s", qUtf8Printable(scene.selectedTitle));
        application.controller().setSelectedCalItemUID(item->uid());
    }
    QApplication::processEvents();
    return application.window().grab();
}

bool save(const QPixmap &pixmap, const QDir &folder, const QString &name)
{
    if (pixmap.save(folder.filePath(name + u".png"_s)))
        return true;
    std::fprintf(stderr, "%s cannot be written\n", qUtf8Printable(folder.filePath(name)));
    return false;
}

// A part of the application that a scene's window does not show by itself, such as an open menu.
QPixmap picture(const Scene &scene, const std::function<QWidget *(VTMainWindow &)> &opened)
{
    const Setting setting(scene);
    const QTemporaryDir home;
    ManualClock clock(QDateTime(shownDay, QTime(10, 5)));
    WholeApplication application(scene.calendars, home.path(), clock, platformPalette(scene.look));
    QApplication::processEvents();
    QWidget *const part = opened(application.window());
    QApplication::processEvents();
    return part->grab();
}

QWidget *openMenu(VTMainWindow &window, const QString &name)
{
    auto *const menu = window.findChild<QMenu *>(name);
    menu->popup(QPoint(0, 0));
    menu->setActiveAction(menu->actions().at(1));
    return menu;
}

QPixmap menuPicture(const Scene &scene, const QString &name)
{
    return picture(scene, [&](VTMainWindow &window) { return openMenu(window, name); });
}

// As high as all of its keys.
QPixmap shortcutsPicture(const Scene &scene)
{
    return picture(scene, [&](VTMainWindow &window) {
        window.showShortcuts();
        QWidget *const shortcuts = window.findChild<VTShortcutsWindow *>();
        shortcuts->resize(scene.size);
        return shortcuts;
    });
}

bool saveMenus(const QDir &folder, const QString &full)
{
    QList<QPixmap> menus;
    for (const Look look : { Look::Light, Look::Dark }) {
        for (const char *name : { "mainMenu", "calItemContextMenu", "taskSettingsMenu" })
            menus.append(menuPicture({ .calendars = full, .look = look }, QLatin1String(name)));
    }
    const QSize usual(420, 900);
    return save(beside(menus), folder, u"menu"_s)
        && save(beside({ shortcutsPicture({ .calendars = full, .size = usual }),
                    shortcutsPicture({ .calendars = full, .size = usual, .look = Look::Dark }),
                    shortcutsPicture({ .calendars = full, .size = usual, .direction = Qt::RightToLeft }),
                    shortcutsPicture({ .calendars = full, .size = usual, .hasLongTexts = true }) }),
            folder, u"shortcuts"_s);
}

// The line under the date bar.
bool saveSilence(const QDir &folder, const QString &full)
{
    const QStringList one { u"Personal"_s };
    const QStringList several { u"Personal"_s, u"Choir"_s, u"Harbour association"_s, u"School"_s, u"Bowling"_s };
    return save(
        beside({ picture({ .calendars = full, .silentCalendars = one }),
            picture({ .calendars = full, .look = Look::Dark, .silentCalendars = one }),
            picture({ .calendars = full, .look = Look::HighContrast, .silentCalendars = one }),
            picture({ .calendars = full, .direction = Qt::RightToLeft, .silentCalendars = several }),
            picture({ .calendars = full, .hasLongTexts = true, .silentCalendars = several }),
            picture({ .calendars = full, .size = { 680, 600 }, .fontPixels = 26, .silentCalendars = several }) }),
        folder, u"silent-service"_s);
}

// The parts of the window shown and hidden, large and small.
bool saveArrangements(const QDir &folder, const QString &full)
{
    const QString review = u"Design review"_s;
    const QSize withDrawer(530, 600);
    return save(beside({ picture({ .calendars = full, .size = withDrawer, .hasDrawer = true }),
                    picture({ .calendars = full, .size = withDrawer, .look = Look::Dark, .hasDrawer = true }) }),
               folder, u"calendars-drawer"_s)
        && save(beside({ picture({ .calendars = full, .panes = Panes::EventsOnly }),
                    picture({ .calendars = full, .panes = Panes::TasksOnly }) }),
            folder, u"collapsed-panes"_s)
        && save(
            picture({ .calendars = full, .selectedTitle = review, .size = { 280, 240 } }), folder, u"smallest-window"_s)
        && save(picture({ .calendars = full, .selectedTitle = review, .size = { 600, 700 } }), folder, u"wide-window"_s)
        && saveMenus(folder, full) && saveSilence(folder, full)
        && save(beside({ picture({ .calendars = full, .size = withDrawer, .hasDrawer = true, .hasAccounts = true }),
                    picture({ .calendars = full,
                        .size = withDrawer,
                        .look = Look::Dark,
                        .hasDrawer = true,
                        .direction = Qt::RightToLeft,
                        .hasAccounts = true }) }),
            folder, u"account-states"_s);
}

// The same for people who read larger, with more contrast, from the right or in longer words.
bool saveOtherPeoples(const QDir &folder, const QString &full)
{
    const QString review = u"Design review"_s;
    const QString invoice = u"Call the landlord about the boiler"_s;
    const QSize tall(340, 820);
    return save(beside(
                    { picture({ .calendars = full, .selectedTitle = review, .size = { 680, 1100 }, .fontPixels = 26 }),
                        picture({ .calendars = full,
                            .selectedTitle = invoice,
                            .size = { 1060, 1100 },
                            .hasDrawer = true,
                            .fontPixels = 26 }) }),
               folder, u"font-of-twice-the-size"_s)
        && save(
            beside({ picture({ .calendars = full, .selectedTitle = review, .size = tall, .look = Look::HighContrast }),
                picture({ .calendars = full, .selectedTitle = invoice, .size = tall, .look = Look::HighContrast }) }),
            folder, u"high-contrast"_s)
        && save(
            beside({ picture({ .calendars = full,
                         .selectedTitle = review,
                         .size = { 530, 820 },
                         .hasDrawer = true,
                         .direction = Qt::RightToLeft }),
                picture({ .calendars = full, .selectedTitle = invoice, .size = tall, .direction = Qt::RightToLeft }) }),
            folder, u"right-to-left"_s)
        && save(beside({ picture({ .calendars = full,
                             .selectedTitle = review,
                             .size = { 530, 820 },
                             .hasDrawer = true,
                             .hasLongTexts = true }),
                    picture({ .calendars = full, .selectedTitle = invoice, .size = tall, .hasLongTexts = true }) }),
            folder, u"longer-texts"_s);
}

bool saveAll(const QDir &folder, const QString &full, const QString &empty)
{
    const auto selected = [&](int daysOn, const QString &title) {
        return picture({ .calendars = full, .daysOn = daysOn, .selectedTitle = title });
    };
    const QSize tall(340, 900);
    return save(picture({ .calendars = empty }), folder, u"empty-day"_s)
        && save(picture({ .calendars = full }), folder, u"usual-day"_s)
        && save(picture({ .calendars = full, .selectedTitle = u"Design review"_s, .size = tall }), folder,
            u"selected-event"_s)
        && save(beside({ selected(3, u"Supplier visit"_s), selected(3, u"Interview"_s), selected(3, u"Remote demo"_s),
                    selected(3, u"Lunch walk"_s) }),
            folder, u"one-detail-each"_s)
        && save(selected(3, u"Focus time"_s), folder, u"no-details"_s)
        && save(beside({ selected(1, u"Ferry to the islands and back along the northern shore"_s),
                    selected(4, u"Workshop on signage for the new ferry terminal"_s) }),
            folder, u"two-line-titles"_s)
        && save(picture({ .calendars = full, .selectedTitle = u"Circulate the minutes"_s, .size = tall }), folder,
            u"completed-to-do"_s)
        && save(picture({ .calendars = full, .selectedTitle = u"Design review"_s, .size = tall, .look = Look::Dark }),
            folder, u"dark"_s)
        && saveArrangements(folder, full) && saveOtherPeoples(folder, full);
}

} // namespace

// Takes the pictures of the documentation: screenshots FOLDER FULL-CALENDARS EMPTY-CALENDARS
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "usage: screenshots FOLDER FULL-CALENDARS EMPTY-CALENDARS\n");
        return 2;
    }
    if (!dressForPictures())
        return 1;
    const QDir folder(arguments.at(1));
    if (qApp->devicePixelRatio() > 1) {
        const Scene twice { .calendars = arguments.at(2), .selectedTitle = u"Design review"_s, .size = { 340, 900 } };
        return save(picture(twice), folder, u"twice-as-fine"_s) ? 0 : 1;
    }
    return saveAll(folder, arguments.at(2), arguments.at(3)) ? 0 : 1;
}
