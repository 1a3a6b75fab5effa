// SPDX-License-Identifier: MIT
#include "KLVAccordionView.h"

#include "KLVAccordionAccessibility.h"
#include "KLVAccordionClickShield.h"
#include "KLVControl.h"
#include "KLVKeyBindings.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleHints>

#include <typeinfo>

using namespace Qt::StringLiterals;

namespace
{

QString uidOf(const KeyValueObjectPtr &object)
{
    return object ? object->valueForKey(u"uid"_s).toString() : QString();
}

} // namespace

void KLVAccordionView::mouseDown(const KLVMouseEvent &event)
{
    if (!m_delegate || !m_delegate->respondsToAccordionView_mouseDown_forRepresentedObject())
        return;
    // The first press of a double click may have moved other rows under the pointer.
    const KeyValueObjectPtr object = event.clickCount > 1 && m_press ? m_press->object : objectAt(event.location);
    m_delegate->accordionView_mouseDown_forRepresentedObject(this, event, object);
}

void KLVAccordionView::rightMouseDown(const KLVMouseEvent &event)
{
    mouseDown(event);
}

void KLVAccordionView::otherMouseDown(const KLVMouseEvent &event)
{
    mouseDown(event);
}

KeyValueObjectPtr KLVAccordionView::objectAt(const QPointF &point) const
{
    const KLVView &catcher = *m_clickCatcher;
    for (const KLVView *view : subviews()) {
        if (view->frame().contains(point) && typeid(*view) != typeid(catcher))
            return getAccordionViewItemForView(view)->representedObject();
    }
    return nullptr;
}

KLVAccordionView::ControlKey KLVAccordionView::controlAt(const QPointF &point) const
{
    for (const KLVAccordionViewItemPtr &item : m_accordionViewItems) {
        KLVView *const view = item->view();
        if (!view || !view->frame().contains(point))
            continue;
        const KLVControl *const control = view->controlAt(point - view->frame().topLeft());
        return control ? ControlKey { uidOf(item->representedObject()), control->name() } : ControlKey();
    }
    return {};
}

void KLVAccordionView::pressed(const QMouseEvent &event, int clickCount)
{
    KLVMouseEvent press { event.button(), event.modifiers(), clickCount, event.position(),
        event.globalPosition().toPoint() };
    const bool isPlain = event.button() == Qt::LeftButton && event.modifiers() == Qt::NoModifier;
    ControlKey control = isPlain ? controlAt(press.location) : ControlKey();
    // The second press of a double click that began beside a control does not use one that came
    // under the pointer meanwhile. On a control every press counts for itself.
    if (clickCount > 1 && (!m_press || m_press->control != control))
        control = {};
    if (!control.isNull())
        press.clickCount = 1;

    KeyValueObjectPtr object = objectAt(press.location);
    if (press.clickCount > 1 && m_press) {
        object = m_press->object;
        // The rows may have been made again since, for fresh records.
        if (const auto item = itemForUid(uidOf(object)))
            object = item->representedObject();
    }
    m_press = Press { object, control, press.globalPosition };

    switch (press.button) {
    case Qt::LeftButton:
        m_clickCatcher->mouseDown(press);
        break;
    case Qt::RightButton:
        m_clickCatcher->rightMouseDown(press);
        break;
    default:
        m_clickCatcher->otherMouseDown(press);
    }
}

void KLVAccordionView::mousePressEvent(QMouseEvent *event)
{
    pressed(*event, 1);
}

void KLVAccordionView::mouseDoubleClickEvent(QMouseEvent *event)
{
    pressed(*event, 2);
}

// A click on a control is decided here, by what was pressed and not by where it is: the press
// selects the row, and another row that shrinks may move it away from under the pointer.
void KLVAccordionView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_press || m_press->control.isNull())
        return;
    const int distance = (event->globalPosition().toPoint() - m_press->globalPosition).manhattanLength();
    if (distance < QGuiApplication::styleHints()->startDragDistance())
        performControl(m_press->control);
}

void KLVAccordionView::mouseMoveEvent(QMouseEvent *event)
{
    const KLVControl *const control = controlForKey(controlAt(event->position()));
    if (control && !control->isCheckable())
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
}

