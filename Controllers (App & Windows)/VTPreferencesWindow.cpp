// SPDX-License-Identifier: MIT
#include "VTPreferencesWindow.h"

#include <HotKeyBackend.h>
#include <KLVHeading.h>
#include <KLVMetrics.h>
#include <KLVReadingDirection.h>
#include <KLVStatusLabel.h>

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr qreal statedWidth = 460;
constexpr qreal sideMargin = 24;
constexpr qreal endMargin = 20;
constexpr qreal rowGap = 8;
constexpr qreal choiceGap = 5;
constexpr qreal groupGap = 18;
constexpr qreal switchesGap = 8; // beside the gap between rows
constexpr qreal columnGap = 10;
constexpr qreal captionWidth = 112;
constexpr qreal noteGap = 4;
constexpr int noteSize = 12;
constexpr int commandWeight = 600;

int pixels(qreal points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

QString commandOf(const char *action)
{
    return HotKeyStatus::notOffered(QLatin1String(action)).command;
}

bool isTaken(const HotKeyStatus &status)
{
    return status.reason == HotKeyRefusal::keysAreTaken().message
        || status.reason == HotKeyRefusal::keysAreTakenByUs().message;
}

KLVStatusLabel::Sign signOf(const HotKeyStatus &status)
{
    switch (status.kind) {
    case HotKeyStatus::Kind::Active:
        return KLVStatusLabel::Sign::Good;
    case HotKeyStatus::Kind::Refused:
        return KLVStatusLabel::Sign::Problem;
    case HotKeyStatus::Kind::WaitingForDesktop:
        return KLVStatusLabel::Sign::Waiting;
    case HotKeyStatus::Kind::NotOffered:
        return KLVStatusLabel::Sign::Absent;
    case HotKeyStatus::Kind::Unset:
        break;
    }
    return KLVStatusLabel::Sign::None;
}

QString wordOf(const HotKeyStatus &status)
{
    switch (status.kind) {
    case HotKeyStatus::Kind::Active:
        return QCoreApplication::translate("Vantle", "active", "hot key");
    case HotKeyStatus::Kind::Refused:
        return isTaken(status) ? QCoreApplication::translate("Vantle", "taken", "hot key")
                               : QCoreApplication::translate("Vantle", "refused", "hot key");
    case HotKeyStatus::Kind::WaitingForDesktop:
        return QCoreApplication::translate("Vantle", "waiting", "hot key");
    case HotKeyStatus::Kind::NotOffered:
        return QCoreApplication::translate("Vantle", "not offered", "hot key");
    case HotKeyStatus::Kind::Unset:
        break;
    }
    return {};
}

// Whether the person can only bind the command.
bool needsCommand(const HotKeyStatus &status)
{
    return status.kind == HotKeyStatus::Kind::Refused || status.kind == HotKeyStatus::Kind::NotOffered;
}

} // namespace

