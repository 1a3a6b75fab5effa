// SPDX-License-Identifier: MIT
#include "WholeApplication.h"

#include <ManualClock.h>
#include <VTMainWindow.h>

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QPainter>
#include <QPixmap>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr int gap = 16;
const QDate shownDay(2026, 11, 20);

struct Scene {
    QString calendars; // a folder
    int daysOn = 0;
    QString selectedTitle = {}; // empty: what is selected at the start
    QSize size { 340, 600 };
    bool isDark = false;
};

QPalette platformPalette(bool isDark)
{
    const QColor window = isDark ? Qt::black : Qt::white;
    const QColor button = isDark ? Qt::darkGray : Qt::lightGray;
    return { button, window };
}

QPixmap picture(const Scene &scene)
{
    const QTemporaryDir home;
    ManualClock clock(QDateTime(shownDay, QTime(10, 5)));
    WholeApplication application(scene.calendars, home.path(), clock, platformPalette(scene.isDark));
    application.window().resize(scene.size);
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

// The pictures side by side, on the grey of a desktop.
QPixmap beside(const QList<QPixmap> &pictures)
{
    QSize size(gap, 0);
    for (const QPixmap &one : pictures) {
        const QSize own = one.deviceIndependentSize().toSize();
        size = { size.width() + own.width() + gap, std::max(size.height(), own.height() + 2 * gap) };
    }
    QPixmap all(size * qApp->devicePixelRatio());
    all.setDevicePixelRatio(qApp->devicePixelRatio());
    all.fill(QColor(0xce, 0xd5, 0xdf));
    QPainter painter(&all);
    int x = gap;
    for (const QPixmap &one : pictures) {
        painter.drawPixmap(x, gap, one);
        x += one.deviceIndependentSize().toSize().width() + gap;
    }
    return all;
}

bool save(const QPixmap &pixmap, const QDir &folder, const QString &name)
{
    if (pixmap.save(folder.filePath(name + u".png"_s)))
        return true;
    std::fprintf(stderr, "%s cannot be written\n", qUtf8Printable(folder.filePath(name)));
    return false;
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
        && save(picture({ .calendars = full, .selectedTitle = u"Design review"_s, .size = tall, .isDark = true }),
            folder, u"dark"_s);
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
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    if (!QFontDatabase::families().contains(u"Inter"_s)) {
        std::fprintf(stderr, "The font Inter is not here; script/bootstrap installs it\n");
        return 1;
    }
    QApplication::setFont(font);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    const QDir folder(arguments.at(1));
    if (qApp->devicePixelRatio() > 1) {
        const Scene twice { .calendars = arguments.at(2), .selectedTitle = u"Design review"_s, .size = { 340, 900 } };
        return save(picture(twice), folder, u"twice-as-fine"_s) ? 0 : 1;
    }
    return saveAll(folder, arguments.at(2), arguments.at(3)) ? 0 : 1;
}
