// SPDX-License-Identifier: MIT
#include "KLVAccordionAccessibility.h"

#include "KLVAccessiblePart.h"
#include "KLVAccordionView.h"
#include "KLVControl.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

using namespace Qt::StringLiterals;

namespace
{

// Which row: the item's uid, and which of several rows with that uid.
struct RowKey {
    QString uid;
    int occurrence = 0;

    bool operator==(const RowKey &) const = default;
    bool operator<(const RowKey &other) const
    {
        return std::tie(uid, occurrence) < std::tie(other.uid, other.occurrence);
    }
};

struct PartKey {
    RowKey row;
    QString view; // empty for the row itself

    bool operator<(const PartKey &other) const { return std::tie(row, view) < std::tie(other.row, other.view); }
};

QString uidOf(const KLVAccordionViewItem &item)
{
    const KeyValueObjectPtr &object = item.representedObject();
    return object ? object->valueForKey(u"uid"_s).toString() : QString();
}

std::vector<RowKey> rowKeys(const KLVAccordionView &accordion)
{
    std::vector<RowKey> keys;
    std::map<QString, int> seen;
    for (const KLVAccordionViewItemPtr &item : accordion.accordionViewItems()) {
        const QString uid = uidOf(*item);
        keys.push_back({ uid, seen[uid]++ });
    }
    return keys;
}

void collectParts(const KLVView &view, std::vector<const KLVView *> &parts)
{
    for (const auto &subview : view.subviews()) {
        if (subview->isHidden())
            continue;
        if (subview->accessibleRole() != QAccessible::NoRole && !subview->accessibleText().isEmpty())
            parts.push_back(subview.get());
        collectParts(*subview, parts);
    }
}

class ListInterface;

// A row, or something that a row shows. Looks for it anew at every question.
class PartInterface final : public KLVAccessiblePart
{
public:
    PartInterface(KLVAccordionView &accordion, PartKey key)
        : m_accordion(&accordion)
        , m_key(std::move(key))
    {
    }

    bool isValid() const override { return view(); }
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    int childCount() const override { return static_cast<int>(parts().size()); }
    QString text(QAccessible::Text text) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    bool isRow() const { return m_key.view.isEmpty(); }
    KLVAccordionView::ControlKey controlKey() const { return { m_key.row.uid, m_key.view }; }
    ListInterface *list() const;
    KLVAccordionViewItemPtr item() const;
    const KLVView *view() const;
    const KLVControl *control() const { return dynamic_cast<const KLVControl *>(view()); }
    std::vector<const KLVView *> parts() const;

    QPointer<KLVAccordionView> m_accordion;
    PartKey m_key;
};

class ListInterface final : public QAccessibleWidget
{
public:
    explicit ListInterface(KLVAccordionView *accordion)
        : QAccessibleWidget(accordion, QAccessible::List)
    {
    }

    KLVAccordionView *accordion() const { return static_cast<KLVAccordionView *>(widget()); }

    int childCount() const override { return static_cast<int>(accordion()->accordionViewItems().size()); }
    QAccessibleInterface *child(int index) const override
    {
        const auto keys = rowKeys(*accordion());
        if (index < 0 || index >= static_cast<int>(keys.size()))
            return nullptr;
        return part({ keys[static_cast<std::size_t>(index)], {} });
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return KLVAccessiblePart::indexOf(child, *this);
    }
    QAccessibleInterface *childAt(int x, int y) const override { return KLVAccessiblePart::childOf(*this, x, y); }
    QAccessibleInterface *focusChild() const override
    {
        for (int index = 0; accordion()->hasFocus() && index < childCount(); ++index) {
            if (child(index)->state().focused)
                return child(index);
        }
        return QAccessibleWidget::focusChild();
    }

    QAccessibleInterface *part(const PartKey &key) const
    {
        return m_parts.part(key, [this, &key] { return new PartInterface(*accordion(), key); });
    }

