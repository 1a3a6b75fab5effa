// SPDX-License-Identifier: MIT
#include "VTCalCalendarItemController.h"

#include "KLVText.h"
#include "KLVTextField.h"

#include <Workspace.h>

#include <cmath>

VTCalCalendarItemController::VTCalCalendarItemController(const VTRowEnvironment &environment)
    : m_environment(environment)
{
}

CalCalendarItem *VTCalCalendarItemController::calendarItem() const
{
    return dynamic_cast<CalCalendarItem *>(representedObject().get());
}

void VTCalCalendarItemController::openURL()
{
    const CalCalendarItem *const item = calendarItem();
    if (item && item->url())
        m_environment.workspace.openURL(*item->url());
}

float VTCalCalendarItemController::snugVerticalFitForTextField(const KLVTextField &field) const
{
    if (!field.stringValue())
        return 0.0F;
    const double width = KLVText::wrappingWidth(field.frame().width());
    return static_cast<float>(std::ceil(KLVText::wrappedHeight(*field.stringValue(), field.font(), width)));
}
