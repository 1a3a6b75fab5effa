// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

// A pop-up list of which one entry is chosen, and only ever on purpose: closed,
// it does not change by the wheel, an arrow or a typed letter; keys open it.
class KLVPopUpButton final : public QComboBox
{
    Q_OBJECT

public:
    explicit KLVPopUpButton(QWidget *parent = nullptr);

    // An entry that can be seen and not chosen, with the reason why.
    void setItemDisabled(int index, const QString &reason);
    bool isItemEnabled(int index) const;

    // As when the person picks the entry, which must be enabled.
    void choose(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};
