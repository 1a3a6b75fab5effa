// SPDX-License-Identifier: MIT
#include "KLVTableViewAccessibility.h"

#include "KLVTableView.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <map>

namespace
{

// A row, by its number.
class RowInterface final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    RowInterface(KLVTableView &table, int row)
        : m_table(&table)
        , m_row(row)
    {
    }

    bool isValid() const override { return m_table && !m_table->textOfRow(m_row).isNull(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return parent() ? parent()->window() : nullptr; }
    QAccessibleInterface *parent() const override
    {
        return m_table ? QAccessible::queryAccessibleInterface(m_table.data()) : nullptr;
    }
    QAccessibleInterface *child(int index) const override { return index == 0 ? button() : nullptr; }
    int childCount() const override { return button() ? 1 : 0; }
    int indexOfChild(const QAccessibleInterface *child) const override { return child && child == button() ? 0 : -1; }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        return button() && button()->rect().contains(x, y) ? button() : nullptr;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && m_table ? m_table->textOfRow(m_row) : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override { }
    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect frame(
            0, m_table->rowViewportPosition(m_row), m_table->viewport()->width(), m_table->rowHeight(m_row));
        return { m_table->viewport()->mapToGlobal(frame.topLeft()), frame.size() };
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid)
            return state;
        state.invisible = !m_table->isVisible();
        state.offscreen = !m_table->viewport()->rect().intersects(
            QRect(m_table->viewport()->mapFromGlobal(rect().topLeft()), rect().size()));
        state.disabled = !m_table->isEnabled();
        state.selectable = true;
        state.focusable = true;
        state.selected = m_table->selectedRow() == m_row;
        state.focused = state.selected && m_table->hasFocus();
        return state;
    }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }

    QStringList actionNames() const override { return { pressAction(), setFocusAction() }; }
    void doAction(const QString &name) override
    {
        if (!isValid() || !actionNames().contains(name))
            return;
        m_table->selectRow(m_row);
        if (name == setFocusAction())
            m_table->setFocus(Qt::OtherFocusReason);
    }
    QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }

private:
    QAccessibleInterface *button() const
    {
        QWidget *const widget = m_table ? m_table->buttonOfRow(m_row) : nullptr;
        return widget ? QAccessible::queryAccessibleInterface(widget) : nullptr;
    }

    QPointer<KLVTableView> m_table;
    int m_row;
};

class TableInterface final : public QAccessibleWidget
{
public:
    explicit TableInterface(KLVTableView *table)
        : QAccessibleWidget(table, QAccessible::List)
    {
    }
    ~TableInterface() override
    {
        for (const auto &[row, id] : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }

    // Rows without a text stand at the end, if there are any.
    int childCount() const override
    {
        int count = 0;
        while (!table()->textOfRow(count).isNull())
            ++count;
        return count;
    }
    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto known = m_ids.find(index);
        if (known != m_ids.end())
            return QAccessible::accessibleInterface(known->second);
        auto *const made = new RowInterface(*table(), index); // owned by QAccessible from here on
        m_ids.emplace(index, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        for (const auto &[row, id] : m_ids) {
            if (QAccessible::accessibleInterface(id) == child)
                return row;
        }
        return -1;
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        for (int index = 0; index < childCount(); ++index) {
            if (child(index)->rect().contains(x, y))
                return child(index);
        }
        return nullptr;
    }
    QAccessibleInterface *focusChild() const override
    {
        return table()->hasFocus() ? child(table()->selectedRow()) : nullptr;
    }

private:
    KLVTableView *table() const { return static_cast<KLVTableView *>(widget()); }

    mutable std::map<int, QAccessible::Id> m_ids;
};

QAccessibleInterface *interfaceFor(const QString & /*className*/, QObject *object)
{
    auto *const table = qobject_cast<KLVTableView *>(object);
    return table ? new TableInterface(table) : nullptr; // QAccessible owns it
}

} // namespace

void KLVTableViewAccessibility::install()
{
    QAccessible::installFactory(interfaceFor);
}

void KLVTableViewAccessibility::rowsDidChange(KLVTableView &table)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&table, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

void KLVTableViewAccessibility::selectionDidChange(KLVTableView &table)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(&table);
    QAccessibleInterface *const row = interface ? interface->child(table.selectedRow()) : nullptr;
    if (!row)
        return;
    for (const QAccessible::Event type : { QAccessible::Selection, QAccessible::Focus }) {
        if (type == QAccessible::Focus && !table.hasFocus())
            continue;
        QAccessibleEvent event(row, type);
        QAccessible::updateAccessibility(&event);
    }
}