VTPreferencesWindow::VTPreferencesWindow(
    KeyboardLayouts &layouts, const SRRecorderControl::KeyName &keyName, AutostartEntry autostart, QWidget *parent)
    : QDialog(parent)
    , m_autostart(std::move(autostart))
    , m_iconStatus(new QButtonGroup(this))
{
    setObjectName(u"preferencesWindow"_s);
    setWindowTitle(QCoreApplication::translate("Vantle", "Preferences"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(pixels(sideMargin), pixels(endMargin), pixels(sideMargin), pixels(endMargin));
    column->setSpacing(pixels(rowGap));
    addPresence(*column);
    column->addSpacing(pixels(switchesGap));
    addSwitches(*column);
    column->addSpacing(pixels(groupGap - rowGap));
    addHotKeys(*column, layouts, keyName);
    column->addStretch(1);
    auto *close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QDialog::reject);
    setIconStatus(0);
    updatePresenceNote();
    updateHotKeyNotes();
}

void VTPreferencesWindow::addPresence(QVBoxLayout &column)
{
    const QString title = QCoreApplication::translate("Vantle", "Show Vantle in");
    column.addWidget(new KLVHeading(title, this));
    struct Choice {
        const char *name;
        QString text;
    };
    const Choice choices[] {
        { "taskBarAndMenuBar", QCoreApplication::translate("Vantle", "&Task bar and menu bar") },
        { "taskBarOnly", QCoreApplication::translate("Vantle", "Task bar &only") },
        { "menuBarOnly", QCoreApplication::translate("Vantle", "&Menu bar only") },
    };
    auto *rows = addChoices(column);
    int id = 0;
    for (const Choice &choice : choices) {
        auto *button = new QRadioButton(choice.text, this);
        button->setObjectName(QLatin1String(choice.name));
        button->setAccessibleDescription(title);
        m_iconStatus->addButton(button, id++);
        rows->addWidget(button);
    }
    m_presenceNote = addNote(column, "presenceNote");
    // Assistive technology toggles where a hand clicks.
    connect(m_iconStatus, &QButtonGroup::idToggled, this, [this](int iconStatus, bool isChosen) {
        if (isChosen && !m_isBeingTold)
            Q_EMIT iconStatusChosen(iconStatus);
    });
    connect(m_iconStatus, &QButtonGroup::idToggled, this, &VTPreferencesWindow::updatePresenceNote);
}

QVBoxLayout *VTPreferencesWindow::addChoices(QVBoxLayout &column)
{
    auto *rows = new QVBoxLayout;
    rows->setSpacing(pixels(choiceGap));
    column.addLayout(rows);
    return rows;
}

void VTPreferencesWindow::addSwitches(QVBoxLayout &column)
{
    QVBoxLayout *const rows = addChoices(column);
    m_hidesWhenInactive
        = new QCheckBox(QCoreApplication::translate("Vantle", "&Hide when another program is in front"), this);
    m_hidesWhenInactive->setObjectName(u"hidesWhenInactive"_s);
    connect(m_hidesWhenInactive, &QCheckBox::toggled, this, [this](bool hidesWhenInactive) {
        if (!m_isBeingTold)
            Q_EMIT hidesWhenInactiveChosen(hidesWhenInactive);
    });
    rows->addWidget(m_hidesWhenInactive);

    m_startsAtLogin = new QCheckBox(QCoreApplication::translate("Vantle", "Start when I &log in"), this);
    m_startsAtLogin->setObjectName(u"startsAtLogin"_s);
    connect(m_startsAtLogin, &QCheckBox::toggled, this, [this](bool startsAtLogin) {
        if (!m_isBeingTold)
            startsAtLoginChosen(startsAtLogin);
    });
    rows->addWidget(m_startsAtLogin);
    m_loginNote = addNote(column, "loginNote");
}

void VTPreferencesWindow::addHotKeys(
    QVBoxLayout &column, KeyboardLayouts &layouts, const SRRecorderControl::KeyName &keyName)
{
    column.addWidget(new KLVHeading(QCoreApplication::translate("Vantle", "Hot keys"), this));
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(pixels(columnGap));
    grid->setVerticalSpacing(pixels(rowGap));
    grid->setColumnMinimumWidth(0, pixels(captionWidth));
    grid->setColumnStretch(2, 1);
    column.addLayout(grid);
    const std::array captions {
        QCoreApplication::translate("Vantle", "&Show or hide"),
        QCoreApplication::translate("Vantle", "New &event"),
        QCoreApplication::translate("Vantle", "New to-&do"),
    };
    const std::array names { "showAppShortcutRecorder", "addEventShortcutRecorder", "addTaskShortcutRecorder" };
    for (std::size_t i = 0; i < m_hotKeys.size(); ++i) {
        m_hotKeys.at(i).recorder = new SRRecorderControl(layouts, keyName, this);
        m_hotKeys.at(i).recorder->setObjectName(QLatin1String(names.at(i)));
        addHotKeyRow(*grid, m_hotKeys.at(i), captions.at(i));
    }
    addCommands(column);
}

void VTPreferencesWindow::addHotKeyRow(QGridLayout &grid, HotKey &hotKey, const QString &caption)
{
    const int row = grid.rowCount();
    auto *label = new QLabel(caption, this);
    label->setTextFormat(Qt::PlainText);
    label->setFont(KLVMetrics(QApplication::font()).font(noteSize));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setAlignment(Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter);
    label->setBuddy(hotKey.recorder);
    hotKey.recorder->setAccessibleName(QString(caption).remove(u'&'));
    hotKey.label = new KLVStatusLabel(this);
    hotKey.label->setObjectName(hotKey.recorder->objectName() + u"Status"_s);
    grid.addWidget(label, row, 0);
    grid.addWidget(hotKey.recorder, row, 1);
    grid.addWidget(hotKey.label, row, 2);
    connect(hotKey.recorder, &SRRecorderControl::displayDidChange, this, &VTPreferencesWindow::updateHotKeyNotes);
}

void VTPreferencesWindow::addCommands(QVBoxLayout &column)
{
    m_hotKeyNote = addNote(column, "hotKeyNote");
    for (HotKey &hotKey : m_hotKeys) {
        hotKey.command = addNote(column, "");
        hotKey.command->setObjectName(hotKey.recorder->objectName() + u"Command"_s);
        hotKey.command->setFont(KLVMetrics(QApplication::font()).font(noteSize, commandWeight));
        hotKey.command->setText(commandOf(hotKey.action));
        hotKey.command->setAccessibleName(QCoreApplication::translate("Vantle", "Command for “%1”: %2")
                                              .arg(hotKey.recorder->accessibleName(), hotKey.command->text()));
        // To be copied.
        hotKey.command->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        hotKey.command->setFocusPolicy(Qt::StrongFocus);
    }
}

QLabel *VTPreferencesWindow::addNote(QVBoxLayout &column, const char *name)
{
    auto *note = new QLabel(this);
    note->setObjectName(QLatin1String(name));
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setFont(KLVMetrics(QApplication::font()).font(noteSize));
    note->setForegroundRole(QPalette::PlaceholderText);
    KLVFollowReadingDirection(*note);
    note->hide();
    column.addWidget(note);
    return note;
}

void VTPreferencesWindow::setHotKeyStatus(const SRRecorderControl *recorder, const HotKeyStatus &status)
{
    auto *const hotKey = std::ranges::find(m_hotKeys, recorder, &HotKey::recorder);
    Q_ASSERT(hotKey != m_hotKeys.end());
    if (hotKey->status == status)
        return;
    hotKey->status = status;
    updateHotKeyNotes();
}

void VTPreferencesWindow::setIconStatus(int iconStatus)
{
    const QScopedValueRollback told(m_isBeingTold, true);
    QAbstractButton *const button = m_iconStatus->button(iconStatus);
    (button ? button : m_iconStatus->button(0))->setChecked(true);
}

void VTPreferencesWindow::setHidesWhenInactive(bool hidesWhenInactive)
{
    const QScopedValueRollback told(m_isBeingTold, true);
    m_hidesWhenInactive->setChecked(hidesWhenInactive);
}

void VTPreferencesWindow::setRestartRequired(bool restartRequired)
{
    m_restartRequired = restartRequired;
    updatePresenceNote();
}

void VTPreferencesWindow::setDesktopLimits(const DesktopLimits &limits)
{
    m_limits = limits;
    updatePresenceNote();
}

void VTPreferencesWindow::showEvent(QShowEvent *event)
{
    const QScopedValueRollback told(m_isBeingTold, true);
    m_startsAtLogin->setChecked(m_autostart.isEnabled());
    m_loginNote->hide();
    if (!event->spontaneous())
        m_iconStatus->checkedButton()->setFocus();
    fit();
    QDialog::showEvent(event);
}

void VTPreferencesWindow::updatePresenceNote()
{
    const bool hasMenuBarOnly = m_iconStatus->checkedId() == 2;
    QStringList sentences;
    if (m_limits.hasNoIconHost && m_iconStatus->checkedId() != 1) {
        sentences << QCoreApplication::translate("Vantle",
            "This desktop shows no menu-bar icons at present. Start Vantle once more to bring its window back.");
    }
    if (hasMenuBarOnly && m_limits.keepsTaskBarEntries) {
        sentences << QCoreApplication::translate(
            "Vantle", "On this desktop an open window always has its task-bar entry.");
    } else if (m_restartRequired) {
        sentences << QCoreApplication::translate(
            "Vantle", "The task-bar entry goes when Vantle is started the next time.");
    }
    m_presenceNote->setText(sentences.join(u' '));
    m_presenceNote->setVisible(!sentences.isEmpty());
    fit();
}

void VTPreferencesWindow::updateHotKeyNotes()
{
    QStringList sentences;
    bool hasCommand = false;
    for (const HotKey &hotKey : m_hotKeys) {
        const HotKeyStatus &status = hotKey.status;
        hotKey.label->setStatus(signOf(status), wordOf(status), status.text());
        hotKey.command->setVisible(needsCommand(status));
        hasCommand = hasCommand || needsCommand(status);
        QString sentence;
        if (status.kind == HotKeyStatus::Kind::Refused)
            sentence = u"%1: %2"_s.arg(hotKey.recorder->words(), status.reason);
        else if (status.kind == HotKeyStatus::Kind::NotOffered)
            sentence = HotKeyStatus::notOffered({}).text();
        else if (status.kind == HotKeyStatus::Kind::WaitingForDesktop || !status.trigger.isEmpty())
            sentence = u"%1: %2"_s.arg(hotKey.recorder->accessibleName(), status.text());
        if (!sentence.isEmpty() && !sentences.contains(sentence))
            sentences << sentence;
    }
    if (hasCommand) {
        sentences << QCoreApplication::translate(
            "Vantle", "You can also bind a command in your desktop’s keyboard settings:");
    }
    m_hotKeyNote->setText(sentences.join(u'\n'));
    m_hotKeyNote->setVisible(!sentences.isEmpty());
    fit();
}

void VTPreferencesWindow::startsAtLoginChosen(bool startsAtLogin)
{
    const QScopedValueRollback told(m_isBeingTold, true);
    const Result<void> written = m_autostart.setEnabled(startsAtLogin);
    m_startsAtLogin->setChecked(m_autostart.isEnabled());
    if (!written)
        m_loginNote->setText(
            QCoreApplication::translate("Vantle", "This could not be changed: %1").arg(written.error().message));
    m_loginNote->setVisible(!written);
    fit();
}

// Wrapped notes come and go; the window is as high as they need and never cut.
void VTPreferencesWindow::fit()
{
    const int leastWidth = std::max(pixels(statedWidth), layout()->minimumSize().width());
    const int width = isVisible() ? std::max(this->width(), leastWidth) : leastWidth;
    const int height = layout()->hasHeightForWidth() ? layout()->heightForWidth(width) : layout()->sizeHint().height();
    setMinimumSize(leastWidth, height);
    resize(width, height);
}
