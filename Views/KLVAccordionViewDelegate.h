// SPDX-License-Identifier: MIT
#pragma once

#include "KLVAccordionViewItem.h"

#include <QPoint>
#include <QPointF>
#include <QRectF>

// A press of a mouse button over an accordion.
struct KLVMouseEvent {
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers;
    int clickCount = 1;
    QPointF location; // in the accordion
    QPoint globalPosition;
};

// Supplies an accordion's rows, hears of presses and draws backgrounds. Every
// method is optional: before each call the accordion asks whether the delegate
// implements it, with the question of the same name.
class KLVAccordionViewDelegate
{
public:
    KLVAccordionViewDelegate() = default;
    virtual ~KLVAccordionViewDelegate() = default;
    KLVAccordionViewDelegate(const KLVAccordionViewDelegate &) = delete;
    KLVAccordionViewDelegate &operator=(const KLVAccordionViewDelegate &) = delete;

    // A new row for the object, once for each object at every rebuild.
    virtual bool respondsToAccordionView_itemForRepresentedObject() const { return false; }
    virtual KLVAccordionViewItemPtr accordionView_itemForRepresentedObject(
        KLVAccordionView *view, const KeyValueObjectPtr &object);

    // Every press of any button; the object is null where no row is. The result says whether it was used.
    virtual bool respondsToAccordionView_mouseDown_forRepresentedObject() const { return false; }
    virtual bool accordionView_mouseDown_forRepresentedObject(
        KLVAccordionView *view, const KLVMouseEvent &event, const KeyValueObjectPtr &object);

    // Drawing goes to the view's graphicsContext(). The frame is the row's.
    virtual bool respondsToAccordionView_drawSelectedBackgroundForItem_frame() const { return false; }
    virtual void accordionView_drawSelectedBackgroundForItem_frame(
        KLVAccordionView *view, const KeyValueObjectPtr &object, const QRectF &frame);
    virtual bool respondsToAccordionView_drawAltBackgroundForItem_frame() const { return false; }
    virtual void accordionView_drawAltBackgroundForItem_frame(
        KLVAccordionView *view, const KeyValueObjectPtr &object, const QRectF &frame);
    virtual bool respondsToAccordionView_drawBackgroundForItem_frame() const { return false; }
    virtual void accordionView_drawBackgroundForItem_frame(
        KLVAccordionView *view, const KeyValueObjectPtr &object, const QRectF &frame);

    // When there is nothing to show. The frame is the accordion's own.
    virtual bool respondsToAccordionView_drawPlaceHolderBackgroundInFrame() const { return false; }
    virtual void accordionView_drawPlaceHolderBackgroundInFrame(KLVAccordionView *view, const QRectF &frame);
};