void KLVAccordionView::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    switch (event->key()) {
    case Qt::Key_Space:
        if (performControl(m_currentControl))
            return;
        break;
    case Qt::Key_PageUp:
        return scrollByKey(QAbstractSlider::SliderPageStepSub);
    case Qt::Key_PageDown:
        return scrollByKey(QAbstractSlider::SliderPageStepAdd);
    case Qt::Key_Home:
        return scrollByKey(QAbstractSlider::SliderToMinimum);
    case Qt::Key_End:
        return scrollByKey(QAbstractSlider::SliderToMaximum);
    default:
        break;
    }
    if (!KLVKeyBindings::interpretKeyEvent(*event, this))
        event->ignore();
}

void KLVAccordionView::scrollByKey(QAbstractSlider::SliderAction action)
{
    if (QScrollArea *const scrollView = enclosingScrollView())
        scrollView->verticalScrollBar()->triggerAction(action);
}

bool KLVAccordionView::isFirstResponder() const
{
    return window()->focusWidget() == this;
}

void KLVAccordionView::focusInEvent(QFocusEvent * /*event*/)
{
    becomeFirstResponder();
    KLVAccordionAccessibility::focusDidChange(*this);
}

void KLVAccordionView::focusOutEvent(QFocusEvent * /*event*/)
{
    resignFirstResponder();
}

bool KLVAccordionView::becomeFirstResponder()
{
    update();
    return announceFirstResponder();
}

bool KLVAccordionView::resignFirstResponder()
{
    update();
    return announceFirstResponder();
}

// A window that is left and entered again keeps its first responder: then there is nothing to announce.
bool KLVAccordionView::announceFirstResponder()
{
    if (m_wasFirstResponder != isFirstResponder()) {
        willChangeValueForKey(u"isFirstResponder"_s);
        m_wasFirstResponder = isFirstResponder();
        didChangeValueForKey(u"isFirstResponder"_s);
    }
    return true;
}

bool KLVAccordionView::focusNextPrevChild(bool next)
{
    if (moveCurrentControl(next))
        return true;
    setCurrentControl({});
    return QWidget::focusNextPrevChild(next);
}

QList<KLVAccordionView::ControlKey> KLVAccordionView::controlsOfSelection() const
{
    QList<ControlKey> keys;
    for (const KLVAccordionViewItemPtr &item : m_accordionViewItems) {
        if (!item->isSelected() || !item->view())
            continue;
        for (const KLVControl *control : item->view()->usableControls())
            keys.append({ uidOf(item->representedObject()), control->name() });
    }
    return keys;
}

bool KLVAccordionView::moveCurrentControl(bool forward)
{
    const QList<ControlKey> keys = controlsOfSelection();
    const qsizetype current = keys.indexOf(m_currentControl);
    // Backwards into the list reaches the list itself first, as forwards does.
    if (current < 0 && !forward)
        return false;
    const qsizetype wanted = forward ? current + 1 : current - 1;
    if (wanted >= keys.size())
        return false;
    setCurrentControl(wanted < 0 ? ControlKey() : keys.at(wanted));
    return true;
}

void KLVAccordionView::setCurrentControl(const ControlKey &key)
{
    if (key == m_currentControl)
        return;
    for (const ControlKey &changed : { std::exchange(m_currentControl, key), key }) {
        if (const auto item = itemForUid(changed.uid); item && !changed.isNull())
            setNeedsDisplay(*item);
    }
    KLVAccordionAccessibility::focusDidChange(*this);
}

KLVAccordionViewItemPtr KLVAccordionView::itemForUid(const QString &uid) const
{
    const auto found = std::ranges::find_if(m_accordionViewItems,
        [&](const KLVAccordionViewItemPtr &item) { return uidOf(item->representedObject()) == uid; });
    return found == m_accordionViewItems.end() ? nullptr : *found;
}

KLVControl *KLVAccordionView::controlForKey(const ControlKey &key) const
{
    const KLVAccordionViewItemPtr item = key.isNull() ? nullptr : itemForUid(key.uid);
    if (!item || !item->view())
        return nullptr;
    const auto controls = item->view()->usableControls();
    const auto found = std::ranges::find(controls, key.name, &KLVControl::name);
    return found == controls.end() ? nullptr : *found;
}

QRectF KLVAccordionView::frameOfControl(const ControlKey &key) const
{
    const KLVControl *const control = controlForKey(key);
    if (!control)
        return {};
    KLVView *const view = itemForUid(key.uid)->view();
    return view->frameOfDescendant(*control).translated(view->frame().topLeft());
}

bool KLVAccordionView::performControl(const ControlKey &key)
{
    KLVControl *const control = controlForKey(key);
    if (!control)
        return false;
    // What the control does may make all rows anew; this one must last until it is done.
    const KLVAccordionViewItemPtr item = itemForUid(key.uid);
    control->performClick();
    return true;
}
