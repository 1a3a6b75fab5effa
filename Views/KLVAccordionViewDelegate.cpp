// SPDX-License-Identifier: MIT
#include "KLVAccordionViewDelegate.h"

// Never called while the questions say no; a delegate that says yes brings its own.

KLVAccordionViewItemPtr KLVAccordionViewDelegate::accordionView_itemForRepresentedObject(
    KLVAccordionView * /*view*/, const KeyValueObjectPtr & /*object*/)
{
    return nullptr;
}

bool KLVAccordionViewDelegate::accordionView_mouseDown_forRepresentedObject(
    KLVAccordionView * /*view*/, const KLVMouseEvent & /*event*/, const KeyValueObjectPtr & /*object*/)
{
    return false;
}

void KLVAccordionViewDelegate::accordionView_drawSelectedBackgroundForItem_frame(
    KLVAccordionView * /*view*/, const KeyValueObjectPtr & /*object*/, const QRectF & /*frame*/)
{
}

void KLVAccordionViewDelegate::accordionView_drawAltBackgroundForItem_frame(
    KLVAccordionView * /*view*/, const KeyValueObjectPtr & /*object*/, const QRectF & /*frame*/)
{
}

void KLVAccordionViewDelegate::accordionView_drawBackgroundForItem_frame(
    KLVAccordionView * /*view*/, const KeyValueObjectPtr & /*object*/, const QRectF & /*frame*/)
{
}

void KLVAccordionViewDelegate::accordionView_drawPlaceHolderBackgroundInFrame(
    KLVAccordionView * /*view*/, const QRectF & /*frame*/)
{
}
