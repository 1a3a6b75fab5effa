// SPDX-License-Identifier: MIT
#pragma once

#include "KLVControl.h"

#include <QFont>

// A button without a border: a link, or one cell of a matrix.
class KLVButton : public KLVControl
{
public:
    enum class Kind { Plain, Link };

    using KLVControl::KLVControl;

    const QString &title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }
    const QFont &font() const { return m_font; }
    void setFont(const QFont &font) { m_font = font; }
    Kind kind() const { return m_kind; }
    void setKind(Kind kind) { m_kind = kind; }

    // The text and what is close to it.
    QRectF clickableRect() const override;
    bool looksLike(const KLVView &other) const override;
    QAccessible::Role accessibleRole() const override;
    QString accessibleText() const override { return m_title; }

protected:
    void draw(const KLVDrawingContext &drawing) const override;

private:
    QString m_title;
    QFont m_font;
    Kind m_kind = Kind::Plain;
};
