// SPDX-License-Identifier: MIT
#pragma once

#include "KLVColoredButtonCell.h"
#include "KLVControl.h"

// A check box of a row. A click sends the action; what is ticked follows the object it stands for.
class KLVCheckBox final : public KLVControl
{
public:
    using KLVControl::KLVControl;

    KLVColoredButtonCell &cell() { return m_cell; }
    const KLVColoredButtonCell &cell() const { return m_cell; }

    void setAccessibleText(const QString &text) { m_accessibleText = text; }

    QRectF clickableRect() const override;
    bool looksLike(const KLVView &other) const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::CheckBox; }
    QString accessibleText() const override { return m_accessibleText; }
    bool isCheckable() const override { return true; }
    bool isChecked() const override { return m_cell.integerValue() != 0; }

protected:
    void draw(const KLVDrawingContext &drawing) const override;

private:
    KLVColoredButtonCell m_cell;
    QString m_accessibleText;
};