    // The rows that are selected now and were not, or the other way round, since this was asked last.
    std::vector<QAccessibleInterface *> rowsWithChangedSelection()
    {
        std::set<RowKey> selected;
        const auto keys = rowKeys(*accordion());
        for (std::size_t index = 0; index < keys.size(); ++index) {
            if (accordion()->accordionViewItems().at(static_cast<qsizetype>(index))->isSelected())
                selected.insert(keys[index]);
        }
        std::vector<QAccessibleInterface *> rows;
        for (const RowKey &key : keys) {
            if (selected.contains(key) != m_selected.contains(key))
                rows.push_back(part({ key, {} }));
        }
        m_selected = std::move(selected);
        return rows;
    }

    void forgetLostRows()
    {
        const auto keys = rowKeys(*accordion());
        m_parts.forgetIf([&keys](const PartKey &key) { return std::ranges::find(keys, key.row) == keys.end(); });
    }

private:
    mutable KLVAccessibleParts<PartKey> m_parts;
    std::set<RowKey> m_selected;
};

ListInterface *listOf(KLVAccordionView &accordion)
{
    return dynamic_cast<ListInterface *>(QAccessible::queryAccessibleInterface(&accordion));
}

ListInterface *PartInterface::list() const
{
    return m_accordion ? listOf(*m_accordion) : nullptr;
}

KLVAccordionViewItemPtr PartInterface::item() const
{
    if (!m_accordion)
        return nullptr;
    const auto keys = rowKeys(*m_accordion);
    const auto found = std::ranges::find(keys, m_key.row);
    return found == keys.end() ? nullptr : m_accordion->accordionViewItems().at(std::distance(keys.begin(), found));
}

const KLVView *PartInterface::view() const
{
    const KLVAccordionViewItemPtr row = item();
    if (!row || !row->view() || isRow())
        return row ? row->view() : nullptr;
    std::vector<const KLVView *> views;
    collectParts(*row->view(), views);
    const auto found = std::ranges::find(views, m_key.view, &KLVView::name);
    return found == views.end() ? nullptr : *found;
}

std::vector<const KLVView *> PartInterface::parts() const
{
    std::vector<const KLVView *> views;
    if (isRow() && view())
        collectParts(*view(), views);
    return views;
}

QAccessibleInterface *PartInterface::parent() const
{
    if (!list() || isRow())
        return list();
    return list()->part({ m_key.row, {} });
}

QAccessibleInterface *PartInterface::child(int index) const
{
    const auto views = parts();
    if (index < 0 || index >= static_cast<int>(views.size()))
        return nullptr;
    return list()->part({ m_key.row, views[static_cast<std::size_t>(index)]->name() });
}

QString PartInterface::text(QAccessible::Text text) const
{
    if (text != QAccessible::Name || !view())
        return {};
    return isRow() ? item()->accessibleText() : view()->accessibleText();
}

QRect PartInterface::rect() const
{
    const KLVAccordionViewItemPtr row = item();
    if (!row || !view())
        return {};
    QRectF frame = row->view()->frame();
    if (!isRow())
        frame = row->view()->frameOfDescendant(*view()).translated(frame.topLeft());
    const QRect inAccordion = frame.toAlignedRect();
    return { m_accordion->mapToGlobal(inAccordion.topLeft()), inAccordion.size() };
}

QAccessible::Role PartInterface::role() const
{
    if (isRow())
        return QAccessible::ListItem;
    return view() ? view()->accessibleRole() : QAccessible::NoRole;
}

QAccessible::State PartInterface::state() const
{
    QAccessible::State state;
    if (!view()) {
        state.invalid = true;
        return state;
    }
    state.invisible = !m_accordion->isVisible();
    state.offscreen = m_accordion->visibleRegion()
                          .intersected(QRect(m_accordion->mapFromGlobal(rect().topLeft()), rect().size()))
                          .isEmpty();
    if (isRow()) {
        const bool hasCurrentControl = !m_accordion->currentControl().isNull();
        state.selectable = true;
        state.focusable = true;
        state.selected = item()->isSelected();
        state.focused = item()->isSelected() && m_accordion->hasFocus() && !hasCurrentControl;
        return state;
    }
    if (const KLVControl *const shown = control()) {
        state.disabled = !shown->isEnabled();
        state.focusable = shown->isEnabled();
        state.focused = m_accordion->hasFocus() && m_accordion->currentControl() == controlKey();
        state.checkable = shown->isCheckable();
        state.checked = shown->isChecked();
    } else {
        state.readOnly = true;
    }
    return state;
}

void *PartInterface::interface_cast(QAccessible::InterfaceType type)
{
    return isRow() || control() ? KLVAccessiblePart::interface_cast(type) : nullptr;
}

QStringList PartInterface::actionNames() const
{
    if (isRow())
        return { pressAction(), setFocusAction() };
    if (!control() || !control()->isEnabled())
        return {};
    return { control()->isCheckable() ? toggleAction() : pressAction(), setFocusAction() };
}

// A row is pressed as by the pointer, so that the delegate selects it; a control does its action.
void PartInterface::doAction(const QString &name)
{
    if (!m_accordion || !actionNames().contains(name))
        return;
    const bool wantsFocus = name == setFocusAction();
    if (!isRow() && !wantsFocus) {
        m_accordion->performControl(controlKey());
        return;
    }
    if (wantsFocus) {
        m_accordion->setFocus(Qt::OtherFocusReason);
        m_accordion->setCurrentControl(isRow() ? KLVAccordionView::ControlKey() : controlKey());
    }
    if (item()->isSelected())
        return;
    KLVMouseEvent press;
    press.location = view()->frame().center();
    press.globalPosition = m_accordion->mapToGlobal(press.location.toPoint());
    m_accordion->mouseDown(press);
}

QAccessibleInterface *interfaceFor(const QString & /*className*/, QObject *object)
{
    auto *const accordion = qobject_cast<KLVAccordionView *>(object);
    return accordion ? new ListInterface(accordion) : nullptr; // QAccessible owns it
}

void send(QAccessibleInterface *interface, QAccessible::Event type)
{
    QAccessibleEvent event(interface, type);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void KLVAccordionAccessibility::install()
{
    QAccessible::installFactory(interfaceFor);
}

void KLVAccordionAccessibility::rowsDidChange(KLVAccordionView &accordion)
{
    if (!QAccessible::isActive())
        return;
    ListInterface *const list = listOf(accordion);
    if (!list)
        return;
    list->forgetLostRows();
    QAccessibleEvent event(&accordion, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

void KLVAccordionAccessibility::selectionDidChange(KLVAccordionView &accordion)
{
    if (!QAccessible::isActive())
        return;
    ListInterface *const list = listOf(accordion);
    if (!list)
        return;
    for (QAccessibleInterface *row : list->rowsWithChangedSelection()) {
        QAccessible::State change;
        change.selected = true;
        QAccessibleStateChangeEvent event(row, change);
        QAccessible::updateAccessibility(&event);
        if (!row->state().selected)
            continue;
        send(row, QAccessible::Selection);
        if (row->state().focused)
            send(row, QAccessible::Focus);
    }
}

void KLVAccordionAccessibility::focusDidChange(KLVAccordionView &accordion)
{
    if (!QAccessible::isActive() || !accordion.hasFocus())
        return;
    const ListInterface *const list = listOf(accordion);
    for (int index = 0; list && index < list->childCount(); ++index) {
        QAccessibleInterface *const row = list->child(index);
        if (row->state().focused)
            return send(row, QAccessible::Focus);
        for (int part = 0; row->state().selected && part < row->childCount(); ++part) {
            if (row->child(part)->state().focused)
                return send(row->child(part), QAccessible::Focus);
        }
    }
}

void KLVAccordionAccessibility::checkedDidChange(KLVAccordionView &accordion, const KLVAccordionViewItem &item)
{
    if (!QAccessible::isActive())
        return;
    const ListInterface *const list = listOf(accordion);
    const auto &items = accordion.accordionViewItems();
    const auto found = std::ranges::find(items, &item, &KLVAccordionViewItemPtr::get);
    if (!list || found == items.end())
        return;
    QAccessibleInterface *const row = list->child(static_cast<int>(std::distance(items.begin(), found)));
    for (int index = 0; index < row->childCount(); ++index) {
        if (row->child(index)->role() != QAccessible::CheckBox)
            continue;
        QAccessible::State change;
        change.checked = true;
        QAccessibleStateChangeEvent event(row->child(index), change);
        QAccessible::updateAccessibility(&event);
    }
}
