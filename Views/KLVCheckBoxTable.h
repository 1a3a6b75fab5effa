// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QScrollArea>

class KLVCheckBoxTable;
class KLVCheckBoxTableRow;
class KLVColoredButtonCell;

// What a table of check boxes shows, and what becomes of a click. Asked anew at
// every reload.
class KLVCheckBoxTableDataSource
{
public:
    virtual ~KLVCheckBoxTableDataSource() = default;

    virtual int numberOfRowsInTableView(KLVCheckBoxTable *view) = 0;
    virtual bool tableView_objectValueForRow(KLVCheckBoxTable *view, int row) = 0;
    // The person clicked. What the row shows afterwards is what the source then answers.
    virtual void tableView_setObjectValue_forRow(KLVCheckBoxTable *view, bool value, int row) = 0;
    // Gives the cell its tint, title and represented object; the value is set already.
    virtual void tableView_willDisplayCell_forRow(KLVCheckBoxTable *view, KLVColoredButtonCell &cell, int row) = 0;

protected:
    KLVCheckBoxTableDataSource() = default;
    KLVCheckBoxTableDataSource(const KLVCheckBoxTableDataSource &) = default;
    KLVCheckBoxTableDataSource &operator=(const KLVCheckBoxTableDataSource &) = default;
};

// A column of tinted check boxes, scrolling where there is no room for all.
//
// The tab key stops once, at the row that was used last; Up, Down, Home and End
// walk, Space and Return tick. The keyboard stays with what a row stands for
// (its represented object's "uid") when a reload moves it. A reload that changes nothing
// repaints nothing.
class KLVCheckBoxTable final : public QScrollArea
{
    Q_OBJECT

public:
    explicit KLVCheckBoxTable(QWidget *parent = nullptr);

    // Not owned; null for none.
    void setDataSource(KLVCheckBoxTableDataSource *source);
    void reloadData();

    const QList<KLVCheckBoxTableRow *> &rows() const { return m_rows; }

    // Puts the rows behind this widget in the order of the tab key, also those that come later.
    void setTabOrderAfter(QWidget *previous);
    // What a later widget's place in that order is after.
    QWidget *lastInTabOrder() const;

    // As high as its rows; it may be made lower.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void setNumberOfRows(int count);
    void addRow();
    void removeLastRow();
    void updateRow(int row);
    void wasToggled(int row, bool value);
    void moveFrom(int row, int step);
    void setFocusStop(int row);
    void orderRows();
    QString uidOfRow(int row) const;

    KLVCheckBoxTableDataSource *m_dataSource = nullptr;
    QWidget *m_previousInTabOrder = nullptr;
    QList<KLVCheckBoxTableRow *> m_rows;
    int m_focusStop = 0;
    bool m_isReloading = false;
};
