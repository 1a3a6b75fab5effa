// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QList>
#include <QWidget>

// Key combinations, each drawn as a cap of the keyboard, side by side.
class KLVKeyCaps final : public QWidget
{
    Q_OBJECT

public:
    explicit KLVKeyCaps(const QList<QKeySequence> &shortcuts, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    void takeFont();
    int capWidth(const QString &text) const;

    QStringList m_texts; // in the words of this keyboard and language
};
