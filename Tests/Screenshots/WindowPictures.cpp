// SPDX-License-Identifier: MIT
#include <HotKeyBackend.h>
#include <KLVStyle.h>
#include <KLVTheme.h>
#include <LengthenedTexts.h>
#include <ModifierFlags.h>
#include <RecordingAlerts.h>
#include <RecordingWorkspace.h>
#include <ScriptedFileChooser.h>
#include <SwitchableKeyboardLayouts.h>
#include <VTAboutWindow.h>
#include <VTFeedbackWindow.h>
#include <VTMainMenu.h>
#include <VTPreferencesWindow.h>

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTranslator>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int gap = 24;
constexpr quint64 optionAndControl = CocoaModifier::option | CocoaModifier::control;

// What a desktop makes of the preferences.
enum class Desktop { Usual, KeyTaken, AsksThePerson, WithoutHotKeys };

QPixmap pictureOf(QWidget &window)
{
    window.show();
    QApplication::processEvents();
    QPixmap picture = window.grab();
    window.close();
    return picture;
}

QPixmap preferences(Desktop desktop)
{
    const QTemporaryDir home;
    SwitchableKeyboardLayouts layouts(std::make_shared<PlainKeyboardLayout>(u"Plain"_s, QHash<qint64, QString> {}));
    const AutostartEntry autostart(home.filePath(u"autostart/vantle.desktop"_s), u"vantle"_s);
    [[maybe_unused]] const auto written = autostart.setEnabled(true);
    VTPreferencesWindow window(
        layouts, [](qint64 key) { return QString(QChar(static_cast<char16_t>(key))); }, autostart);
    const QList<SRRecorderControl *> recorders { window.showAppShortcutRecorder(), window.addEventShortcutRecorder(),
        window.addTaskShortcutRecorder() };
    for (qsizetype i = 0; i < recorders.size(); ++i) {
        recorders.at(i)->setKeyCombo({ optionAndControl, u"VEN"_s.at(i).unicode() });
        window.setHotKeyStatus(recorders.at(i), HotKeyStatus::active());
    }
    switch (desktop) {
    case Desktop::Usual:
        break;
    case Desktop::KeyTaken:
        window.setHotKeyStatus(recorders.at(2), HotKeyStatus::refused(HotKeyRefusal::keysAreTaken().message));
        window.setIconStatus(2);
        window.setRestartRequired(true);
        window.setHidesWhenInactive(true);
        break;
    case Desktop::AsksThePerson:
        window.setHotKeyStatus(recorders.at(0), HotKeyStatus::active(u"Meta+V"_s));
        window.setHotKeyStatus(recorders.at(1), HotKeyStatus::waitingForDesktop());
        recorders.at(2)->setKeyCombo({});
        window.setHotKeyStatus(recorders.at(2), {});
        window.setIconStatus(1);
        break;
    case Desktop::WithoutHotKeys:
        for (const SRRecorderControl *recorder : recorders)
            window.setHotKeyStatus(recorder, HotKeyStatus::notOffered(u"toggle"_s));
        window.setIconStatus(2);
        window.setDesktopLimits({ .keepsTaskBarEntries = true, .hasNoIconHost = true });
        break;
    }
    return pictureOf(window);
}

QPixmap feedback(const QString &crashReport, const QString &message)
{
    ApplicationMetadata metadata = ApplicationMetadata::ofThisProgram();
    RecordingWorkspace workspace;
    ScriptedFileChooser fileChooser;
    RecordingAlerts alerts;
    VTFeedbackWindow window({ metadata, workspace, fileChooser, alerts },
        u"Vantle: 0.1.0\nQt: 6.4.2\nSystem: Debian GNU/Linux 12 (bookworm) (x86_64)\nDesktop: XFCE (xcb)\n"
        u"Language: en_GB\nScreens: 1920 x 1080 at 1\nFont: Inter, 13 pixels\nStyle: fusion\n"_s,
        crashReport);
    window.findChild<QPlainTextEdit *>(u"message"_s)->setPlainText(message);
    return pictureOf(window);
}

QPixmap about()
{
    RecordingWorkspace workspace;
    VTAboutWindow window(ApplicationMetadata::ofThisProgram(), workspace);
    return pictureOf(window);
}

// Every group of the menu, as it opens.
QList<QPixmap> menus()
{
    VTMainMenu menu;
    QList<QPixmap> pictures { pictureOf(menu) };
    for (QMenu *group : menu.findChildren<QMenu *>()) {
        Q_EMIT group->aboutToShow();
        pictures << pictureOf(*group);
    }
    return pictures;
}

QPixmap beside(const QList<QPixmap> &pictures)
{
    QSize size(gap, 0);
    for (const QPixmap &one : pictures)
        size = { size.width() + one.width() + gap, std::max(size.height(), one.height() + 2 * gap) };
    QPixmap all(size);
    all.fill(QColor(0xce, 0xd5, 0xdf));
    QPainter painter(&all);
    int x = gap;
    for (const QPixmap &one : pictures) {
        painter.drawPixmap(x, gap, one);
        x += one.width() + gap;
    }
    return all;
}

const QString crashReport = u"Vantle 0.1.0\nEnded by signal 11 SIGSEGV\nAt 2026-11-20T10:05:00\n"
                            u"Touching address 0x0\n"
                            u"  0  KLVAccordionView::updateAVItemViews() + 0x1c (vantle + 0x9a41c)\n"
                            u"  1  QWidget::event(QEvent*) + 0x1a4 (libQt6Widgets.so.6.4.2 + 0x1c0a4)\n"_s;

bool save(const QDir &folder, const QString &name, const QPalette &palette)
{
    QApplication::setPalette(palette);
    const QString message = u"I moved a meeting to tomorrow, and the list was empty."_s;
    return beside({ preferences(Desktop::Usual), preferences(Desktop::KeyTaken) })
               .save(folder.filePath(u"preferences-"_s + name + u".png"_s))
        && beside({ preferences(Desktop::AsksThePerson), preferences(Desktop::WithoutHotKeys) })
               .save(folder.filePath(u"preferences-limits-"_s + name + u".png"_s))
        && beside({ about(), feedback({}, message), feedback(crashReport, {}) })
               .save(folder.filePath(u"about-and-feedback-"_s + name + u".png"_s))
        && beside(menus()).save(folder.filePath(u"menus-"_s + name + u".png"_s));
}

void setFontPixels(int size)
{
    QFont font(u"Inter"_s);
    font.setPixelSize(size);
    QApplication::setFont(font);
}

} // namespace

// Takes pictures of preferences, about, feedback and menus, light and dark, in German, with longer texts and with a
// font of twice the size: window_pictures FOLDER GERMAN-TRANSLATION
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    QTranslator german;
    if (arguments.size() < 3 || !german.load(arguments.at(2))) {
        std::fprintf(stderr, "usage: window_pictures FOLDER GERMAN-TRANSLATION\n");
        return 2;
    }
    setFontPixels(13);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    KLVStyle::dressApplication();
    const QDir folder(arguments.at(1));
    if (!save(folder, u"light"_s, KLVTheme::lightPalette()) || !save(folder, u"dark"_s, KLVTheme::darkPalette()))
        return 1;
    {
        const LengthenedTexts longer;
        if (!save(folder, u"longer"_s, KLVTheme::lightPalette()))
            return 1;
    }
    QApplication::installTranslator(&german);
    if (!save(folder, u"german"_s, KLVTheme::lightPalette()))
        return 1;
    setFontPixels(26);
    return save(folder, u"german-large"_s, KLVTheme::lightPalette()) ? 0 : 1;
}
