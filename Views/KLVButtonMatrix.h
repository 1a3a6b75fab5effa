// SPDX-License-Identifier: MIT
#pragma once

#include "KLVButton.h"

// One column of buttons of one height.
//
// A fresh matrix has one row, the template of its interface file.
class KLVButtonMatrix final : public KLVView
{
public:
    explicit KLVButtonMatrix(const QString &name = {});

    double cellHeight() const { return m_cellHeight; }
    void setCellHeight(double height) { m_cellHeight = height; }

    int numberOfRows() const { return static_cast<int>(m_cells.size()); }
    KLVButton *cellAtRow(int row) const { return m_cells.at(static_cast<std::size_t>(row)); }
    void removeRow(int row);
    // A new cell at the end, as high as the others.
    KLVButton *addRow(const QFont &font);
    // Sets the height that the cells need, and puts them in their places.
    void sizeToCells();

    // The row of the cell that was used last; -1 for none.
    int selectedRow() const { return m_selectedRow; }
    void setSelectedRow(int row) { m_selectedRow = row; }

private:
    std::vector<KLVButton *> m_cells;
    double m_cellHeight = 0;
    int m_selectedRow = -1;
};
