// SPDX-License-Identifier: MIT
#include "KLVButtonMatrix.h"

#include <QFont>

using namespace Qt::StringLiterals;

KLVButtonMatrix::KLVButtonMatrix(const QString &name)
    : KLVView(name)
{
    addRow({});
}

void KLVButtonMatrix::removeRow(int row)
{
    const KLVButton *const cell = cellAtRow(row);
    m_cells.erase(m_cells.begin() + row);
    removeSubview(*cell);
}

KLVButton *KLVButtonMatrix::addRow(const QFont &font)
{
    auto *const cell = addSubview<KLVButton>(u"%1.%2"_s.arg(name()).arg(m_cells.size()));
    cell->setFont(font);
    m_cells.push_back(cell);
    return cell;
}

void KLVButtonMatrix::sizeToCells()
{
    double y = 0;
    for (KLVButton *cell : m_cells) {
        cell->setFrame(QRectF(0, y, frame().width(), m_cellHeight));
        y += m_cellHeight;
    }
    QRectF sized = frame();
    sized.setHeight(y);
    setFrame(sized);
}
