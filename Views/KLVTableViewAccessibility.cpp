// SPDX-License-Identifier: MIT
#include "KLVTableViewAccessibility.h"

#include "KLVAccessiblePart.h"
#include "KLVTableView.h"

#include <QAccessibleWidget>
#include <QPointer>

namespace
{

// A row, by its number.
class RowInterface final : public KLVAccessiblePart
{
public:
    RowInterface(KLVTableView &table, int row)
        : m_table(&table)
        , m_row(row)
    {
    }

    bool isValid() const override { return m_table && !m_table->textOfRow(m_row).isNull(); }
    QAccessibleInterface *parent() const override
    {
        return m_table ? QAccessible::queryAccessibleInterface(m_table.data()) : nullptr;
    }
    QAccessibleInterface *child(int index) const override { return index == 0 ? button() : nullptr; }
    int childCount() const override { return button() ? 1 : 0; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && m_table ? m_table->textOfRow(m_row) : QString();
    }
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

    QStringList actionNames() const override { return { pressAction(), setFocusAction() }; }
    void doAction(const QString &name) override
    {
        if (!isValid() || !actionNames().contains(name))
            return;
        m_table->selectRow(m_row);
        if (name == setFocusAction())
            m_table->setFocus(Qt::OtherFocusReason);
    }

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
        return m_rows.part(index, [this, index] { return new RowInterface(*table(), index); });
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return KLVAccessiblePart::indexOf(child, *this);
    }
    QAccessibleInterface *childAt(int x, int y) const override { return KLVAccessiblePart::childOf(*this, x, y); }
    QAccessibleInterface *focusChild() const override
    {
        return table()->hasFocus() ? child(table()->selectedRow()) : nullptr;
    }

private:
    KLVTableView *table() const { return static_cast<KLVTableView *>(widget()); }

    mutable KLVAccessibleParts<int> m_rows;
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
