// SPDX-License-Identifier: MIT
#pragma once

#include "KLVAccordionViewItem.h"
#include "VTEventRowLayout.h"
#include "VTRowEnvironment.h"

#include <CalCalendarItem.h>

#include <QFont>
#include <QObject>
#include <QPointer>

#include <vector>

class KLVButton;
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

    // The colour of the item's calendar.
    QColor tintColor() const override;
    void updateForSelection() override;

protected:
    const VTRowEnvironment &environment() const { return m_environment; }
    CalCalendarItem *calendarItem() const;

    QFont personsFont() const;
    // The width of the accordion, or a usual one for a row without an accordion.
    double rowWidth() const;

    // A caption in dim text, right-aligned on the base line of values.
    void setUpCaption(KLVTextField &caption, const char *text) const;
    // Longer captions than those that the interface files were drawn for get a wider column, the same in all rows.
    void widenCaptions(VTRowFrames &frames) const;
    void setUpTitle(KLVTextField &title, const QFont &font) const;
    void setUpNotes(KLVTextField &notes) const;
    void setUpLink(KLVButton &button);

    // Once all frames stand: mirrors them for people who read from right to left.
    void followReadingDirection(KLVView &row) const;

    // Views that only a selected row shows.
    void addDetail(std::initializer_list<KLVView *> views);

private:
    VTRowEnvironment m_environment;
    QPointer<QObject> m_delegate;
    std::vector<KLVView *> m_details;
};
