// SPDX-License-Identifier: MIT
#include "KLVReadingDirection.h"

#include <QLabel>
#include <QStyle>

void KLVFollowReadingDirection(QLabel &label)
{
    label.setAlignment(QStyle::visualAlignment(label.layoutDirection(), label.alignment()) | Qt::AlignAbsolute);
}
