// SPDX-License-Identifier: MIT
#include "SRRecorderClearButton.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

SRRecorderClearButton::SRRecorderClearButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setObjectName(u"clearButton"_s);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(QCoreApplication::translate("Vantle", "Clear"));
    setToolTip(QCoreApplication::translate("Vantle", "Clear"));
}
