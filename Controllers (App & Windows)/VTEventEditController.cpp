// SPDX-License-Identifier: MIT
#include "VTEventEditController.h"

#include "VTRecurrenceWords.h"
#include "VTSheetForm.h"
#include "ui_VTEventEdit.h"

#include <AssertionHandler.h>
#include <CalCalendarStore.h>
#include <CalEvent+VTHelper.h>
#include <Clock.h>

#include <QApplication>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace
{

const QString sourceName = u"Controllers (App & Windows)/VTEventEditController"_s;
constexpr int missingEventLine = 102;
constexpr int missingWindowLine = 103;

constexpr double sheetWidth = 420; // points
constexpr qint64 secondsUntilNewStart = 3600;
constexpr qint64 secondsUntilNewEnd = 7200;

} // namespace

VTEventEditController::VTEventEditController(const VTEditServices &services, QObject *parent)
    : VTCalItemEditController(services, QCoreApplication::translate("Vantle", "Relative to the event"), parent)
{
}

VTEventEditController::~VTEventEditController() = default;

void VTEventEditController::loadWindow()
{
    auto *const sheet = new KLVSheet(nullptr);
    setWindow(sheet);
    m_ui = std::make_unique<Ui::VTEventEdit>();
    m_ui->setupUi(sheet);
    setStartDatePicker(m_ui->startDatePicker);
    setEndDatePicker(m_ui->endDatePicker);

    VTSheetForm::setUpSheet(*sheet, sheetWidth, QCoreApplication::translate("Vantle", "Event"));
    setUpCommonControls(VTCommonControlsOf(*m_ui));
    VTSheetForm::setUpCaption(*m_ui->locationCaption, QCoreApplication::translate("Vantle", "Location"));
    VTSheetForm::setUpCaption(*m_ui->startCaption, QCoreApplication::translate("Vantle", "Starts"));
    VTSheetForm::setUpCaption(*m_ui->endCaption, QCoreApplication::translate("Vantle", "Ends"));
    VTSheetForm::setUpCaption(*m_ui->repeatsCaption, QCoreApplication::translate("Vantle", "Repeats"));
    m_ui->allDayCheckBox->setText(QCoreApplication::translate("Vantle", "All day"));
    VTSheetForm::setUpValue(*m_ui->repeatsLabel);
    VTSheetForm::setUpNote(*m_ui->seriesLabel);
    VTSheetForm::setName(*m_ui->locationField, m_ui->locationCaption->text());
    VTSheetForm::setUpPicker(*m_startDatePicker, m_ui->startCaption->text());
    VTSheetForm::setUpPicker(*m_endDatePicker, m_ui->endCaption->text());

    connect(m_ui->locationField, &QLineEdit::textChanged, this,
        [this](const QString &text) { proxyEvent().setLocation(VTSheetForm::presentText(text)); });
    // Assistive technology toggles without a click.
    connect(m_ui->allDayCheckBox, &QCheckBox::toggled, this, [this](bool isAllDay) {
        proxyEvent().setIsAllDay(isAllDay);
        showWholeDays(isAllDay);
    });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { cancelEventEditSheet(); });
    connect(m_ui->saveButton, &QPushButton::clicked, this, [this] { endEventEditSheetAndSaveEvent(); });
}

CalEvent &VTEventEditController::proxyEvent() const
{
    return static_cast<CalEvent &>(*proxyCalItem());
}

void VTEventEditController::showEventEditSheetWithEvent_attachToWindow(const CalEventPtr &event, QWidget *targetWindow)
{
    if (!event) {
        AssertionHandler::current().handleFailure(
            u"showEventEditSheetWithEvent: invoked with oEvent == nil"_s, sourceName, missingEventLine);
        return;
    }
    if (!targetWindow) {
        AssertionHandler::current().handleFailure(
            u"showEventEditSheetWithEvent: invoked with targetWindow == nil"_s, sourceName, missingWindowLine);
        return;
    }

    fillSheet(event, VTDeepCopy(*event));
    window()->beginSheet(targetWindow);
    titleField()->setFocus(Qt::OtherFocusReason);
}

void VTEventEditController::fillOwnControls()
{
    const CalEvent &event = proxyEvent();
    const QDateTime now = services().clock.now();
    const QSignalBlocker locationBlocker(m_ui->locationField);
    const QSignalBlocker allDayBlocker(m_ui->allDayCheckBox);
    m_ui->locationField->setText(VTSheetForm::oneLine(event.location()));
    m_ui->allDayCheckBox->setChecked(event.isAllDay());
    m_startDatePicker->setDateValue(
        event.startDate().isValid() ? event.startDate() : now.addSecs(secondsUntilNewStart));
    m_endDatePicker->setDateValue(event.endDate().isValid() ? event.endDate() : now.addSecs(secondsUntilNewEnd));
    showWholeDays(event.isAllDay());
    fillRepetition();
}

void VTEventEditController::showWholeDays(bool isAllDay)
{
    m_startDatePicker->setShowsTime(!isAllDay);
    m_endDatePicker->setShowsTime(!isAllDay);
}

void VTEventEditController::fillRepetition()
{
    const std::optional<CalRecurrenceRule> &rule = proxyEvent().recurrenceRule();
    for (QWidget *each :
        std::initializer_list<QWidget *> { m_ui->repeatsCaption, m_ui->repeatsLabel, m_ui->seriesLabel })
        each->setVisible(rule.has_value());
    if (!rule)
        return;
    m_ui->repeatsLabel->setText(VTRecurrenceWords::description(*rule, proxyEvent().startDate(), QLocale()));
    m_ui->seriesLabel->setText(
        QCoreApplication::translate("Vantle", "This event repeats %1. Saving changes all its occurrences.")
            .arg(VTRecurrenceWords::every(*rule)));
}

void VTEventEditController::endEventEditSheetAndSaveEvent(QObject * /*sender*/)
{
    cancelEventEditSheet();
    takeUrl();
    proxyEvent().setStartDate(m_startDatePicker->dateValue());
    proxyEvent().setEndDate(m_endDatePicker->dateValue());

    const auto event = std::static_pointer_cast<CalEvent>(originalCalItem());
    VTUpdatePropertiesFromEvent(*event, proxyEvent());
    const std::optional<QString> title = event->title();
    event->setTitle(u"DUMBY "_s + title.value_or(QString()));
    save(event, CalSpanThisEvent, title.value_or(QString()));
    event->setTitle(title);
    save(event, CalSpanAllEvents, title.value_or(QString()));
}

void VTEventEditController::save(const CalEventPtr &event, CalSpan span, const QString &ownTitle)
{
    StoreError error;
    if (services().store.saveEvent_span_error(event, span, &error))
        return;
    // The title of the first step is nothing that the person has ever seen.
    if (error.item == event->title())
        error.item = ownTitle;
    showError(error);
}

void VTEventEditController::cancelEventEditSheet(QObject * /*sender*/)
{
    endSheet();
}

void VTEventEditController::insertNewline(QObject * /*sender*/)
{
    endEventEditSheetAndSaveEvent();
}

void VTEventEditController::cancelOperation(QObject * /*sender*/)
{
    cancelEventEditSheet();
}
