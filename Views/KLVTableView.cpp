// SPDX-License-Identifier: MIT
#include "KLVTableView.h"

#include "KLVMetrics.h"
#include "KLVSign.h"
#include "KLVTableViewAccessibility.h"
#include "KLVText.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr qreal statedRowHeight = 26;
constexpr qreal statedButtonWidth = 30;
constexpr qreal signSize = 14;
constexpr int fewestRows = 1;
constexpr int mostRows = 4; // more are scrolled to

QIcon signIcon(KLVSign sign, const QColor &color, qreal unit, qreal devicePixelRatio)
{
    const qreal size = signSize * unit;
    QPixmap pixmap(QSizeF(size, size).toSize() * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    KLVDrawSign(painter, sign, QRectF(0, 0, size, size), color, unit, Qt::LeftToRight);
    return QIcon(pixmap);
}

// Every row begins at the edge where the window's language begins, in the order of its own one.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->displayAlignment
            = QStyle::visualAlignment(option->direction, Qt::AlignLeft | Qt::AlignVCenter) | Qt::AlignAbsolute;
        option->direction = option->text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    }
};

} // namespace

class KLVTableView::Model final : public QAbstractTableModel
{
public:
    explicit Model(KLVTableView &view)
        : m_view(view)
    {
    }

    void setDataSource(KLVTableViewDataSource *dataSource) { m_dataSource = dataSource; }
    void reload()
    {
        beginResetModel();
        m_rows = m_dataSource ? m_dataSource->numberOfRowsInTableView(&m_view) : 0;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : m_rows; }
    int columnCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : buttonColumn + 1; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!m_dataSource || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
            return {};
        const QVariant value
            = m_dataSource->tableView_objectValueForTableColumn_row(&m_view, index.column(), index.row());
        // A tool tip would take markup in a text for its own.
        return role == Qt::ToolTipRole && value.isValid() ? KLVText::toolTip(value.toString()) : value;
    }

private:
    KLVTableView &m_view;
    KLVTableViewDataSource *m_dataSource = nullptr;
    int m_rows = 0;
};

KLVTableView::KLVTableView(QWidget *parent)
    : QTableView(parent)
    , m_model(std::make_unique<Model>(*this))
{
    KLVTableViewAccessibility::install();
    setModel(m_model.get());
    setItemDelegate(new RowDelegate(this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalHeader()->hide();
    horizontalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(textColumn, QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(buttonColumn, QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(1);
    const KLVMetrics metrics(QApplication::font());
    setColumnWidth(buttonColumn, qRound(metrics.length(statedButtonWidth)));
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(qRound(metrics.height(statedRowHeight, font())));
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex &index) { press(index.row()); });
}

KLVTableView::~KLVTableView()
{
    setModel(nullptr);
}

void KLVTableView::setDataSource(KLVTableViewDataSource *dataSource)
{
    m_model->setDataSource(dataSource);
}

void KLVTableView::reloadData()
{
    const int selected = selectedRow();
    m_model->reload();
    const int rows = m_model->rowCount({});
    for (int row = 0; row < rows; ++row) {
        if (!textOfRow(row).isNull())
            addButton(row);
    }
    if (selected >= 0 && selected < rows)
        selectRow(selected);
    updateGeometry();
    KLVTableViewAccessibility::rowsDidChange(*this);
}

void KLVTableView::addButton(int row)
{
    const KLVMetrics metrics(QApplication::font());
    auto *button = new QToolButton(viewport());
    button->setObjectName(u"rowButton%1"_s.arg(row));
    button->setAutoRaise(true);
    // The row has the keyboard, and keys for what the button does.
    button->setFocusPolicy(Qt::NoFocus);
    const int side = qRound(metrics.length(signSize));
    button->setIconSize({ side, side });
    button->setIcon(signIcon(KLVSign::Gear, palette().color(QPalette::Text), metrics.length(1), devicePixelRatioF()));
    button->setToolTip(KLVText::toolTip(m_buttonTitle));
    button->setAccessibleName(m_buttonTitle);
    button->setAccessibleDescription(textOfRow(row));
    connect(button, &QToolButton::clicked, this, [this, row] { press(row); });
    setIndexWidget(m_model->index(row, buttonColumn), button);
}

int KLVTableView::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void KLVTableView::deselectAll()
{
    clearSelection();
    setCurrentIndex({});
}

QString KLVTableView::textOfRow(int row) const
{
    const QVariant text = m_model->index(row, textColumn).data();
    if (!text.isValid())
        return {};
    return text.toString().isNull() ? u""_s : text.toString();
}

QWidget *KLVTableView::buttonOfRow(int row) const
{
    return indexWidget(m_model->index(row, buttonColumn));
}

void KLVTableView::press(int row)
{
    // An empty row has nothing to act on.
    if (textOfRow(row).isNull())
        return;
    selectRow(row);
    Q_EMIT buttonPressed(row);
}

int KLVTableView::heightOfRows(int rows) const
{
    return rows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
}

QSize KLVTableView::sizeHint() const
{
    return { QTableView::sizeHint().width(), heightOfRows(qBound(fewestRows, m_model->rowCount({}), mostRows)) };
}

QSize KLVTableView::minimumSizeHint() const
{
    return { qRound(KLVMetrics(QApplication::font()).length(statedButtonWidth)) * 3, sizeHint().height() };
}

void KLVTableView::keyPressEvent(QKeyEvent *event)
{
    const int row = selectedRow();
    const bool isPlain = event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
    if (row >= 0 && isPlain && (event->key() == Qt::Key_Space || event->key() == Qt::Key_F2)) {
        press(row);
        return;
    }
    if (row >= 0 && isPlain && event->key() == Qt::Key_Delete) {
        Q_EMIT removalRequested(row);
        return;
    }
    QTableView::keyPressEvent(event);
}

void KLVTableView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    // The drawings on the buttons have the text's colour.
    if (event->type() == QEvent::PaletteChange && m_model)
        reloadData();
}

// What the table itself would tell of its selection and of its current cell are cells by number; here are
// rows instead.
void KLVTableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected); // NOLINT(bugprone-parent-virtual-call)
    KLVTableViewAccessibility::selectionDidChange(*this);
}

void KLVTableView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QAbstractItemView::currentChanged(current, previous); // NOLINT(bugprone-parent-virtual-call)
}
