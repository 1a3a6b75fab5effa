// SPDX-License-Identifier: MIT
#pragma once

#include "KLVSign.h"

#include <QAbstractButton>
#include <QPointer>

class QMenu;

// A button of the date bar: a text or a sign on a rounded face.
//
// Several of them can share one face, each showing its slice (see
// setFaceRectangle): that is how a segmented control is made of buttons that
// the keyboard and assistive technology know one by one.
class KLVBarButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit KLVBarButton(QWidget *parent = nullptr);

    KLVSign sign() const { return m_sign; }
    // Shown instead of a text.
    void setSign(KLVSign sign);

    // The whole rounded face, in the button's own coordinates. An empty one, as at first: the button's rectangle.
    void setFaceRectangle(const QRectF &face);

    // A menu that a click opens, for assistive technology; opening it is up to whoever hears the click. Not owned.
    QMenu *menu() const;
    void setMenu(QMenu *menu);

    QSize sizeHint() const override;
    // Of the whole text, without a margin.
    int textWidth() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QColor faceColor() const;
    void paintFocus(QPainter &painter) const;

    QPointer<QMenu> m_menu;
    KLVSign m_sign = KLVSign::None;
    QRectF m_face;
};
