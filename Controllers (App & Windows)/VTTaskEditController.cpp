// SPDX-License-Identifier: MIT
#include "VTTaskEditController.h"

#include "VTSheetForm.h"
#include "ui_VTTaskEdit.h"

#include <AssertionHandler.h>
#include <CalCalendarStore.h>
#include <CalTask+VTHelpers.h>
#include <Clock.h>
#include <QDateTime+VTHelper.h>

#include <QCoreApplication>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace
{

const QString sourceName = u"Controllers (App & Windows)/VTTaskEditController"_s;
constexpr int missingTaskLine = 91;
constexpr int missingWindowLine = 92;

constexpr double sheetWidth = 400; // points

// RFC 5545, section 3.8.1.9.
constexpr int noPriority = 0;
constexpr int highPriority = 1;
constexpr int mediumPriority = 5;
constexpr int lowPriority = 9;

// The one of the four that stands for any number.
int namedPriority(int priority)
{
    if (priority <= noPriority)
        return noPriority;
    if (priority < mediumPriority)
        return highPriority;
    return priority == mediumPriority ? mediumPriority : lowPriority;
}

} // namespace

VTTaskEditController::VTTaskEditController(const VTEditServices &services, QObject *parent)
    : VTCalItemEditController(services, QCoreApplication::translate("Vantle", "Relative to the due date"), parent)
{
}

VTTaskEditController::~VTTaskEditController() = default;

void VTTaskEditController::loadWindow()
{
    auto *const sheet = new KLVSheet(nullptr);
    setWindow(sheet);
    m_ui = std::make_unique<Ui::VTTaskEdit>();
    m_ui->setupUi(sheet);
    setDueDatePicker(m_ui->dueDatePicker);

    VTSheetForm::setUpSheet(*sheet, sheetWidth, QCoreApplication::translate("Vantle", "To do"));
    setUpCommonControls(VTCommonControlsOf(*m_ui));
    VTSheetForm::setUpCaption(*m_ui->priorityCaption, QCoreApplication::translate("Vantle", "Priority"));
    VTSheetForm::setUpCaption(*m_ui->dueCaption, QCoreApplication::translate("Vantle", "Due"));
    m_ui->dueDateCheckBox->setText(QCoreApplication::translate("Vantle", "Has a due date"));
    VTSheetForm::setName(*m_ui->priorityPopUp, m_ui->priorityCaption->text());
    VTSheetForm::setUpPicker(*m_dueDatePicker, m_ui->dueCaption->text());
    setUpPriorities();

    // Assistive technology toggles without a click.
    connect(m_ui->dueDateCheckBox, &QCheckBox::toggled, this, &VTTaskEditController::setDueDateIsSet);
    m_dueDateSwitchBinding = std::make_unique<KeyValueBinding>(*this, u"dueDateIsSet"_s, [this](const QVariant &isSet) {
        const QSignalBlocker blocker(m_ui->dueDateCheckBox);
        m_ui->dueDateCheckBox->setChecked(isSet.toBool());
        m_dueDatePicker->setEnabled(isSet.toBool());
    });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { cancelTaskEditSheet(); });
    connect(m_ui->saveButton, &QPushButton::clicked, this, [this] { endTaskEditSheetAndSaveTask(); });
}

void VTTaskEditController::setUpPriorities()
{
    KLVPopUpButton &popUp = *m_ui->priorityPopUp;
    popUp.addItem(QCoreApplication::translate("Vantle", "None"), noPriority);
    popUp.addItem(QCoreApplication::translate("Vantle", "Low"), lowPriority);
    popUp.addItem(QCoreApplication::translate("Vantle", "Medium"), mediumPriority);
    popUp.addItem(QCoreApplication::translate("Vantle", "High"), highPriority);
    connect(&popUp, &QComboBox::activated, this,
        [this](int index) { proxyTask().setPriority(m_ui->priorityPopUp->itemData(index).toInt()); });
}

CalTask &VTTaskEditController::proxyTask() const
{
    return static_cast<CalTask &>(*proxyCalItem());
}

void VTTaskEditController::setDueDateIsSet(bool isSet)
{
    willChangeValueForKey(u"dueDateIsSet"_s);
    m_dueDateIsSet = isSet;
    didChangeValueForKey(u"dueDateIsSet"_s);
}

void VTTaskEditController::showTaskEditSheetWithTask_attachToWindow(const CalTaskPtr &task, QWidget *parentWindow)
{
    if (!task) {
        AssertionHandler::current().handleFailure(
            u"showTaskEditSheetWithTask:attachToWindow: invoked with oTask == nil"_s, sourceName, missingTaskLine);
        return;
    }
    if (!parentWindow) {
        AssertionHandler::current().handleFailure(
            u"showTaskEditSheetWithTask:attachToWindow: invoked with parentWindow == nil"_s, sourceName,
            missingWindowLine);
        return;
    }

    fillSheet(task, VTDeepCopy(*task));
    titleField()->setFocus(Qt::OtherFocusReason);
    window()->beginSheet(parentWindow);
}

void VTTaskEditController::fillOwnControls()
{
    const CalTask &task = proxyTask();
    m_ui->priorityPopUp->setCurrentIndex(m_ui->priorityPopUp->findData(namedPriority(task.priority())));
    m_dueDatePicker->setDateValue(task.dueDate().value_or(services().clock.now()));
    setDueDateIsSet(VTDueDateIsSet(task));
}

void VTTaskEditController::endTaskEditSheetAndSaveTask(QObject * /*sender*/)
{
    cancelTaskEditSheet();
    takeUrl();
    takeDueDate();

    const auto task = std::static_pointer_cast<CalTask>(originalCalItem());
    VTUpdatePropertiesFromTask(*task, proxyTask());
    StoreError error;
    if (!services().store.saveTask_error(task, &error))
        showError(error);
}

void VTTaskEditController::takeDueDate()
{
    CalTask &task = proxyTask();
    if (!m_dueDateIsSet) {
        task.setDueDate(std::nullopt);
        task.setIsDueDateOnly(false);
        return;
    }
    const QDateTime due = m_dueDatePicker->dateValue();
    // A day without a time stays one until the person gives it a time. It begins at one where the clock skips midnight.
    const bool isAsBefore = task.dueDate() && due.time() == task.dueDate()->time();
    const bool isDay = isAsBefore || due.time() == QTime(0, 0) || due == firstSecondOfDay(due);
    task.setIsDueDateOnly(task.isDueDateOnly() && isDay);
    task.setDueDate(task.isDueDateOnly() ? firstSecondOfDay(due) : due);
}

void VTTaskEditController::updateAlarm_withAlarm(const CalAlarmPtr &alarm, const CalAlarmPtr &newAlarm)
{
    // The due date is a to-do's end. A to-do without a start has nothing else that an alarm could be
    // relative to (RFC 5545, section 3.8.6.3); an alarm that was relative stays so to what it was.
    const bool wasRelative = proxyCalItem()->alarms().contains(alarm) && !alarm->absoluteTrigger();
    if (!wasRelative && !newAlarm->absoluteTrigger())
        newAlarm->setRelatedToEnd(true);
    VTCalItemEditController::updateAlarm_withAlarm(alarm, newAlarm);
}

void VTTaskEditController::cancelTaskEditSheet(QObject * /*sender*/)
{
    endSheet();
}

void VTTaskEditController::insertNewline(QObject * /*sender*/)
{
    endTaskEditSheetAndSaveTask();
}

void VTTaskEditController::cancelOperation(QObject * /*sender*/)
{
    cancelTaskEditSheet();
}
