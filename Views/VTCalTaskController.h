// SPDX-License-Identifier: MIT
#pragma once

#include "VTCalCalendarItemController.h"

#include <CalTask.h>

class KLVButton;
class KLVCheckBox;
class KLVImageView;

// The row of one to-do: check box, title, priority bars and due date above;
// completion date, link and notes below, shown while the row is selected.
//
// Watches its to-do: whenever the completion flag changes, by whatever hand, it
// saves the to-do at once. A refusal is silent (the next refetch un-ticks the
// row). A row that was given up, its object taken away, never saves. Outlets
// are null before the view is loaded.
class VTCalTaskController final : public VTCalCalendarItemController, public KeyValueObserver
{
public:
    explicit VTCalTaskController(const VTRowEnvironment &environment);
    ~VTCalTaskController() override;

    KLVCheckBox *doneCheckBox() const { return m_doneCheckBox; }
    void setDoneCheckBox(KLVCheckBox *checkBox) { m_doneCheckBox = checkBox; }
    KLVTextField *titleField() const { return m_titleField; }
    void setTitleField(KLVTextField *field) { m_titleField = field; }
    KLVImageView *priorityView() const { return m_priorityView; }
    void setPriorityView(KLVImageView *view) { m_priorityView = view; }
    KLVTextField *dueDateField() const { return m_dueDateField; }
    void setDueDateField(KLVTextField *field) { m_dueDateField = field; }
    KLVTextField *completedLabel() const { return m_completedLabel; }
    void setCompletedLabel(KLVTextField *label) { m_completedLabel = label; }
    KLVTextField *completedField() const { return m_completedField; }
    void setCompletedField(KLVTextField *field) { m_completedField = field; }
    KLVTextField *urlLabel() const { return m_urlLabel; }
    void setUrlLabel(KLVTextField *label) { m_urlLabel = label; }
    KLVButton *urlButton() const { return m_urlButton; }
    void setUrlButton(KLVButton *button) { m_urlButton = button; }
    KLVTextField *notesLabel() const { return m_notesLabel; }
    void setNotesLabel(KLVTextField *label) { m_notesLabel = label; }
    KLVTextField *notesField() const { return m_notesField; }
    void setNotesField(KLVTextField *field) { m_notesField = field; }

    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange &change, void *context) override;

    QString accessibleText() const override;

protected:
    KLVAccordionViewItemPtr newItem() const override;
    std::shared_ptr<KLVView> loadView() override;

private:
    CalTask &task() const;
    void connectOutlets(KLVView &row);
    void fillIn();
    void awakeFromNib();
    void positionAndSizeFields();
    VTRowFrames loadedFrames() const;
    void showCompletion();
    void saveTask();

    KLVCheckBox *m_doneCheckBox = nullptr;
    KLVTextField *m_titleField = nullptr;
    KLVImageView *m_priorityView = nullptr;
    KLVTextField *m_dueDateField = nullptr;
    KLVTextField *m_completedLabel = nullptr;
    KLVTextField *m_completedField = nullptr;
    KLVTextField *m_urlLabel = nullptr;
    KLVButton *m_urlButton = nullptr;
    KLVTextField *m_notesLabel = nullptr;
    KLVTextField *m_notesField = nullptr;
};
