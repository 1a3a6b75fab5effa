// SPDX-License-Identifier: MIT
#pragma once

#include "KLVAccordionViewItem.h"
#include "VTRowEnvironment.h"

#include <CalCalendarItem.h>

#include <QObject>
#include <QPointer>

class KLVTextField;

// What the rows of events and of to-dos have in common.
class VTCalCalendarItemController : public KLVAccordionViewItem
{
public:
    explicit VTCalCalendarItemController(const VTRowEnvironment &environment);

    // Not owned; nothing here reads it.
    QObject *delegate() const { return m_delegate; }
    void setDelegate(QObject *delegate) { m_delegate = delegate; }

    // Opens the item's url with the program for it.
    void openURL();

    // The height that shows the field's whole text in 40 points less than its width; 0 for an absent text.
    float snugVerticalFitForTextField(const KLVTextField &field) const;

protected:
    const VTRowEnvironment &environment() const { return m_environment; }
    CalCalendarItem *calendarItem() const;

private:
    VTRowEnvironment m_environment;
    QPointer<QObject> m_delegate;
};
