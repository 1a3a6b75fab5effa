// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include <DesktopAlerts.h>
#include <DesktopWorkspace.h>
#include <KLVTheme.h>
#include <LengthenedTexts.h>
#include <ProgramWindows.h>
#include <VTMainMenu.h>
#include <VTStatusbarMenu.h>

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <QTranslator>

#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{

QPixmap preferences(PreferencesState state)
{
    PreferencesInState preferences(state);
    return pictureOf(preferences.window());
}

QPixmap feedback(const QString &crashReport, const QString &message)
{
    FeedbackInState feedback(crashReport, message);
    return pictureOf(feedback.window());
}

QPixmap about()
{
    AboutInState about;
    return pictureOf(about.window());
}

// A message box, which waits until it was read.
QPixmap boxOf(const std::function<void()> &show)
{
    QPixmap picture;
    QTimer::singleShot(0, [&picture] {
        QWidget *const box = QApplication::activeModalWidget();
        picture = pictureOf(*box);
        box->close();
    });
    show();
    return picture;
}

QPixmap alert()
{
    return boxOf([] {
        SystemAlerts().runModal(
            QCoreApplication::translate("Vantle", "The report could not be saved.") + u"\nNo space left on device"_s);
    });
}

QPixmap question()
{
    return boxOf([] { DesktopWorkspace().openURL(QUrl(u"tel:+4930123456"_s)); });
}

// The icon's, the window's, and every group of that, as they open.
QList<QPixmap> menus()
{
    VTStatusbarMenu iconMenu;
    VTMainMenu menu;
    QList<QPixmap> pictures;
    for (QMenu *each : QList<QMenu *> { &iconMenu, &menu } + menu.findChildren<QMenu *>()) {
        each->popup({});
        pictures << pictureOf(*each);
        each->close();
    }
    return pictures;
}

bool save(const QDir &folder, const QString &name, const QPalette &palette)
{
    QApplication::setPalette(palette);
    const QString message = u"I moved a meeting to tomorrow, and the list was empty."_s;
    const auto saveAs = [&folder, &name](const char *subject, const QList<QPixmap> &pictures) {
        return beside(pictures).save(folder.filePath(QLatin1String(subject) + u'-' + name + u".png"_s));
    };
    return saveAs("preferences", { preferences(PreferencesState::Usual), preferences(PreferencesState::KeyTaken) })
        && saveAs("preferences-limits",
            { preferences(PreferencesState::AsksThePerson), preferences(PreferencesState::WithoutHotKeys),
                preferences(PreferencesState::CannotStartAtLogin) })
        && saveAs("about-and-feedback", { about(), feedback({}, message), feedback(exampleOfCrashReport(), {}) })
        && saveAs("alerts", { alert(), question() }) && saveAs("menus", menus());
}

} // namespace

// Takes pictures of preferences, about, feedback, alerts and menus, light and dark, in German, with longer texts,
// mirrored and with a font of twice the size: window_pictures FOLDER GERMAN-TRANSLATION
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    QTranslator german;
    if (arguments.size() < 3 || !german.load(arguments.at(2))) {
        std::fprintf(stderr, "usage: window_pictures FOLDER GERMAN-TRANSLATION\n");
        return 2;
    }
    if (!dressForPictures())
        return 1;
    const QDir folder(arguments.at(1));
    if (!save(folder, u"light"_s, KLVTheme::lightPalette()) || !save(folder, u"dark"_s, KLVTheme::darkPalette()))
        return 1;
    {
        const LengthenedTexts longer;
        if (!save(folder, u"longer"_s, KLVTheme::lightPalette()))
            return 1;
    }
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    if (!save(folder, u"right-to-left"_s, KLVTheme::darkPalette()))
        return 1;
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QApplication::installTranslator(&german);
    QLocale::setDefault(QLocale(QLocale::German));
    if (!save(folder, u"german"_s, KLVTheme::lightPalette()))
        return 1;
    setFontPixels(26);
    return save(folder, u"german-large"_s, KLVTheme::lightPalette()) ? 0 : 1;
}
