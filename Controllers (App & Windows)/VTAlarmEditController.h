// SPDX-License-Identifier: MIT
#pragma once

#include "VTEditServices.h"

#include <CalAlarm.h>
#include <KLVDatePicker.h>
#include <KLVPopUpButton.h>
#include <KeyValueObject.h>

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QUrl>

#include <memory>
#include <optional>

class KLVSheet;
class QButtonGroup;

namespace Ui
{
class VTAlarmEdit;
}

// Hears what became of an alarm.
class VTAlarmEditDelegate
{
public:
    VTAlarmEditDelegate() = default;
    virtual ~VTAlarmEditDelegate() = default;
    VTAlarmEditDelegate(const VTAlarmEditDelegate &) = delete;
    VTAlarmEditDelegate &operator=(const VTAlarmEditDelegate &) = delete;

    // Once, when the person confirms, after the sheet has closed. The first is the alarm that was
    // handed in, untouched; the second takes its place.
    virtual void updateAlarm_withAlarm(const CalAlarmPtr &alarm, const CalAlarmPtr &newAlarm) = 0;
};

// Edits one alarm in a sheet over the sheet of its item.
//
// Works on a copy, which the delegate gets when the person confirms; cancelling
// tells nobody. One controller serves every alarm of an item sheet: each opening
// fills all controls anew. The window is made at the first opening. Nothing that
// is entered is refused: a duration that is no number counts as 0.
class VTAlarmEditController final : public QObject, public KeyValueObject, public KeyValueObserver
{
    Q_OBJECT
    Q_PROPERTY(QLineEdit *triggerRelativeDuration READ triggerRelativeDuration WRITE setTriggerRelativeDuration)
    Q_PROPERTY(KLVPopUpButton *triggerRelativeUnit READ triggerRelativeUnit WRITE setTriggerRelativeUnit)
    Q_PROPERTY(KLVPopUpButton *triggerRelativeRelation READ triggerRelativeRelation WRITE setTriggerRelativeRelation)
    Q_PROPERTY(KLVDatePicker *triggerAbsoluteDate READ triggerAbsoluteDate WRITE setTriggerAbsoluteDate)
    Q_PROPERTY(KLVPopUpButton *actionSound READ actionSound WRITE setActionSound)
    Q_PROPERTY(QLineEdit *actionEmailAddress READ actionEmailAddress WRITE setActionEmailAddress)
    Q_PROPERTY(QPushButton *actionFilePath READ actionFilePath WRITE setActionFilePath)
    Q_PROPERTY(CalAlarmPtr originalAlarm READ originalAlarm WRITE setOriginalAlarm)
    Q_PROPERTY(CalAlarmPtr proxyAlarm READ proxyAlarm WRITE setProxyAlarm)
    Q_PROPERTY(bool isAbsolute READ isAbsolute WRITE setIsAbsolute)
    Q_PROPERTY(bool allowRelativeTrigger READ allowRelativeTrigger WRITE setAllowRelativeTrigger)
    Q_PROPERTY(std::optional<QUrl> filePath READ filePath WRITE setFilePath)

public:
    // What "Relative to …" calls the item's time, in the user's language.
    VTAlarmEditController(const VTEditServices &services, QString relativeTitle, QObject *parent = nullptr);
    ~VTAlarmEditController() override;

    // Null before the first opening.
    KLVSheet *window() const;

    // The window and the delegate must be there until the sheet is closed. Without relative triggers
    // the sheet offers an absolute one only.
    void editAlarm_allowRelativeTrigger_attachedToWindow_delegate(
        const CalAlarmPtr &alarm, bool allowRelativeTrigger, QWidget *window, VTAlarmEditDelegate *delegate);
    Q_INVOKABLE void endAlarmEditSheetAndReturnAlarm(QObject *sender = nullptr);
    Q_INVOKABLE void cancelAlarmEditSheet(QObject *sender = nullptr);
    Q_INVOKABLE void showSelectFilePathDialog(QObject *sender = nullptr);
    Q_INVOKABLE void insertNewline(QObject *sender = nullptr);
    Q_INVOKABLE void cancelOperation(QObject *sender = nullptr);

