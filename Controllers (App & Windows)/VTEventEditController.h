// SPDX-License-Identifier: MIT
#pragma once

#include "VTCalItemEditController.h"

#include <CalEvent.h>
#include <KLVDatePicker.h>

namespace Ui
{
class VTEventEdit;
}

// The sheet that edits one event, new or existing.
//
// A save goes to the store in two steps: first the one occurrence, under a title
// with a prefix, then all occurrences under the right one. The second is tried
// whatever became of the first, and each that fails shows its own alert. The
// store sees to it that the prefix is seen nowhere afterwards.
class VTEventEditController final : public VTCalItemEditController
{
    Q_OBJECT
    Q_PROPERTY(KLVDatePicker *startDatePicker READ startDatePicker WRITE setStartDatePicker)
    Q_PROPERTY(KLVDatePicker *endDatePicker READ endDatePicker WRITE setEndDatePicker)

public:
    explicit VTEventEditController(const VTEditServices &services, QObject *parent = nullptr);
    ~VTEventEditController() override;

    // An event without a start or an end is given an hour, an hour from now.
    void showEventEditSheetWithEvent_attachToWindow(const CalEventPtr &event, QWidget *targetWindow);
    Q_INVOKABLE void endEventEditSheetAndSaveEvent(QObject *sender = nullptr);
    Q_INVOKABLE void cancelEventEditSheet(QObject *sender = nullptr);
    Q_INVOKABLE void insertNewline(QObject *sender = nullptr);
    Q_INVOKABLE void cancelOperation(QObject *sender = nullptr);

    KLVDatePicker *startDatePicker() const { return m_startDatePicker; }
    void setStartDatePicker(KLVDatePicker *picker) { m_startDatePicker = picker; }
    KLVDatePicker *endDatePicker() const { return m_endDatePicker; }
    void setEndDatePicker(KLVDatePicker *picker) { m_endDatePicker = picker; }

protected:
    void loadWindow() override;
    void fillOwnControls() override;

private:
    CalEvent &proxyEvent() const;
    void fillRepetition();
    void showWholeDays(bool isAllDay);
    void save(const CalEventPtr &event, CalSpan span, const QString &ownTitle);

    std::unique_ptr<Ui::VTEventEdit> m_ui;
    QPointer<KLVDatePicker> m_startDatePicker;
    QPointer<KLVDatePicker> m_endDatePicker;
};
