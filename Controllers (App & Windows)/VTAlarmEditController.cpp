// SPDX-License-Identifier: MIT
#include "VTAlarmEditController.h"

#include "VTSheetForm.h"
#include "ui_VTAlarmEdit.h"

#include <AlertSounds.h>
#include <AssertionHandler.h>
#include <CalAlarm+VTHelper.h>
#include <Clock.h>
#include <FileChooser.h>
#include <KLVSheet.h>
#include <KLVText.h>

#include <QButtonGroup>
#include <QFontMetrics>
#include <QRegularExpression>
#include <QSignalBlocker>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{

const QString sourceName = u"Controllers (App & Windows)/VTAlarmEditController"_s;
constexpr int missingAlarmLine = 129;

constexpr double sheetWidth = 380; // points
constexpr int longestFileName = 240; // pixels of a button's text
constexpr int longestDuration = 10; // characters
constexpr double newAlarmTrigger = -600; // seconds

// In the order of the units' pop-up: minutes, hours, days.
constexpr std::array<int, 3> secondsOfUnit { 60, 3600, 86400 };
constexpr int before = -1;
constexpr int after = 1;

const QStringList actionKeys { u"VTActionIsMessage"_s, u"VTActionIsEmail"_s, u"VTActionIsFile"_s };

QString translated(const char *text)
{
    return QCoreApplication::translate("Vantle", text);
}

// The largest unit of which the seconds are a whole number.
qsizetype unitIndexFor(double seconds)
{
    if (std::fmod(seconds, secondsOfUnit[2]) == 0)
        return 2;
    return std::fmod(seconds, secondsOfUnit[1]) == 0 ? 1 : 0;
}

// Toward zero.
int truncated(double number)
{
    return static_cast<int>(
        std::clamp<double>(number, -std::numeric_limits<int>::max(), std::numeric_limits<int>::max()));
}

QButtonGroup *radioGroup(std::initializer_list<QAbstractButton *> buttons, QObject *parent)
{
    auto *const group = new QButtonGroup(parent);
    group->setExclusive(false);
    for (QAbstractButton *button : buttons)
        group->addButton(button);
    return group;
}

// Shows which one of a group is on, or none of them. That is no choice of the person's.
void check(const QButtonGroup &group, QAbstractButton *button)
{
    const auto buttons = group.buttons();
    for (QAbstractButton *each : buttons) {
        const QSignalBlocker blocker(each);
        each->setChecked(each == button);
    }
}

} // namespace

double VTLeadingNumber(const QString &text)
{
    static const QRegularExpression number(u"^\\s*([+-]?(?:\\d+[.,]?\\d*|[.,]\\d+))"_s);
    const QRegularExpressionMatch match = number.match(text);
    return match.hasMatch() ? match.captured(1).replace(u',', u'.').toDouble() : 0;
}

