// SPDX-License-Identifier: MIT
#pragma once

#include "VTDateFormatter.h"
#include "VTDayContents.h"
#include "VTEventEditController.h"
#include "VTTaskEditController.h"

#include <CalEvent.h>
#include <CalTask.h>
#include <Clock.h>
#include <KLVAccordionViewDelegate.h>
#include <KLVCheckBoxTable.h>
#include <KLVSplitView.h>
#include <KeyValueBinding.h>
#include <KeyValueObject.h>

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class AlertSounds;
class Beeper;
class CalCalendarStore;
class CalendarApplication;
class DesktopAlerts;
class FileChooser;
class KLVAccordionView;
class KLVDateNavigator;
class KLVDatePicker;
class Presence;
class QAction;
class QLabel;
class Termination;
class UserDefaults;
class VTMainWindow;
class Workspace;

// What the main window works with. All of it outlives the controller.
struct VTMainWindowServices {
    CalCalendarStore &store;
    UserDefaults &defaults;
    Clock &clock;
    Beeper &beeper;
    Workspace &workspace;
    Termination &termination;
    DesktopAlerts &alerts;
    FileChooser &fileChooser;
    const AlertSounds &sounds;
    CalendarApplication *calendarApplication = nullptr; // null where the desktop has none
    Presence *presence = nullptr; // null: the window comes to the front as far as the toolkit gets it
};

