// SPDX-License-Identifier: MIT
#include "KLVAccessiblePart.h"

int KLVAccessiblePart::indexOf(const QAccessibleInterface *child, const QAccessibleInterface &parent)
{
    for (int index = 0; index < parent.childCount(); ++index) {
        if (parent.child(index) == child)
            return index;
    }
    return -1;
}

QAccessibleInterface *KLVAccessiblePart::childOf(const QAccessibleInterface &parent, int x, int y)
{
    for (int index = 0; index < parent.childCount(); ++index) {
        if (QAccessibleInterface *const child = parent.child(index); child->rect().contains(x, y))
            return child;
    }
    return nullptr;
}
