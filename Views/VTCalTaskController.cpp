// SPDX-License-Identifier: MIT
#include "VTCalTaskController.h"

#include "KLVView.h"

VTCalTaskController::VTCalTaskController(const VTRowEnvironment &environment)
    : VTCalCalendarItemController(environment)
{
}

VTCalTaskController::~VTCalTaskController() = default;

KLVAccordionViewItemPtr VTCalTaskController::newItem() const
{
    return std::make_shared<VTCalTaskController>(environment());
}

std::shared_ptr<KLVView> VTCalTaskController::loadView()
{
    return std::make_shared<KLVView>();
}

CalTask &VTCalTaskController::task() const
{
    return dynamic_cast<CalTask &>(*representedObject());
}

QString VTCalTaskController::accessibleText() const
{
    return task().title().value_or(QString());
}

void VTCalTaskController::updateForSelection() { }

void VTCalTaskController::observeValueForKeyPath_ofObject_change_context(
    const QString & /*keyPath*/, KeyValueObject * /*object*/, const KeyValueChange & /*change*/, void * /*context*/)
{
}
