// SPDX-License-Identifier: MIT
#include "KLVAccordionView.h"

#include "KLVAccordionAccessibility.h"
#include "KLVAccordionClickShield.h"
#include "KLVControl.h"

#include <QEvent>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{

constexpr double heightOfEmptyList = 20.0;
const auto rebuildEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

QString uidOf(const KeyValueObjectPtr &object)
{
    return object ? object->valueForKey(u"uid"_s).toString() : QString();
}

} // namespace

KLVAccordionView::KLVAccordionView(QWidget *parent)
    : QWidget(parent)
{
    KLVAccordionAccessibility::install();
    // A press gives no focus by itself: that is the delegate's decision.
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_StaticContents);
    updateAVItemViews();
}

KLVAccordionView::~KLVAccordionView()
{
    m_bindings.clear();
    setDelegate(nullptr);
    setRepresentedObjects({});
    setSelectedObjects({});
}

void KLVAccordionView::setDelegate(KLVAccordionViewDelegate *delegate)
{
    m_delegate = delegate;
    update();
}

void KLVAccordionView::setAlternativeBackgroundColor(const QColor &color)
{
    m_alternativeBackgroundColor = color;
    update();
}

void KLVAccordionView::setSelectedBackgroundColor(const QColor &color)
{
    m_selectedBackgroundColor = color;
    update();
}

void KLVAccordionView::setRepresentedObjects(const KLVRepresentedObjects &objects)
{
    setRepresentedObjectsSynth(objects);
    rebuild();
}

void KLVAccordionView::setSelectedObjects(const KLVRepresentedObjects &objects)
{
    const QStringList before = selectedUids();
    setSelectedObjectsSynth(objects);
    updateAccordionViewItemsSelectState();
    // Fresh records of the items that were selected before are a refetch: the place that the
    // person scrolled to is kept. Any other selection is brought into sight.
    m_keepsScrollOffset = selectedUids() == before;
    updateAVItemViews();
    m_keepsScrollOffset = false;
    if (selectedUids() != before)
        KLVAccordionAccessibility::selectionDidChange(*this);
}

void KLVAccordionView::setSelectedObject(const KeyValueObjectPtr &object)
{
    setSelectedObjects({ object });
}

QStringList KLVAccordionView::selectedUids() const
{
    QStringList uids;
    for (const KeyValueObjectPtr &object : m_selectedObjects)
        uids.append(uidOf(object));
    return uids;
}

void KLVAccordionView::rebuild()
{
    assignRepObjsToAccordionViews();
    updateAccordionViewItemsSelectState();
    m_keepsScrollOffset = true;
    updateAVItemViews();
    m_keepsScrollOffset = false;
    KLVAccordionAccessibility::rowsDidChange(*this);
}

QList<KLVView *> KLVAccordionView::subviews() const
{
    QList<KLVView *> views;
    for (const KLVAccordionViewItemPtr &item : m_accordionViewItems) {
        if (KLVView *view = item->view())
            views.append(view);
    }
    if (m_clickCatcher)
        views.append(m_clickCatcher.get());
    return views;
}

KLVAccordionViewItemPtr KLVAccordionView::getAccordionViewItemForRepObj(const KeyValueObjectPtr &object) const
{
    const auto found = std::ranges::find_if(m_accordionViewItems,
        [&](const KLVAccordionViewItemPtr &item) { return object && item->representedObject() == object; });
    return found == m_accordionViewItems.end() ? nullptr : *found;
}

KLVAccordionViewItemPtr KLVAccordionView::getAccordionViewItemForView(const KLVView *view) const
{
    const auto found = std::ranges::find_if(
        m_accordionViewItems, [&](const KLVAccordionViewItemPtr &item) { return view && item->view() == view; });
    return found == m_accordionViewItems.end() ? nullptr : *found;
}

void KLVAccordionView::bind_toObject_withKeyPath_options(
    const QString &binding, KeyValueObject *observable, const QString &keyPath, const QVariantMap & /*options*/)
{
    if (binding == u"representedObjects"_s || binding == u"selectedIndexes"_s) {
        unbind(binding);
        if (observable) {
            observable->addObserver_forKeyPath_options_context(this, keyPath);
            m_observations.insert_or_assign(binding, Observation { observable, observable->lifeline(), keyPath });
            observeValueForKeyPath_ofObject_change_context(keyPath, observable, {}, nullptr);
        }
    }

    m_bindings.erase(binding);
    if (!observable)
        return;
    KeyValueBinding::Setter setter;
    if (binding == u"representedObjects"_s)
        setter = [this](const QVariant &value) { setRepresentedObjects(toRepresentedObjects(value)); };
    else if (binding == u"selectedObjects"_s)
        setter = [this](const QVariant &value) { setSelectedObjects(toRepresentedObjects(value)); };
    else
        return;
    m_bindings.insert_or_assign(binding, std::make_unique<KeyValueBinding>(*observable, keyPath, std::move(setter)));
}

void KLVAccordionView::unbind(const QString &binding)
{
    const auto observation = m_observations.find(binding);
    if (observation != m_observations.end()) {
        if (!observation->second.lifeline.expired())
            observation->second.object->removeObserver_forKeyPath(this, observation->second.keyPath);
        m_observations.erase(observation);
    }
    m_bindings.erase(binding);
}

void KLVAccordionView::observeValueForKeyPath_ofObject_change_context(
    const QString &keyPath, KeyValueObject *object, const KeyValueChange & /*change*/, void * /*context*/)
{
    if (keyPath == u"arrangedObjects"_s)
        setRepresentedObjects(toRepresentedObjects(object->valueForKey(keyPath)));
    if (keyPath == u"selectedObjects"_s)
        setSelectedObjects(toRepresentedObjects(object->valueForKey(keyPath)));
}

