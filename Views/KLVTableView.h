// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>

#include <memory>

class KLVTableView;

// Supplies what a table shows. Asked anew at every reloadData().
class KLVTableViewDataSource
{
public:
    KLVTableViewDataSource() = default;
    virtual ~KLVTableViewDataSource() = default;
    KLVTableViewDataSource(const KLVTableViewDataSource &) = delete;
    KLVTableViewDataSource &operator=(const KLVTableViewDataSource &) = delete;

    virtual int numberOfRowsInTableView(KLVTableView *tableView) = 0;
    // Plain text, or an invalid variant for an empty cell.
    virtual QVariant tableView_objectValueForTableColumn_row(KLVTableView *tableView, int column, int row) = 0;
};

// A table of two columns without headers: a line of text, and a small button
// that acts on its row. Rows without a text have no button.
//
// As high as its rows, within limits. Space, F2 and a double click do what the
// row's button does; Delete asks to remove the row.
class KLVTableView final : public QTableView
{
    Q_OBJECT

public:
    static constexpr int textColumn = 0;
    static constexpr int buttonColumn = 1;

    explicit KLVTableView(QWidget *parent = nullptr);
    ~KLVTableView() override;

    // Not owned; null for none.
    void setDataSource(KLVTableViewDataSource *dataSource);
    // What a row's button is called by tool tip and assistive technology.
    void setButtonTitle(const QString &title) { m_buttonTitle = title; }

    // The selected row stays selected, as far as there is one with its number.
    void reloadData();

    int selectedRow() const; // -1 for none
    void deselectAll();

    // Null for a row that is empty or not there.
    QString textOfRow(int row) const;
    QWidget *buttonOfRow(int row) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // By then the row is selected.
    void buttonPressed(int row);
    void removalRequested(int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    class Model;

    void addButton(int row);
    void press(int row);
    int heightOfRows(int rows) const;

    std::unique_ptr<Model> m_model;
    QString m_buttonTitle;
};
