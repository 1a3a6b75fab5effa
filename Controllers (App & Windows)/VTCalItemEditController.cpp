// SPDX-License-Identifier: MIT
#include "VTCalItemEditController.h"

#include "VTSheetForm.h"

#include <CalAlarm+VTHelper.h>
#include <CalCalendar+VTHelper.h>
#include <CalCalendarStore.h>
#include <DesktopAlerts.h>
#include <KLVBarButton.h>
#include <KLVMetrics.h>
#include <QUrl+VTHelper.h>

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr double dotSize = 10;
constexpr double notesHeight = 56;
constexpr double longestCalendarTitle = 220;

QString reasonNotToHold(CalItemKind kind)
{
    return kind == CalItemKind::Event ? QCoreApplication::translate("Vantle", "The calendar cannot hold events.")
                                      : QCoreApplication::translate("Vantle", "The calendar cannot hold to-dos.");
}

QString fieldText(const std::optional<QUrl> &url)
{
    return url ? url->toString(QUrl::FullyEncoded) : QString();
}

} // namespace

VTCalItemEditController::VTCalItemEditController(
    const VTEditServices &services, const QString &relativeTitle, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_ownAlarmController(services, relativeTitle)
{
}

VTCalItemEditController::~VTCalItemEditController()
{
    delete m_window.data();
}

QVariant VTCalItemEditController::valueForKey(const QString &key) const
{
    return property(key.toLatin1().constData());
}

void VTCalItemEditController::needWindow()
{
    if (m_window)
        return;
    loadWindow();
    m_window->setController(this);
    awakeFromNib();
}

void VTCalItemEditController::setUpCommonControls(const VTCommonControls &controls)
{
    setTitleField(&controls.titleField);
    setCalendarsPopUp(&controls.calendarsPopUp);
    setAlarmsTable(&controls.alarmsTable);
    setUrlField(&controls.urlField);
    m_notesView = &controls.notesView;
    m_removeAlarmButton = &controls.removeAlarmButton;
    VTSheetForm::setUpCaption(controls.titleCaption, QCoreApplication::translate("Vantle", "Title"));
    VTSheetForm::setUpCaption(controls.calendarCaption, QCoreApplication::translate("Vantle", "Calendar"));
    VTSheetForm::setUpCaption(controls.urlCaption, QCoreApplication::translate("Vantle", "Link"));
    VTSheetForm::setUpCaption(controls.notesCaption, QCoreApplication::translate("Vantle", "Notes"));
    VTSheetForm::setUpCaption(controls.alarmsCaption, QCoreApplication::translate("Vantle", "Alarms"));
    VTSheetForm::setUpTitleField(controls.titleField);
    VTSheetForm::setName(controls.titleField, controls.titleCaption.text());
    VTSheetForm::setName(controls.calendarsPopUp, controls.calendarCaption.text());
    VTSheetForm::setName(controls.urlField, controls.urlCaption.text());
    VTSheetForm::setName(controls.notesView, controls.notesCaption.text());
    controls.notesView.setFixedHeight(qRound(KLVMetrics(QApplication::font()).length(notesHeight)));
    VTSheetForm::setName(controls.alarmsTable, controls.alarmsCaption.text());
    controls.alarmsTable.setButtonTitle(QCoreApplication::translate("Vantle", "Edit Alarm"));
    controls.addAlarmButton.setSign(KLVSign::Plus);
    VTSheetForm::setName(controls.addAlarmButton, QCoreApplication::translate("Vantle", "Add Alarm"));
    controls.addAlarmButton.setToolTip(controls.addAlarmButton.accessibleName());
    controls.removeAlarmButton.setSign(KLVSign::Minus);
    VTSheetForm::setName(controls.removeAlarmButton, QCoreApplication::translate("Vantle", "Remove Alarm"));
    controls.removeAlarmButton.setToolTip(controls.removeAlarmButton.accessibleName());
    controls.cancelButton.setText(QCoreApplication::translate("Vantle", "Cancel"));
    controls.saveButton.setText(QCoreApplication::translate("Vantle", "Save"));

    // Assistive technology sets texts too, which is no edit to the field.
    connect(m_titleField, &QLineEdit::textChanged, this,
        [this](const QString &text) { m_proxyCalItem->setTitle(VTSheetForm::presentText(text)); });
    connect(m_notesView, &QPlainTextEdit::textChanged, this,
        [this] { m_proxyCalItem->setNotes(VTSheetForm::presentText(m_notesView->toPlainText())); });
    connect(m_calendarsPopUp, &QComboBox::activated, this, &VTCalItemEditController::calendarWasChosen);
    connect(&controls.addAlarmButton, &QAbstractButton::clicked, this, [this] { showAlarmEditSheetWithNewAlarm(); });
    connect(m_removeAlarmButton, &QAbstractButton::clicked, this, [this] { removeSelectedAlarm(); });
}

void VTCalItemEditController::awakeFromNib()
{
    connect(
        &m_services.store, &CalCalendarStore::notificationPosted, this, [this](const CalNotification &notification) {
            if (notification.name == CalCalendarsChangedNotification
                || notification.name == CalCalendarsChangedExternallyNotification)
                updateCalendarsPopup();
        });
    m_alarmsTable->setDataSource(this);
    connect(m_alarmsTable, &KLVTableView::buttonPressed, this, [this] { showAlarmEditSheetWithSelectedAlarm(); });
    connect(m_alarmsTable, &KLVTableView::removalRequested, this, [this] { removeSelectedAlarm(); });
    connect(m_alarmsTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &VTCalItemEditController::updateRemoveButton);
}

void VTCalItemEditController::fillSheet(const CalCalendarItemPtr &item, const CalCalendarItemPtr &copy)
{
    needWindow();
    setOriginalCalItem(item);
    setProxyCalItem(copy);
    fillTexts();
    fillOwnControls();
    fillUrlAndCalendar();
}

void VTCalItemEditController::endSheet()
{
    if (m_window)
        m_window->endSheet();
}

void VTCalItemEditController::fillTexts()
{
    const QSignalBlocker titleBlocker(m_titleField);
    const QSignalBlocker notesBlocker(m_notesView);
    m_titleField->setText(VTSheetForm::oneLine(m_proxyCalItem->title()));
    m_titleField->selectAll();
    m_notesView->setPlainText(m_proxyCalItem->notes().value_or(QString()));
}

void VTCalItemEditController::fillUrlAndCalendar()
{
    m_urlField->setText(fieldText(m_proxyCalItem->url()));
    updateControls();
    selectCalendarOfItem();
    m_alarmsTable->deselectAll();
    m_alarmsTable->reloadData();
    updateRemoveButton();
}

void VTCalItemEditController::selectCalendarOfItem()
{
    const CalCalendarPtr &calendar = m_proxyCalItem->calendar();
    for (int index = 0; calendar && index < m_calendarsPopUp->count(); ++index) {
        if (m_calendarsPopUp->itemData(index).value<CalCalendarPtr>()->uid() == calendar->uid()) {
            m_calendarsPopUp->setCurrentIndex(index);
            return;
        }
    }
}

void VTCalItemEditController::takeUrl()
{
    const std::optional<QUrl> url = URLWithDefaultHTTPScheme(m_urlField->text());
    // A stored address that is none by today's rules is not lost because the title was changed.
    if (url || m_urlField->text() != fieldText(m_originalCalItem->url()))
        m_proxyCalItem->setUrl(url);
}

void VTCalItemEditController::showError(const StoreError &error)
{
    m_services.alerts.runModal(error.message());
}

void VTCalItemEditController::showAlarmEditSheetWithNewAlarm(QObject * /*sender*/)
{
    m_alarmController->editAlarm_allowRelativeTrigger_attachedToWindow_delegate(
        std::make_shared<CalAlarm>(), allowRelativeTrigger(), m_window, this);
}

void VTCalItemEditController::showAlarmEditSheetWithSelectedAlarm(QObject * /*sender*/)
{
    m_alarmController->editAlarm_allowRelativeTrigger_attachedToWindow_delegate(
        m_proxyCalItem->alarms().at(m_alarmsTable->selectedRow()), allowRelativeTrigger(), m_window, this);
}

void VTCalItemEditController::removeSelectedAlarm(QObject * /*sender*/)
{
    const int row = m_alarmsTable->selectedRow();
    if (row >= 0 && row < m_proxyCalItem->alarms().size())
        m_proxyCalItem->removeAlarm(m_proxyCalItem->alarms().at(row));
    if (m_proxyCalItem->alarms().isEmpty())
        m_alarmsTable->deselectAll();
    m_alarmsTable->reloadData();
    updateRemoveButton();
}

void VTCalItemEditController::updateAlarm_withAlarm(const CalAlarmPtr &alarm, const CalAlarmPtr &newAlarm)
{
    m_proxyCalItem->removeAlarm(alarm);
    m_proxyCalItem->addAlarm(newAlarm);
    m_alarmsTable->reloadData();
    updateRemoveButton();
}

void VTCalItemEditController::updateRemoveButton()
{
    m_removeAlarmButton->setEnabled(m_alarmsTable->isEnabled() && m_alarmsTable->selectedRow() >= 0);
}

int VTCalItemEditController::numberOfRowsInTableView(KLVTableView *tableView)
{
    if (tableView != m_alarmsTable || !m_proxyCalItem)
        return 0;
    const auto alarms = static_cast<int>(m_proxyCalItem->alarms().size());
    tableView->setEnabled(alarms > 0);
    return alarms > 0 ? alarms : 1;
}

QVariant VTCalItemEditController::tableView_objectValueForTableColumn_row(KLVTableView *tableView, int column, int row)
{
    if (tableView != m_alarmsTable || column != 0 || m_proxyCalItem->alarms().isEmpty())
        return {};
    return VTSheetForm::oneLine(VTDescriptionForDisplay(*m_proxyCalItem->alarms().at(row)));
}

void VTCalItemEditController::updateControls(QObject * /*sender*/)
{
    updateCalendarsPopup();
}

void VTCalItemEditController::updateCalendarsPopup(QObject * /*sender*/)
{
    if (!m_calendarsPopUp || !m_proxyCalItem)
        return;
    const CalItemKind kind = m_proxyCalItem->kind();
    const CalCalendarPtr &chosen = m_proxyCalItem->calendar();
    const KLVMetrics metrics(QApplication::font());
    m_calendarsPopUp->clear();
    QString placeholder = QCoreApplication::translate("Vantle", "Choose a calendar");
    // The pop-up wants to be as wide as this text, and the sheet as its pop-up.
    if (chosen) {
        placeholder = QFontMetrics(m_calendarsPopUp->font())
                          .elidedText(VTSheetForm::oneLine(chosen->title()), Qt::ElideRight,
                              qRound(metrics.length(longestCalendarTitle)));
    }
    m_calendarsPopUp->setPlaceholderText(placeholder);
    const int dot = qRound(metrics.length(dotSize));
    m_calendarsPopUp->setIconSize({ dot, dot });
    const CalCalendarList calendars = m_services.store.calendars();
    for (const CalCalendarPtr &calendar : calendars) {
        if (!calendar->isEditable())
            continue;
        // In points, which are larger for a larger font.
        const qreal ratio = m_calendarsPopUp->devicePixelRatioF();
        QImage image = colorDot(*calendar, ratio * metrics.length(1));
        image.setDevicePixelRatio(ratio);
        m_calendarsPopUp->addItem(
            QIcon(QPixmap::fromImage(image)), VTSheetForm::oneLine(calendar->title()), QVariant::fromValue(calendar));
        if (!calendar->holds(kind))
            m_calendarsPopUp->setItemDisabled(m_calendarsPopUp->count() - 1, reasonNotToHold(kind));
    }
    m_calendarsPopUp->setCurrentIndex(-1);
}

void VTCalItemEditController::calendarWasChosen(int index)
{
    m_proxyCalItem->setCalendar(m_calendarsPopUp->itemData(index).value<CalCalendarPtr>());
}
