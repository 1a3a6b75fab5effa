// SPDX-License-Identifier: MIT
#include <AlertSounds.h>
#include <Beeper.h>
#include <CalCalendarStore.h>
#include <Clock.h>
#include <DesktopAlerts.h>
#include <DesktopAppearance.h>
#include <DesktopWorkspace.h>
#include <FileChooser.h>
#include <FolderCalendarStore.h>
#include <Termination.h>
#include <UserDefaults.h>
#include <VTAppController.h>

#include <QApplication>
#include <QLocale>
#include <QPalette>
#include <QStandardPaths>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace
{

// What is not read by then comes after the first picture.
constexpr std::chrono::milliseconds readingBudget { 40 };

std::unique_ptr<CalendarStoreBackend> folderOfCalendars(Clock &clock)
{
    FolderCalendarStore::Options options;
    options.root = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/calendars"_s;
    options.createsDefaultCalendars = true;
    options.readingBudget = readingBudget;
    return std::make_unique<FolderCalendarStore>(std::move(options), clock);
}

std::unique_ptr<CalCalendarStore> calendarStore(Clock &clock)
{
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(folderOfCalendars(clock));
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"vantle"_s);
    QApplication::setOrganizationName(u"vantle"_s);
    QApplication::setApplicationDisplayName(u"Vantle"_s);
    QGuiApplication::setDesktopFileName(u"org.vantle.Vantle"_s);
    QTranslator translator;
    if (translator.load(QLocale(), u"vantle"_s, u"_"_s, u":/i18n"_s))
        QApplication::installTranslator(&translator);

    SystemClock clock;
    UserDefaults defaults;
    SystemBeeper beeper;
    DesktopWorkspace workspace;
    DesktopAppearance appearance(QApplication::palette());
    SystemTermination termination;
    SystemAlerts alerts;
    SystemFileChooser fileChooser;
    const SoundThemeSounds sounds;
    const auto store = calendarStore(clock);

    VTAppController controller(
        { { *store, defaults, clock, beeper, workspace, termination, alerts, fileChooser, sounds, nullptr }, appearance,
            WindowStateFile(WindowStateFile::defaultPath()) });
    controller.awakeFromNib();
    return QApplication::exec();
}
