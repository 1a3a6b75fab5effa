// SPDX-License-Identifier: MIT
#include "VTCalEventController.h"

#include "KLVView.h"

KLVAccordionViewItemPtr VTCalEventController::newItem() const
{
    return std::make_shared<VTCalEventController>(environment());
}

std::shared_ptr<KLVView> VTCalEventController::loadView()
{
    return std::make_shared<KLVView>();
}

CalEvent &VTCalEventController::event() const
{
    return dynamic_cast<CalEvent &>(*representedObject());
}

QString VTCalEventController::accessibleText() const
{
    return event().title().value_or(QString());
}

void VTCalEventController::updateForSelection() { }