VTAlarmEditController::VTAlarmEditController(const VTEditServices &services, QString relativeTitle, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_relativeTitle(std::move(relativeTitle))
{
}

VTAlarmEditController::~VTAlarmEditController()
{
    delete m_window.data();
}

KLVSheet *VTAlarmEditController::window() const
{
    return m_window;
}

QVariant VTAlarmEditController::valueForKey(const QString &key) const
{
    return property(key.toLatin1().constData());
}

void VTAlarmEditController::loadWindow()
{
    m_window = new KLVSheet(nullptr);
    m_ui = std::make_unique<Ui::VTAlarmEdit>();
    m_ui->setupUi(m_window);
    m_window->setController(this);

    setTriggerRelativeDuration(m_ui->triggerRelativeDuration);
    setTriggerRelativeUnit(m_ui->triggerRelativeUnit);
    setTriggerRelativeRelation(m_ui->triggerRelativeRelation);
    setTriggerAbsoluteDate(m_ui->triggerAbsoluteDate);
    setActionSound(m_ui->actionSound);
    setActionEmailAddress(m_ui->actionEmailAddress);
    setActionFilePath(m_ui->actionFilePath);
    setUpTexts();
    fillPopUps();
    connectControls();
}

void VTAlarmEditController::setUpTexts()
{
    VTSheetForm::setUpSheet(*m_window, sheetWidth, translated(QT_TRANSLATE_NOOP("Vantle", "Alarm")));
    VTSheetForm::setUpCaption(*m_ui->whenCaption, translated(QT_TRANSLATE_NOOP("Vantle", "When")));
    VTSheetForm::setUpCaption(*m_ui->actionCaption, translated(QT_TRANSLATE_NOOP("Vantle", "Action")));
    m_ui->relativeRadio->setText(m_relativeTitle);
    m_ui->absoluteRadio->setText(translated(QT_TRANSLATE_NOOP("Vantle", "At a date and time")));
    m_ui->messageRadio->setText(translated(QT_TRANSLATE_NOOP("Vantle", "Show a message")));
    m_ui->emailRadio->setText(translated(QT_TRANSLATE_NOOP("Vantle", "Send an e-mail")));
    m_ui->fileRadio->setText(translated(QT_TRANSLATE_NOOP("Vantle", "Open a file")));
    m_ui->cancelButton->setText(translated(QT_TRANSLATE_NOOP("Vantle", "Cancel")));
    m_ui->okButton->setText(translated(QT_TRANSLATE_NOOP("Vantle", "OK")));
    m_actionEmailAddress->setPlaceholderText(translated(QT_TRANSLATE_NOOP("Vantle", "name@example.org")));

    VTSheetForm::setName(*m_triggerRelativeDuration, translated(QT_TRANSLATE_NOOP("Vantle", "How long")));
    VTSheetForm::setName(*m_triggerRelativeUnit, translated(QT_TRANSLATE_NOOP("Vantle", "Unit")));
    VTSheetForm::setName(*m_triggerRelativeRelation, translated(QT_TRANSLATE_NOOP("Vantle", "Before or after")));
    VTSheetForm::setUpPicker(*m_triggerAbsoluteDate, m_ui->absoluteRadio->text());
    VTSheetForm::setName(*m_actionSound, translated(QT_TRANSLATE_NOOP("Vantle", "Sound")));
    VTSheetForm::setName(*m_actionEmailAddress, translated(QT_TRANSLATE_NOOP("Vantle", "E-mail address")));
}

void VTAlarmEditController::fillPopUps()
{
    m_triggerRelativeUnit->addItem(translated(QT_TRANSLATE_NOOP("Vantle", "minutes")), secondsOfUnit[0]);
    m_triggerRelativeUnit->addItem(translated(QT_TRANSLATE_NOOP("Vantle", "hours")), secondsOfUnit[1]);
    m_triggerRelativeUnit->addItem(translated(QT_TRANSLATE_NOOP("Vantle", "days")), secondsOfUnit[2]);
    m_triggerRelativeRelation->addItem(translated(QT_TRANSLATE_NOOP("Vantle", "before")), before);
    m_triggerRelativeRelation->addItem(translated(QT_TRANSLATE_NOOP("Vantle", "after")), after);
    m_triggerRelativeDuration->setMaxLength(longestDuration);
    m_actionSound->addItem(translated(QT_TRANSLATE_NOOP("Vantle", "No sound")));
    m_actionSound->addItems(m_services.sounds.names());
}

void VTAlarmEditController::connectControls()
{
    // What is chosen is a matter of the properties: an alarm of another program's kind has none of the actions.
    m_triggers = radioGroup({ m_ui->relativeRadio, m_ui->absoluteRadio }, m_window);
    m_actions = radioGroup({ m_ui->messageRadio, m_ui->emailRadio, m_ui->fileRadio }, m_window);

    // Assistive technology toggles without a click.
    connect(m_ui->relativeRadio, &QRadioButton::toggled, this, [this] { setIsAbsolute(false); });
    connect(m_ui->absoluteRadio, &QRadioButton::toggled, this, [this] { setIsAbsolute(true); });
    connect(m_ui->messageRadio, &QRadioButton::toggled, this,
        [this](bool isOn) { setVTActionIsMessage(*m_proxyAlarm, isOn); });
    connect(
        m_ui->emailRadio, &QRadioButton::toggled, this, [this](bool isOn) { setVTActionIsEmail(*m_proxyAlarm, isOn); });
    connect(
        m_ui->fileRadio, &QRadioButton::toggled, this, [this](bool isOn) { setVTActionIsFile(*m_proxyAlarm, isOn); });
    connect(m_actionSound, &QComboBox::activated, this, &VTAlarmEditController::soundWasChosen);
    connect(m_actionFilePath, &QPushButton::clicked, this, [this] { showSelectFilePathDialog(); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { cancelAlarmEditSheet(); });
    connect(m_ui->okButton, &QPushButton::clicked, this, [this] { endAlarmEditSheetAndReturnAlarm(); });
}

void VTAlarmEditController::editAlarm_allowRelativeTrigger_attachedToWindow_delegate(
    const CalAlarmPtr &alarm, bool allowRelativeTrigger, QWidget *window, VTAlarmEditDelegate *delegate)
{
    if (!alarm) {
        AssertionHandler::current().handleFailure(
            u"editAlarm:allowRelativeTrigger:attachedToWindow:delegate: invoked with oAlarm == nil"_s, sourceName,
            missingAlarmLine);
        return;
    }
    if (!m_window)
        loadWindow();

    setOriginalAlarm(alarm);
    setAllowRelativeTrigger(allowRelativeTrigger);
    setDelegate(delegate);
    setProxyAlarm(std::make_shared<CalAlarm>(*alarm));
    setIsAbsolute(!allowRelativeTrigger || m_proxyAlarm->absoluteTrigger().has_value());
    fillRelativeTrigger();
    m_triggerAbsoluteDate->setDateValue(m_proxyAlarm->absoluteTrigger().value_or(m_services.clock.now()));
    selectSound();
    m_actionEmailAddress->setText(VTSheetForm::oneLine(m_proxyAlarm->emailAddress()));
    setFilePath(m_proxyAlarm->url());
    if (m_isAbsolute)
        m_triggerAbsoluteDate->setFocus(Qt::OtherFocusReason);
    else
        m_triggerRelativeDuration->setFocus(Qt::OtherFocusReason);
    m_window->beginSheet(window);
}

void VTAlarmEditController::fillRelativeTrigger()
{
    const double stored = m_proxyAlarm->relativeTrigger();
    const double trigger = stored == 0 ? newAlarmTrigger : stored;
    const bool isAfter = trigger > 0;
    const qsizetype unit = unitIndexFor(trigger);
    m_triggerRelativeUnit->setCurrentIndex(static_cast<int>(unit));
    const int number = truncated(trigger / secondsOfUnit[static_cast<std::size_t>(unit)]);
    m_triggerRelativeDuration->setText(QString::number(number * (isAfter ? 1 : -1)));
    m_triggerRelativeRelation->setCurrentIndex(isAfter ? 1 : 0);
}

void VTAlarmEditController::selectSound()
{
    const QString sound = m_proxyAlarm->sound().value_or(QString());
    if (sound.isEmpty()) {
        m_actionSound->setCurrentIndex(0);
        return;
    }
    int index = -1;
    for (int candidate = 1; candidate < m_actionSound->count() && index < 0; ++candidate) {
        if (m_actionSound->itemText(candidate) == sound)
            index = candidate;
    }
    // One that this desktop does not have is the person's nevertheless.
    if (index < 0) {
        m_actionSound->addItem(sound);
        index = m_actionSound->count() - 1;
    }
    m_actionSound->setCurrentIndex(index);
}

// Confirming sets a sound and never takes one away: choosing none does that itself.
void VTAlarmEditController::soundWasChosen(int index)
{
    if (index != 0 || !VTActionIsMessage(*m_proxyAlarm))
        return;
    m_proxyAlarm->setSound(std::nullopt);
    setVTAction(*m_proxyAlarm, CalAlarmActionDisplay);
}

void VTAlarmEditController::endAlarmEditSheetAndReturnAlarm(QObject * /*sender*/)
{
    cancelAlarmEditSheet();
    takeTrigger();
    takeActionDetails();
    m_delegate->updateAlarm_withAlarm(m_originalAlarm, m_proxyAlarm);
}

void VTAlarmEditController::takeTrigger()
{
    if (m_isAbsolute) {
        m_proxyAlarm->setAbsoluteTrigger(m_triggerAbsoluteDate->dateValue());
        return;
    }
    const int relationTag = m_triggerRelativeRelation->currentData().toInt();
    const int unitTag = m_triggerRelativeUnit->currentData().toInt();
    m_proxyAlarm->setRelativeTrigger(relationTag * (unitTag * VTLeadingNumber(m_triggerRelativeDuration->text())));
}

void VTAlarmEditController::takeActionDetails()
{
    const QString action = VTAction(*m_proxyAlarm);
    if (VTActionIsMessage(*m_proxyAlarm) && m_actionSound->currentIndex() > 0)
        m_proxyAlarm->setSound(m_actionSound->currentText());
    else if (action == CalAlarmActionEmail)
        m_proxyAlarm->setEmailAddress(m_actionEmailAddress->text());
    else if (action == CalAlarmActionProcedure)
        m_proxyAlarm->setUrl(m_filePath);
}

void VTAlarmEditController::cancelAlarmEditSheet(QObject * /*sender*/)
{
    if (m_window)
        m_window->endSheet();
}

void VTAlarmEditController::showSelectFilePathDialog(QObject * /*sender*/)
{
    if (const std::optional<QUrl> chosen = m_services.fileChooser.chooseFile(m_window))
        setFilePath(chosen);
}

void VTAlarmEditController::insertNewline(QObject * /*sender*/)
{
    endAlarmEditSheetAndReturnAlarm();
}

void VTAlarmEditController::cancelOperation(QObject * /*sender*/)
{
    cancelAlarmEditSheet();
}

void VTAlarmEditController::setFilePath(const std::optional<QUrl> &url)
{
    willChangeValueForKey(u"filePath"_s);
    setFilePathSynth(url);
    didChangeValueForKey(u"filePath"_s);
    const QString name = url ? VTSheetForm::oneLine(url->fileName(QUrl::FullyDecoded))
                             : QCoreApplication::translate("Vantle", "select file");
    const QFontMetrics metrics(m_actionFilePath->font());
    m_actionFilePath->setText(VTSheetForm::withoutMnemonic(metrics.elidedText(name, Qt::ElideMiddle, longestFileName)));
    m_actionFilePath->setAccessibleName(name);
    const QString target = url ? url->toString(QUrl::FullyEncoded) : QString();
    m_actionFilePath->setToolTip(KLVText::toolTip(target));
    // Assistive technology would be given the tool tip with its markup.
    m_actionFilePath->setAccessibleDescription(target);
}

void VTAlarmEditController::setProxyAlarm(const CalAlarmPtr &alarm)
{
    for (const QString &key : actionKeys) {
        if (m_proxyAlarm)
            m_proxyAlarm->removeObserver_forKeyPath(this, key);
        if (alarm)
            alarm->addObserver_forKeyPath_options_context(this, key);
    }
    m_proxyAlarm = alarm;
    updateActionControls();
}

void VTAlarmEditController::setIsAbsolute(bool isAbsolute)
{
    willChangeValueForKey(u"isAbsolute"_s);
    m_isAbsolute = isAbsolute;
    didChangeValueForKey(u"isAbsolute"_s);
    updateTriggerControls();
}

void VTAlarmEditController::setAllowRelativeTrigger(bool allow)
{
    willChangeValueForKey(u"allowRelativeTrigger"_s);
    m_allowRelativeTrigger = allow;
    didChangeValueForKey(u"allowRelativeTrigger"_s);
    updateTriggerControls();
}

void VTAlarmEditController::observeValueForKeyPath_ofObject_change_context(
    const QString & /*keyPath*/, KeyValueObject * /*object*/, const KeyValueChange & /*change*/, void * /*context*/)
{
    updateActionControls();
}

void VTAlarmEditController::updateTriggerControls()
{
    if (!m_window)
        return;
    check(*m_triggers, m_isAbsolute ? m_ui->absoluteRadio : m_ui->relativeRadio);
    m_ui->relativeRadio->setEnabled(m_allowRelativeTrigger);
    for (QWidget *control : std::initializer_list<QWidget *> {
             m_triggerRelativeDuration, m_triggerRelativeUnit, m_triggerRelativeRelation })
        control->setEnabled(!m_isAbsolute && m_allowRelativeTrigger);
    m_triggerAbsoluteDate->setEnabled(m_isAbsolute);
}

void VTAlarmEditController::updateActionControls()
{
    if (!m_window || !m_proxyAlarm)
        return;
    const bool isMessage = VTActionIsMessage(*m_proxyAlarm);
    const bool isEmail = VTActionIsEmail(*m_proxyAlarm);
    const bool isFile = VTActionIsFile(*m_proxyAlarm);
    QAbstractButton *on = nullptr;
    if (isMessage)
        on = m_ui->messageRadio;
    else if (isEmail)
        on = m_ui->emailRadio;
    else if (isFile)
        on = m_ui->fileRadio;
    check(*m_actions, on);
    m_actionSound->setEnabled(isMessage);
    m_actionEmailAddress->setEnabled(isEmail);
    m_actionFilePath->setEnabled(isFile);
}
