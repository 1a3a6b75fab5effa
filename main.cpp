// SPDX-License-Identifier: MIT
#include "CalendarSources.h"

#include <AlertSounds.h>
#include <Beeper.h>
#include <Clock.h>
#include <CrashHandler.h>
#include <CrashReport.h>
#include <DesktopAlerts.h>
#include <DesktopAppearance.h>
#include <DesktopCalendarApplication.h>
#include <DesktopPresence.h>
#include <DesktopWorkspace.h>
#include <FileChooser.h>
#include <KeyboardLayouts.h>
#include <PTHotKeyCenter.h>
#include <SingleInstance.h>
#include <Termination.h>
#include <TrayStatusBar.h>
#include <UserDefaults.h>
#include <VTAppController.h>
#include <VTMainWindow.h>

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QTranslator>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

// A run that cannot note a crash is as good as any other until then.
void noteCrashes()
{
    const QString introduction = u"Vantle %1\n"_s.arg(ApplicationMetadata::ofThisProgram().version);
    [[maybe_unused]] const auto installed = CrashHandler::install(CrashReportFile::defaultPath(), introduction);
}

} // namespace

int main(int argc, char **argv)
{
    // The application object takes it away.
    const ActivationToken token = ActivationToken::fromEnvironment();
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"vantle"_s);
    QApplication::setOrganizationName(u"vantle"_s);
    QApplication::setApplicationDisplayName(u"Vantle"_s);
    QGuiApplication::setDesktopFileName(u"org.vantle.Vantle"_s);
    // The controller decides when the program ends without a window.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    SingleInstance instance(QDBusConnection::sessionBus());
    switch (instance.begin(token)) {
    case SingleInstance::Start::Further:
        return 0;
    case SingleInstance::Start::Unanswered:
        std::fputs("vantle: Vantle runs already, and does not answer.\n", stderr);
        return 1;
    case SingleInstance::Start::First:
    case SingleInstance::Start::Alone:
        break;
    }
    noteCrashes();
    // The toolkit's own texts, such as those of the menu of a field.
    QTranslator toolkitTranslator;
    if (toolkitTranslator.load(QLocale(), u"qtbase"_s, u"_"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&toolkitTranslator);
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
    DesktopPresence presence;
    TrayStatusBar statusBar;
    const SoundThemeSounds sounds;
    CalendarSources sources(clock);
    DesktopCalendarApplication calendarApplication(
        [&sources](const QString &calendarUid, CalendarApplication::ElementKind kind) {
            return sources.store().desktopSourceUid(
                calendarUid, kind == CalendarApplication::ElementKind::Event ? CalItemKind::Event : CalItemKind::Task);
        });

    VTAppController controller({
        .window = { sources.store(), defaults, clock, beeper, workspace, termination, alerts, fileChooser, sounds,
            &calendarApplication, &presence },
        .appearance = appearance,
        .windowState = WindowStateFile(WindowStateFile::defaultPath()),
        .statusBar = statusBar,
        .hotKeyCenter = PTHotKeyCenter::sharedCenter(),
        .keyboardLayouts = KeyboardLayouts::current(),
        .launcher = instance,
    });
    controller.awakeFromNib();
    sources.serve(*controller.mainWindow());
    return QApplication::exec();
}
