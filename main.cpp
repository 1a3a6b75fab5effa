// SPDX-License-Identifier: MIT
#include "CalendarSources.h"

#include <AlertSounds.h>
#include <Beeper.h>
#include <Clock.h>
#include <DesktopAlerts.h>
#include <DesktopAppearance.h>
#include <DesktopWorkspace.h>
#include <FileChooser.h>
#include <Termination.h>
#include <UserDefaults.h>
#include <VTAppController.h>
#include <VTMainWindow.h>

#include <QApplication>
#include <QLocale>
#include <QPalette>
#include <QTranslator>

using namespace Qt::StringLiterals;

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
    CalendarSources sources(clock);

    VTAppController controller(
        { { sources.store(), defaults, clock, beeper, workspace, termination, alerts, fileChooser, sounds, nullptr },
            appearance, WindowStateFile(WindowStateFile::defaultPath()) });
    controller.awakeFromNib();
    sources.serve(*controller.mainWindow());
    return QApplication::exec();
}
