// SPDX-License-Identifier: MIT
#pragma once

#include "StatusItem.h"

#include <memory>

// Where the desktop keeps status icons.
class StatusBar : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // There is no icon before a desktop's part comes that shows it, however late that is.
    virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;

    // Whether anything shows status icons at present.
    virtual bool isAvailable() const = 0;

Q_SIGNALS:
    void availabilityDidChange();
};