    QLineEdit *triggerRelativeDuration() const { return m_triggerRelativeDuration; }
    void setTriggerRelativeDuration(QLineEdit *field) { m_triggerRelativeDuration = field; }
    KLVPopUpButton *triggerRelativeUnit() const { return m_triggerRelativeUnit; }
    void setTriggerRelativeUnit(KLVPopUpButton *popUp) { m_triggerRelativeUnit = popUp; }
    KLVPopUpButton *triggerRelativeRelation() const { return m_triggerRelativeRelation; }
    void setTriggerRelativeRelation(KLVPopUpButton *popUp) { m_triggerRelativeRelation = popUp; }
    KLVDatePicker *triggerAbsoluteDate() const { return m_triggerAbsoluteDate; }
    void setTriggerAbsoluteDate(KLVDatePicker *picker) { m_triggerAbsoluteDate = picker; }
    KLVPopUpButton *actionSound() const { return m_actionSound; }
    void setActionSound(KLVPopUpButton *popUp) { m_actionSound = popUp; }
    QLineEdit *actionEmailAddress() const { return m_actionEmailAddress; }
    void setActionEmailAddress(QLineEdit *field) { m_actionEmailAddress = field; }
    QPushButton *actionFilePath() const { return m_actionFilePath; }
    void setActionFilePath(QPushButton *button) { m_actionFilePath = button; }

    // Not owned.
    VTAlarmEditDelegate *delegate() const { return m_delegate; }
    void setDelegate(VTAlarmEditDelegate *delegate) { m_delegate = delegate; }
    const CalAlarmPtr &originalAlarm() const { return m_originalAlarm; }
    void setOriginalAlarm(const CalAlarmPtr &alarm) { m_originalAlarm = alarm; }
    const CalAlarmPtr &proxyAlarm() const { return m_proxyAlarm; }
    void setProxyAlarm(const CalAlarmPtr &alarm);
    bool isAbsolute() const { return m_isAbsolute; }
    void setIsAbsolute(bool isAbsolute);
    bool allowRelativeTrigger() const { return m_allowRelativeTrigger; }
    void setAllowRelativeTrigger(bool allow);
    const std::optional<QUrl> &filePath() const { return m_filePath; }
    // Shows the file's name too.
    void setFilePath(const std::optional<QUrl> &url);
    void setFilePathSynth(const std::optional<QUrl> &url) { m_filePath = url; }

    QVariant valueForKey(const QString &key) const override;
    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange &change, void *context) override;

private:
    void loadWindow();
    void setUpTexts();
    void fillPopUps();
    void connectControls();
    void fillRelativeTrigger();
    void selectSound();
    void soundWasChosen(int index);
    void takeTrigger();
    void takeActionDetails();
    void updateTriggerControls();
    void updateActionControls();

    VTEditServices m_services;
    QString m_relativeTitle;
    QPointer<KLVSheet> m_window; // ours while no window has it as its sheet
    std::unique_ptr<Ui::VTAlarmEdit> m_ui;
    QPointer<QButtonGroup> m_triggers;
    QPointer<QButtonGroup> m_actions;

    QPointer<QLineEdit> m_triggerRelativeDuration;
    QPointer<KLVPopUpButton> m_triggerRelativeUnit;
    QPointer<KLVPopUpButton> m_triggerRelativeRelation;
    QPointer<KLVDatePicker> m_triggerAbsoluteDate;
    QPointer<KLVPopUpButton> m_actionSound;
    QPointer<QLineEdit> m_actionEmailAddress;
    QPointer<QPushButton> m_actionFilePath;
    VTAlarmEditDelegate *m_delegate = nullptr;
    CalAlarmPtr m_originalAlarm;
    CalAlarmPtr m_proxyAlarm;
    bool m_isAbsolute = false;
    bool m_allowRelativeTrigger = true;
    std::optional<QUrl> m_filePath;
};

// The number that a text begins with, 0 for a text that begins with none. Point and comma both
// stand before the fraction.
double VTLeadingNumber(const QString &text);
