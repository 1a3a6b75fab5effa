// SPDX-License-Identifier: MIT
#include "ProgramWindows.h"

#include <HotKeyBackend.h>
#include <ModifierFlags.h>

#include <QCheckBox>
#include <QFile>
#include <QPlainTextEdit>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr quint64 optionAndControl = CocoaModifier::option | CocoaModifier::control;

const QString facts = u"Vantle: 0.1.0\nQt: 6.4.2\nSystem: Debian GNU/Linux 12 (bookworm) (x86_64)\n"
                      u"Desktop: XFCE (xcb)\nLanguage: en_GB\nScreens: 1920 x 1080 at 1\n"
                      u"Font: Inter, 13 pixels\nStyle: fusion\n"_s;

} // namespace

PreferencesInState::PreferencesInState(PreferencesState state)
    : m_layouts(std::make_shared<PlainKeyboardLayout>(u"Plain"_s, QHash<qint64, QString> {}))
    , m_window(
          m_layouts, [](qint64 key) { return QString(QChar(static_cast<char16_t>(key))); },
          AutostartEntry(m_home.filePath(u"autostart/vantle.desktop"_s), u"vantle"_s))
{
    set(state);
}

void PreferencesInState::set(PreferencesState state)
{
    const QList<SRRecorderControl *> recorders { m_window.showAppShortcutRecorder(),
        m_window.addEventShortcutRecorder(), m_window.addTaskShortcutRecorder() };
    for (qsizetype i = 0; i < recorders.size(); ++i) {
        recorders.at(i)->setKeyCombo({ optionAndControl, u"VEN"_s.at(i).unicode() });
        m_window.setHotKeyStatus(recorders.at(i), HotKeyStatus::active());
    }
    switch (state) {
    case PreferencesState::Usual:
        m_window.findChild<QCheckBox *>(u"startsAtLogin"_s)->setChecked(true);
        break;
    case PreferencesState::KeyTaken:
        m_window.setHotKeyStatus(recorders.at(2), HotKeyStatus::refused(HotKeyRefusal::keysAreTaken().message));
        m_window.setIconStatus(2);
        m_window.setRestartRequired(true);
        m_window.setHidesWhenInactive(true);
        break;
    case PreferencesState::AsksThePerson:
        m_window.setHotKeyStatus(recorders.at(0), HotKeyStatus::active(u"Meta+V"_s));
        m_window.setHotKeyStatus(recorders.at(1), HotKeyStatus::waitingForDesktop());
        recorders.at(2)->setKeyCombo({});
        m_window.setHotKeyStatus(recorders.at(2), {});
        m_window.setIconStatus(1);
        break;
    case PreferencesState::WithoutHotKeys:
        for (const SRRecorderControl *recorder : recorders)
            m_window.setHotKeyStatus(recorder, HotKeyStatus::notOffered(u"toggle"_s));
        m_window.setIconStatus(2);
        m_window.setDesktopLimits({ .keepsTaskBarEntries = true, .hasNoIconHost = true });
        break;
    case PreferencesState::CannotStartAtLogin:
        QFile inTheWay(m_home.filePath(u"autostart"_s));
        if (!inTheWay.open(QIODevice::WriteOnly))
            qFatal("No file");
        m_window.show(); // which forgets what was said before
        m_window.findChild<QCheckBox *>(u"startsAtLogin"_s)->click();
        break;
    }
}

FeedbackInState::FeedbackInState(const QString &crashReport, const QString &message)
    : m_window({ m_metadata, m_workspace, m_fileChooser, m_alerts }, facts, crashReport)
{
    m_window.findChild<QPlainTextEdit *>(u"message"_s)->setPlainText(message);
}

QString exampleOfCrashReport()
{
    return u"Vantle 0.1.0\nEnded by signal 11 SIGSEGV\nAt 2026-11-20T10:05:00\nTouching address 0x0\n"
           u"  0  KLVAccordionView::updateAVItemViews() + 0x1c (vantle + 0x9a41c)\n"
           u"  1  QWidget::event(QEvent*) + 0x1a4 (libQt6Widgets.so.6.4.2 + 0x1c0a4)\n"_s;
}
