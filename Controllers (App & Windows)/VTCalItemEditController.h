// SPDX-License-Identifier: MIT
#pragma once

#include "VTAlarmEditController.h"
#include "VTEditServices.h"

#include <CalCalendarItem.h>
#include <KLVPopUpButton.h>
#include <KLVSheet.h>
#include <KLVTableView.h>
#include <KeyValueObject.h>

#include <QLineEdit>
#include <QObject>
#include <QPointer>

class KLVBarButton;
class QLabel;
class QPlainTextEdit;
class QPushButton;
struct StoreError;

// What both forms have, under the same names.
struct VTCommonControls {
    QLineEdit &titleField;
    KLVPopUpButton &calendarsPopUp;
    KLVTableView &alarmsTable;
    QLineEdit &urlField;
    QPlainTextEdit &notesView;
    KLVBarButton &addAlarmButton;
    KLVBarButton &removeAlarmButton;
    QPushButton &cancelButton;
    QPushButton &saveButton;
    QLabel &titleCaption;
    QLabel &calendarCaption;
    QLabel &urlCaption;
    QLabel &notesCaption;
    QLabel &alarmsCaption;
};

template <typename Form> VTCommonControls VTCommonControlsOf(const Form &form)
{
    return { *form.titleField, *form.calendarsPopUp, *form.alarmsTable, *form.urlField, *form.notesView,
        *form.addAlarmButton, *form.removeAlarmButton, *form.cancelButton, *form.saveButton, *form.titleCaption,
        *form.calendarCaption, *form.urlCaption, *form.notesCaption, *form.alarmsCaption };
}

// What the sheets that edit an event and a to-do have in common.
//
// All edits go to a deep copy of the item, the proxy; only a save copies it back
// into the item that was handed in. So cancelling has nothing to undo. Controls
// write into the proxy only what the person changes, and nothing but an opening
// fills them: what is typed survives every change of the store. One controller
// serves every opening; its window is made at the first one.
class VTCalItemEditController : public QObject,
                                public KeyValueObject,
                                public VTAlarmEditDelegate,
                                public KLVTableViewDataSource
{
    Q_OBJECT
    Q_PROPERTY(VTAlarmEditController *alarmController READ alarmController WRITE setAlarmController)
    Q_PROPERTY(QLineEdit *titleField READ titleField WRITE setTitleField)
    Q_PROPERTY(KLVPopUpButton *calendarsPopUp READ calendarsPopUp WRITE setCalendarsPopUp)
    Q_PROPERTY(KLVTableView *alarmsTable READ alarmsTable WRITE setAlarmsTable)
    Q_PROPERTY(QLineEdit *urlField READ urlField WRITE setUrlField)
    Q_PROPERTY(CalCalendarItemPtr originalCalItem READ originalCalItem WRITE setOriginalCalItem)
    Q_PROPERTY(CalCalendarItemPtr proxyCalItem READ proxyCalItem WRITE setProxyCalItem)

public:
    ~VTCalItemEditController() override;

    // Null before the first opening.
    KLVSheet *window() const { return m_window; }
    bool isOpen() const { return m_window && m_window->sheetParent(); }

    // Whether alarms may be relative to the item's time at this moment.
    virtual bool allowRelativeTrigger() const { return true; }

    Q_INVOKABLE void showAlarmEditSheetWithNewAlarm(QObject *sender = nullptr);
    // A row must be selected.
    Q_INVOKABLE void showAlarmEditSheetWithSelectedAlarm(QObject *sender = nullptr);
    Q_INVOKABLE void removeSelectedAlarm(QObject *sender = nullptr);
    // The entries anew, with none of them selected.
    Q_INVOKABLE void updateCalendarsPopup(QObject *sender = nullptr);
    Q_INVOKABLE void updateControls(QObject *sender = nullptr);

    int numberOfRowsInTableView(KLVTableView *tableView) override;
    QVariant tableView_objectValueForTableColumn_row(KLVTableView *tableView, int column, int row) override;
    void updateAlarm_withAlarm(const CalAlarmPtr &alarm, const CalAlarmPtr &newAlarm) override;

    VTAlarmEditController *alarmController() const { return m_alarmController; }
    void setAlarmController(VTAlarmEditController *controller) { m_alarmController = controller; }
    QLineEdit *titleField() const { return m_titleField; }
    void setTitleField(QLineEdit *field) { m_titleField = field; }
    KLVPopUpButton *calendarsPopUp() const { return m_calendarsPopUp; }
    void setCalendarsPopUp(KLVPopUpButton *popUp) { m_calendarsPopUp = popUp; }
    KLVTableView *alarmsTable() const { return m_alarmsTable; }
    void setAlarmsTable(KLVTableView *table) { m_alarmsTable = table; }
    QLineEdit *urlField() const { return m_urlField; }
    void setUrlField(QLineEdit *field) { m_urlField = field; }
    const CalCalendarItemPtr &originalCalItem() const { return m_originalCalItem; }
    void setOriginalCalItem(const CalCalendarItemPtr &item) { m_originalCalItem = item; }
    const CalCalendarItemPtr &proxyCalItem() const { return m_proxyCalItem; }
    void setProxyCalItem(const CalCalendarItemPtr &item) { m_proxyCalItem = item; }

    QVariant valueForKey(const QString &key) const override;

protected:
    VTCalItemEditController(const VTEditServices &services, const QString &relativeTitle, QObject *parent);

    const VTEditServices &services() const { return m_services; }

    // Makes the sheet's window, with the subclass's form in it.
    virtual void loadWindow() = 0;
    void setWindow(KLVSheet *window) { m_window = window; }
    void setUpCommonControls(const VTCommonControls &controls);

    // The steps that every opening has, in their order, up to the sheet's showing.
    void fillSheet(const CalCalendarItemPtr &item, const CalCalendarItemPtr &copy);
    // Among them: the controls that only one of the sheets has, from the proxy.
    virtual void fillOwnControls() = 0;
    // Closes the sheet. Nothing happens when it is not open.
    void endSheet();
    void takeUrl();
    void showError(const StoreError &error);

private:
    void needWindow();
    void awakeFromNib();
    void fillTexts();
    void fillUrlAndCalendar();
    void selectCalendarOfItem();
    void calendarWasChosen(int index);
    void updateRemoveButton();

    VTEditServices m_services;
    QPointer<KLVSheet> m_window; // ours while no window has it as its sheet
    VTAlarmEditController m_ownAlarmController;
    VTAlarmEditController *m_alarmController = &m_ownAlarmController;
    QPointer<QLineEdit> m_titleField;
    QPointer<KLVPopUpButton> m_calendarsPopUp;
    QPointer<KLVTableView> m_alarmsTable;
    QPointer<QLineEdit> m_urlField;
    QPointer<QPlainTextEdit> m_notesView;
    QPointer<QAbstractButton> m_removeAlarmButton;
    CalCalendarItemPtr m_originalCalItem;
    CalCalendarItemPtr m_proxyCalItem;
};
