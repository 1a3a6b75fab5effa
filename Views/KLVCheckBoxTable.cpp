// SPDX-License-Identifier: MIT
#include "KLVCheckBoxTable.h"

#include "KLVCheckBoxTableRow.h"
#include "KLVSlimScrollBar.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KLVCheckBoxTable::KLVCheckBoxTable(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new KLVSlimScrollBar(this));
    setWidgetResizable(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    setWidget(content);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

void KLVCheckBoxTable::setDataSource(KLVCheckBoxTableDataSource *source)
{
    m_dataSource = source;
    reloadData();
}

void KLVCheckBoxTable::reloadData()
{
    const QScopedValueRollback guard(m_isReloading, true);
    const QString stop = uidOfRow(m_focusStop);
    const bool hadFocus = m_focusStop < m_rows.size() && m_rows.at(m_focusStop)->hasFocus();

    setNumberOfRows(m_dataSource ? m_dataSource->numberOfRowsInTableView(this) : 0);
    for (int row = 0; row < m_rows.size(); ++row)
        updateRow(row);

    int newStop = std::min(m_focusStop, static_cast<int>(m_rows.size()) - 1);
    for (int row = 0; row < m_rows.size(); ++row) {
        if (uidOfRow(row) == stop)
            newStop = row;
    }
    setFocusStop(std::max(0, newStop));
    if (hadFocus && !m_rows.isEmpty() && !m_rows.at(m_focusStop)->hasFocus())
        m_rows.at(m_focusStop)->setFocus(Qt::OtherFocusReason);
}

void KLVCheckBoxTable::setNumberOfRows(int count)
{
    if (count == m_rows.size())
        return;
    while (m_rows.size() > count)
        removeLastRow();
    while (m_rows.size() < count)
        addRow();
    orderRows();
    updateGeometry();
}

void KLVCheckBoxTable::addRow()
{
    const auto index = static_cast<int>(m_rows.size());
    auto *row = new KLVCheckBoxTableRow(widget());
    connect(row, &KLVCheckBoxTableRow::toggled, this, [this, index](bool value) { wasToggled(index, value); });
    connect(row, &KLVCheckBoxTableRow::moveWanted, this, [this, index](int step) { moveFrom(index, step); });
    widget()->layout()->addWidget(row);
    // At once: the keyboard may be put into it before the layout shows it.
    row->show();
    m_rows.append(row);
}

void KLVCheckBoxTable::removeLastRow()
{
    // It may be the one whose click led here.
    KLVCheckBoxTableRow *row = m_rows.takeLast();
    row->hide();
    widget()->layout()->removeWidget(row);
    row->deleteLater();
}

void KLVCheckBoxTable::updateRow(int row)
{
    KLVColoredButtonCell cell;
    cell.setIntegerValue(m_dataSource->tableView_objectValueForRow(this, row) ? 1 : 0);
    m_dataSource->tableView_willDisplayCell_forRow(this, cell, row);
    m_rows.at(row)->setCell(cell);
    m_rows.at(row)->setObjectName(u"calendar "_s + uidOfRow(row));
}

void KLVCheckBoxTable::wasToggled(int row, bool value)
{
    if (m_isReloading || !m_dataSource)
        return;
    m_dataSource->tableView_setObjectValue_forRow(this, value, row);
    reloadData();
}

void KLVCheckBoxTable::moveFrom(int row, int step)
{
    const int target = std::clamp(row + step, 0, static_cast<int>(m_rows.size()) - 1);
    setFocusStop(target);
    if (step != 0)
        m_rows.at(target)->setFocus(Qt::TabFocusReason);
    ensureWidgetVisible(m_rows.at(target), 0, 0);
}

// A click takes no focus from the lists.
void KLVCheckBoxTable::setFocusStop(int row)
{
    m_focusStop = row;
    for (int i = 0; i < m_rows.size(); ++i)
        m_rows.at(i)->setFocusPolicy(i == row ? Qt::TabFocus : Qt::NoFocus);
}

void KLVCheckBoxTable::setTabOrderAfter(QWidget *previous)
{
    m_previousInTabOrder = previous;
    orderRows();
}

QWidget *KLVCheckBoxTable::lastInTabOrder() const
{
    return m_rows.isEmpty() ? m_previousInTabOrder : static_cast<QWidget *>(m_rows.last());
}

void KLVCheckBoxTable::orderRows()
{
    if (!m_previousInTabOrder)
        return;
    // Qt leaves widgets where they are in the order that take no focus at this moment.
    for (KLVCheckBoxTableRow *row : std::as_const(m_rows))
        row->setFocusPolicy(Qt::TabFocus);
    QWidget *last = m_previousInTabOrder;
    for (KLVCheckBoxTableRow *row : std::as_const(m_rows)) {
        setTabOrder(last, row);
        last = row;
    }
    setFocusStop(m_focusStop);
}

QString KLVCheckBoxTable::uidOfRow(int row) const
{
    const KeyValueObjectPtr object = row < m_rows.size() ? m_rows.at(row)->cell().representedObject() : nullptr;
    return object ? object->valueForKey(u"uid"_s).toString() : QString();
}

QSize KLVCheckBoxTable::sizeHint() const
{
    return { widget()->sizeHint().width(), widget()->sizeHint().height() };
}

QSize KLVCheckBoxTable::minimumSizeHint() const
{
    // Half a row more than one says that there are others.
    const int rowHeight = m_rows.isEmpty() ? 0 : m_rows.first()->sizeHint().height();
    return { widget()->minimumSizeHint().width(), std::min(sizeHint().height(), rowHeight * 3 / 2) };
}

void KLVCheckBoxTable::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}