// The controller of the one main window: the shown day and its two lists, the
// selection that both share, and the controls around them.
//
// The lists are replaced whole at every refetch; the selection is kept as an
// identifier alone and looked up whenever it is asked for, so that it survives
// them. Works with the state alone when it is given no window.
class VTMainWindowController final : public QObject,
                                     public KeyValueObject,
                                     public KeyValueObserver,
                                     public KLVAccordionViewDelegate,
                                     public KLVCheckBoxTableDataSource,
                                     public KLVSplitViewDelegate
{
    Q_OBJECT
    Q_PROPERTY(QDateTime dateProperty READ dateProperty WRITE setDateProperty)
    Q_PROPERTY(QDateTime date READ date WRITE setDate)
    Q_PROPERTY(CalEventList events READ events WRITE setEvents)
    Q_PROPERTY(CalTaskList tasks READ tasks WRITE setTasks)
    Q_PROPERTY(std::optional<QString> selectedCalItemUID READ selectedCalItemUID WRITE setSelectedCalItemUID)
    Q_PROPERTY(
        std::optional<QStringList> unselectedCalendarsUID READ unselectedCalendarsUID WRITE setUnselectedCalendarsUID)
    Q_PROPERTY(bool showAllCompletedTasks READ showAllCompletedTasks WRITE setShowAllCompletedTasks)
    Q_PROPERTY(bool hideTasksDueAfterThisWeek READ hideTasksDueAfterThisWeek WRITE setHideTasksDueAfterThisWeek)
    Q_PROPERTY(qint32 weekStartDay READ weekStartDay WRITE setWeekStartDay)
    Q_PROPERTY(qint32 taskSortMethod READ taskSortMethod WRITE setTaskSortMethod)
    Q_PROPERTY(bool showCalendarDrawer READ showCalendarDrawer WRITE setShowCalendarDrawer)
    Q_PROPERTY(QString firstEventUID READ firstEventUID)
    Q_PROPERTY(std::optional<QString> lastEventUID READ lastEventUID)
    Q_PROPERTY(QString firstTaskUID READ firstTaskUID)
    Q_PROPERTY(std::optional<QString> lastTaskUID READ lastTaskUID)
    Q_PROPERTY(std::optional<CalCalendarItemList> selectedCalItems READ selectedCalItems)
    Q_PROPERTY(CalCalendarItemPtr selectedCalItem READ selectedCalItem)
    Q_PROPERTY(VTEventEditController *eventEditController READ eventEditController CONSTANT)
    Q_PROPERTY(VTTaskEditController *taskEditController READ taskEditController CONSTANT)
    Q_PROPERTY(QMenu *calItemContextMenu READ calItemContextMenu)
    Q_PROPERTY(QString showHideDateBarMenuTitle READ showHideDateBarMenuTitle)
    Q_PROPERTY(QString showHideCalendarDrawerMenuTitle READ showHideCalendarDrawerMenuTitle)

public:
    explicit VTMainWindowController(const VTMainWindowServices &services, QObject *parent = nullptr);
    ~VTMainWindowController() override;

    // Before awakeFromNib(), which connects its controls. Not owned.
    void setWindow(VTMainWindow *window);
    VTMainWindow *window() const;

    // Start-up, once: reads the settings, shows today and selects the first item.
    void awakeFromNib();

    // --- The day ---

    const QDateTime &dateProperty() const { return m_dateProperty; }
    void setDateProperty(const QDateTime &date);
    const QDateTime &date() const { return dateProperty(); }
    // Shows another day, and follows the clock while that day is today.
    void setDate(const QDateTime &date);

    const CalEventList &events() const { return m_events; }
    void setEvents(const CalEventList &events);
    const CalTaskList &tasks() const { return m_tasks; }
    void setTasks(const CalTaskList &tasks);

    const std::optional<QStringList> &unselectedCalendarsUID() const { return m_unselectedCalendarsUID; }
    void setUnselectedCalendarsUID(const std::optional<QStringList> &uids);
    bool showAllCompletedTasks() const { return m_showAllCompletedTasks; }
    void setShowAllCompletedTasks(bool showAll);
    bool hideTasksDueAfterThisWeek() const { return m_hideTasksDueAfterThisWeek; }
    void setHideTasksDueAfterThisWeek(bool hide);
    qint32 weekStartDay() const { return m_weekStartDay; }
    void setWeekStartDay(qint32 weekday);
    qint32 taskSortMethod() const { return m_taskSortMethod; }
    void setTaskSortMethod(qint32 method);
    bool showCalendarDrawer() const { return m_showCalendarDrawer; }
    void setShowCalendarDrawer(bool show);

    // The first ones may be asked for only when their list is not empty.
    QString firstEventUID() const;
    std::optional<QString> lastEventUID() const;
    QString firstTaskUID() const;
    std::optional<QString> lastTaskUID() const;

    void updateCalItems();
    void sortTasks();
    // Everything anew, with the same selection.
    void calStoreDidChange();
    void saveDefaults();

    // Whether the ten-second timer runs: exactly while today is shown.
    bool hasDateRefresher() const { return m_dateRefresher != nullptr; }

    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange &change, void *context) override;

    // --- The selection and the commands ---

    const std::optional<QString> &selectedCalItemUID() const { return m_selectedCalItemUID; }
    void setSelectedCalItemUID(const std::optional<QString> &uid);
    // The events, or else the to-dos, with the selected identifier; absent when there are none.
    std::optional<CalCalendarItemList> selectedCalItems() const;
    // The last of them, or null.
    CalCalendarItemPtr selectedCalItem() const;

    Q_INVOKABLE void moveSelectionUp(QObject *sender = nullptr);
    Q_INVOKABLE void moveSelectionDown(QObject *sender = nullptr);
    Q_INVOKABLE void moveUp(QObject *sender = nullptr);
    Q_INVOKABLE void moveDown(QObject *sender = nullptr);
    // Ticks or un-ticks every selected to-do. Nothing happens to events.
    Q_INVOKABLE void insertNewline(QObject *sender = nullptr);

    // "delete" is a word of the language. Of a repeating event only the shown occurrence goes. Asks nothing.
    Q_INVOKABLE void delete_(QObject *sender = nullptr);
    // Puts back what was deleted last.
    Q_INVOKABLE void undo(QObject *sender = nullptr);
    Q_INVOKABLE void editSelectedItem(QObject *sender = nullptr);
    Q_INVOKABLE void showSelectedCalItemInICal(QObject *sender = nullptr);
    // In the default calendar. The store holds nothing of it before the sheet saves.
    Q_INVOKABLE void showEventEditSheetWithNewEvent(QObject *sender = nullptr);
    Q_INVOKABLE void showTaskEditSheetWithNewTask(QObject *sender = nullptr);
    Q_INVOKABLE void showWindowAndMakeActiveApp(QObject *sender = nullptr);

    VTEventEditController *eventEditController() const { return m_eventEditController.get(); }
    VTTaskEditController *taskEditController() const { return m_taskEditController.get(); }
    QMenu *calItemContextMenu() const;

    bool respondsToAccordionView_itemForRepresentedObject() const override { return true; }
    KLVAccordionViewItemPtr accordionView_itemForRepresentedObject(
        KLVAccordionView *view, const KeyValueObjectPtr &object) override;
    bool respondsToAccordionView_mouseDown_forRepresentedObject() const override { return true; }
    bool accordionView_mouseDown_forRepresentedObject(
        KLVAccordionView *view, const KLVMouseEvent &event, const KeyValueObjectPtr &object) override;

    // --- The controls ---

    KLVDateNavigator *dateNavigator() const;
    QLabel *dateLabel() const;
    KLVAccordionView *eventsAccordion() const;
    KLVAccordionView *tasksAccordion() const;
    // The formatter that the date label has.
    const VTDateFormatter &dateLabelFormatter() const;
    const VTDateFormatter &headerFromatterWithoutYear() const { return m_headerFromatterWithoutYear; }
    const VTDateFormatter &headerFromatterWithYear() const { return m_headerFromatterWithYear; }

    Q_INVOKABLE void setDateToNow(QObject *sender = nullptr);
    // By the sender's property "tag": so many days on, or to this instant for 0.
    Q_INVOKABLE void setDateRelativeToSenderTag(QObject *sender);
    Q_INVOKABLE void setDateFromDateNavigator(QObject *sender = nullptr);
    Q_INVOKABLE void toogleDateBar(QObject *sender = nullptr);
    QString showHideDateBarMenuTitle() const;
    Q_INVOKABLE void toogleCalendarDrawer(QObject *sender = nullptr);
    QString showHideCalendarDrawerMenuTitle() const;
    // Opens the drawer without a word to the menu's title, and puts the keyboard into its date picker.
    Q_INVOKABLE void jumpToDate(QObject *sender = nullptr);
    void updateControls();

    QAction *SortMethodDueDateMenuItem() const;
    QAction *SortMethodPriorityMenuItem() const;
    QAction *SortMethodTitleMenuItem() const;
    // By one of the three; any other sender changes nothing.
    Q_INVOKABLE void updateTaskSortMethodFromTaskSettingsMenu(QObject *sender);

    KLVCheckBoxTable *calendarsTable() const;
    KLVDatePicker *textDatePicker() const;
    Q_INVOKABLE void selectAllCalendars(QObject *sender = nullptr);
    Q_INVOKABLE void unselectAllCalendars(QObject *sender = nullptr);

    int numberOfRowsInTableView(KLVCheckBoxTable *view) override;
    bool tableView_objectValueForRow(KLVCheckBoxTable *view, int row) override;
    // Whatever the value: the calendar becomes hidden if it is shown, and shown if it is hidden.
    void tableView_setObjectValue_forRow(KLVCheckBoxTable *view, bool value, int row) override;
    void tableView_willDisplayCell_forRow(KLVCheckBoxTable *view, KLVColoredButtonCell &cell, int row) override;

    double splitView_constrainMinCoordinate_ofSubviewAt(
        KLVSplitView *view, double proposedMin, int dividerIndex) override;
    double splitView_constrainMaxCoordinate_ofSubviewAt(
        KLVSplitView *view, double proposedMax, int dividerIndex) override;
    bool splitView_canCollapseSubview(KLVSplitView *view, QWidget *subview) override;
    // A pane that is squeezed below its least height collapses. Gives the size back as it is.
    QSize windowWillResize_toSize(VTMainWindow *window, const QSize &size);

    bool respondsToAccordionView_drawPlaceHolderBackgroundInFrame() const override { return true; }
    void accordionView_drawPlaceHolderBackgroundInFrame(KLVAccordionView *view, const QRectF &frame) override;
    bool respondsToAccordionView_drawSelectedBackgroundForItem_frame() const override { return true; }
    void accordionView_drawSelectedBackgroundForItem_frame(
        KLVAccordionView *view, const KeyValueObjectPtr &object, const QRectF &frame) override;

    QVariant valueForKey(const QString &key) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Sets a value between its two announcements.
    template <typename Value> void assign(const QString &key, Value &field, const Value &value);

    void readSettings();
    void observeSettings();
    // The steps of a refresh, with the lists told that they belong together.
    void refresh(const std::function<void()> &steps);
    VTDayQuestion dayQuestion() const;
    void updateDateRefresher();
    void storeWasLoaded();
    void selectFirstItem();
    void armFirstSelection();
    void disarmFirstSelection();

    void validateSelection();
    void moveFirstResponder(KLVAccordionView *from, KLVAccordionView *to);
    void makeFirstResponder(KLVAccordionView *view);
    void showInICal(const CalCalendarItemPtr &item) const;
    // Whether a sheet has the keyboard: its window then beeps and shows itself, and nothing else.
    bool isEditing() const;
    void connectItemCommands();
    // What the commands on the selected item are called, and whether they can act.
    void offerCalendarApplication();
    void updateItemCommands();
    void popUpContextMenuAtSelection();

    void setUpLists();
    void scrollEventsToTop();
    void connectControls();
    void connectMenu();
    void connectDrawer();
    void connectSplitView();
    // A title that the action takes whenever the key is announced.
    void bindTitle(QAction *action, const QString &key);
    // The action's check mark and the value of the key follow each other.
    void bindCheckMark(QAction *action, const QString &key, void (VTMainWindowController::*setter)(bool));
    void markSortMethod() const;
    void tick();
    void reloadCalendars();
    void showAccountSettings();
    void updateDatePicker() const;
    void updateNotice();
    void tellOfOverwrittenChange(const StoreError &error);
    void showPickedDate(const QDate &day);
    KLVAccordionView *listOfSelection() const;

    VTMainWindowServices m_services;
    QPointer<VTMainWindow> m_window;
    std::unique_ptr<VTEventEditController> m_eventEditController;
    std::unique_ptr<VTTaskEditController> m_taskEditController;
    std::vector<std::unique_ptr<KeyValueBinding>> m_bindings;

    QDateTime m_dateProperty;
    CalEventList m_events;
    CalTaskList m_tasks;
    std::optional<QString> m_selectedCalItemUID;
    std::optional<QStringList> m_unselectedCalendarsUID;
    bool m_showAllCompletedTasks = false;
    bool m_hideTasksDueAfterThisWeek = false;
    qint32 m_weekStartDay = VTMonday;
    qint32 m_taskSortMethod = VTSortByDueDate;
    bool m_showCalendarDrawer = false;
    std::unique_ptr<RepeatingTimer> m_dateRefresher; // exists only while the shown day is today

    // Calendars may still be arriving when the window opens. Until they are all there, or the person
    // does something, each arrival selects the first item anew.
    bool m_firstSelectionIsArmed = false;
    QString m_overwritingBeingTold; // the message, while it is shown
    bool m_isTicking = false; // the clock, and not the person, changes the date

    VTDateFormatter m_headerFromatterWithoutYear;
    VTDateFormatter m_headerFromatterWithYear;
    VTDateFormatter m_navigatorFormatter;
};
