// SPDX-License-Identifier: MIT
#pragma once

#include "KLVTextField.h"

#include <QColor>

// A text field on a pill in its background colour. Without text there is no pill either.
class KLVMiniBadge final : public KLVTextField
{
public:
    using KLVTextField::KLVTextField;

    const QColor &backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const QColor &color) { m_backgroundColor = color; }

    // What a text needs: figures have one width, so that the times of all rows stand below each other.
    static double textWidth(const QString &text, const QFont &font);

    bool looksLike(const KLVView &other) const override;

protected:
    void draw(const KLVDrawingContext &drawing) const override;

private:
    void drawText(const KLVDrawingContext &drawing) const;

    QColor m_backgroundColor;
};
