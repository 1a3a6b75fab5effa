// SPDX-License-Identifier: MIT
#pragma once

#include "VTCalItemEditController.h"

#include <CalTask.h>
#include <KLVDatePicker.h>
#include <KeyValueBinding.h>

namespace Ui
{
class VTTaskEdit;
}

// The sheet that edits one to-do, new or existing. Without a due date its alarms
// can be absolute ones only: there is nothing that they could be relative to.
class VTTaskEditController final : public VTCalItemEditController
{
    Q_OBJECT
    Q_PROPERTY(KLVDatePicker *dueDatePicker READ dueDatePicker WRITE setDueDatePicker)
    Q_PROPERTY(bool dueDateIsSet READ dueDateIsSet WRITE setDueDateIsSet)

public:
    explicit VTTaskEditController(const VTEditServices &services, QObject *parent = nullptr);
    ~VTTaskEditController() override;

    bool allowRelativeTrigger() const override { return m_dueDateIsSet; }

    void updateAlarm_withAlarm(const CalAlarmPtr &alarm, const CalAlarmPtr &newAlarm) override;

    void showTaskEditSheetWithTask_attachToWindow(const CalTaskPtr &task, QWidget *parentWindow);
    Q_INVOKABLE void endTaskEditSheetAndSaveTask(QObject *sender = nullptr);
    Q_INVOKABLE void cancelTaskEditSheet(QObject *sender = nullptr);
    Q_INVOKABLE void insertNewline(QObject *sender = nullptr);
    Q_INVOKABLE void cancelOperation(QObject *sender = nullptr);

    KLVDatePicker *dueDatePicker() const { return m_dueDatePicker; }
    void setDueDatePicker(KLVDatePicker *picker) { m_dueDatePicker = picker; }
    // The picker's date counts only while it is.
    bool dueDateIsSet() const { return m_dueDateIsSet; }
    void setDueDateIsSet(bool isSet);

protected:
    void loadWindow() override;
    void fillOwnControls() override;

private:
    CalTask &proxyTask() const;
    void setUpPriorities();
    void takeDueDate();

    std::unique_ptr<Ui::VTTaskEdit> m_ui;
    std::unique_ptr<KeyValueBinding> m_dueDateSwitchBinding;
    QPointer<KLVDatePicker> m_dueDatePicker;
    bool m_dueDateIsSet = false;
};