void KLVAccordionView::assignRepObjsToAccordionViews()
{
    QList<KLVAccordionViewItemPtr> items;
    items.reserve(m_representedObjects.size());
    for (const KeyValueObjectPtr &object : std::as_const(m_representedObjects)) {
        KLVAccordionViewItemPtr item;
        if (m_delegate && m_delegate->respondsToAccordionView_itemForRepresentedObject())
            item = m_delegate->accordionView_itemForRepresentedObject(this, object);
        else if (m_itemPrototype)
            item = m_itemPrototype->copyWithZone();
        // Rows and objects must go together one by one; an object that nobody shows gets a blank row.
        if (!item)
            item = std::make_shared<KLVAccordionViewItem>();
        item->setRepresentedObject(object);
        item->setAccordionView(this);
        items.append(item);
        item->view(); // loads and lays out the row
    }

    // Old rows go only after the new ones stand. A selection made by one of them must find it whole.
    const QList<KLVAccordionViewItemPtr> oldItems = std::exchange(m_accordionViewItems, items);
    for (const KLVAccordionViewItemPtr &item : oldItems) {
        item->setAccordionView(nullptr);
        item->setRepresentedObject(nullptr);
    }
}

void KLVAccordionView::updateAccordionViewItemsSelectState()
{
    for (const KLVAccordionViewItemPtr &item : std::as_const(m_accordionViewItems))
        item->setIsSelected(containsEqualObject(m_selectedObjects, item->representedObject()));
}

void KLVAccordionView::updateAVItemViews()
{
    const QRectF frame = updateAVItemViews_generateNewFrame();
    updateAVItemViews_growFrame(frame);
    updateAVItemViews_repositionViews();
    if (!m_keepsScrollOffset)
        updateAVItemViews_scrollToFirstSelection();
    repaintWhatLooksDifferent();
}

QRectF KLVAccordionView::updateAVItemViews_generateNewFrame() const
{
    double height = 0;
    for (const KLVAccordionViewItemPtr &item : m_accordionViewItems)
        height += static_cast<double>(item->desiredHeight());
    QRectF frame = frameRectangle();
    frame.setHeight(height);
    return frame;
}

void KLVAccordionView::updateAVItemViews_growFrame(QRectF frame)
{
    if (frame.height() < 1.0)
        frame.setHeight(heightOfEmptyList);
    m_clickCatcher = std::make_unique<KLVAccordionClickShield>(*this);
    m_clickCatcher->setFrame(frame);
    resize(width(), qCeil(frame.height()));
}

void KLVAccordionView::updateAVItemViews_repositionViews()
{
    double y = 0;
    for (const KLVAccordionViewItemPtr &item : std::as_const(m_accordionViewItems)) {
        const auto height = static_cast<double>(item->desiredHeight());
        item->updateForSelection();
        item->setFrame(QRectF(0, y, width(), height));
        y += height;
    }
}

void KLVAccordionView::updateAVItemViews_scrollToFirstSelection()
{
    QScrollArea *const scrollView = enclosingScrollView();
    const int visibleHeight = scrollView ? scrollView->viewport()->height() : 0;
    if (scrollView && visibleHeight > height()) {
        scrollView->verticalScrollBar()->setValue(0);
        return;
    }
    if (m_selectedObjects.isEmpty())
        return;
    const KLVAccordionViewItemPtr item = getAccordionViewItemForRepObj(m_selectedObjects.first());
    scrollRectToVisible(item && item->view() ? item->view()->frame() : QRectF());
}

void KLVAccordionView::scrollRectToVisible(const QRectF &rect)
{
    QScrollArea *const scrollView = enclosingScrollView();
    if (!scrollView)
        return;
    QScrollBar *const bar = scrollView->verticalScrollBar();
    const int top = qFloor(rect.top());
    const int bottom = qCeil(rect.bottom());
    // A row that is taller than the view shows its beginning.
    int offset = std::max(bar->value(), bottom - scrollView->viewport()->height());
    offset = std::min(offset, top);
    bar->setValue(offset);
}

QRectF KLVAccordionView::frameRectangle() const
{
    return { 0, 0, static_cast<double>(width()), static_cast<double>(height()) };
}

QScrollArea *KLVAccordionView::enclosingScrollView() const
{
    for (QWidget *widget = parentWidget(); widget; widget = widget->parentWidget()) {
        if (auto *scrollArea = qobject_cast<QScrollArea *>(widget))
            return scrollArea;
    }
    return nullptr;
}

void KLVAccordionView::scheduleRebuild()
{
    if (m_isRebuildScheduled)
        return;
    m_isRebuildScheduled = true;
    // Ahead of painting, so that rows of the old width are never seen.
    QCoreApplication::postEvent(this, new QEvent(rebuildEvent), Qt::HighEventPriority);
}

bool KLVAccordionView::event(QEvent *event)
{
    if (event->type() != rebuildEvent)
        return QWidget::event(event);
    m_isRebuildScheduled = false;
    rebuild();
    return true;
}

void KLVAccordionView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LocaleChange
        || event->type() == QEvent::LayoutDirectionChange)
        scheduleRebuild();
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        update();
    QWidget::changeEvent(event);
}

void KLVAccordionView::resizeEvent(QResizeEvent *event)
{
    if (event->oldSize().width() != event->size().width())
        scheduleRebuild();
    QWidget::resizeEvent(event);
}

QVariant KLVAccordionView::valueForKey(const QString &key) const
{
    if (key == u"isFirstResponder"_s)
        return isFirstResponder();
    if (key == u"representedObjects"_s)
        return QVariant::fromValue(m_representedObjects);
    if (key == u"selectedObjects"_s)
        return QVariant::fromValue(m_selectedObjects);
    return {};
}
