// SPDX-License-Identifier: MIT
#include "KLVBarButton.h"

#include "KLVBarButtonAccessibility.h"
#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

namespace
{

constexpr qreal cornerRadius = 6; // points
constexpr double pressedShare = 0.16; // of the text's colour on the face
constexpr double hoverShare = 0.05;
constexpr qreal focusWidth = 2; // points
constexpr double statedWidth = 28;
constexpr double statedHeight = 26;
constexpr int textSize = 13;
constexpr int textWeight = 600;
constexpr int textMargin = 4; // pixels, at each side

// Pixels for one stated point, by the person's font.
qreal pointSize()
{
    constexpr double many = 100;
    return KLVMetrics(QApplication::font()).length(many) / many;
}

QFont textFont()
{
    return KLVMetrics(QApplication::font()).font(textSize, textWeight);
}

// Half a line inside the rectangle, so that a line of one point lies on whole pixels.
QPainterPath faceOutline(const QRectF &face, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(face.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    return path;
}

} // namespace

KLVBarButton::KLVBarButton(QWidget *parent)
    : QAbstractButton(parent)
{
    KLVBarButtonAccessibility::install();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void KLVBarButton::setSign(KLVSign sign)
{
    m_sign = sign;
    update();
}

QMenu *KLVBarButton::menu() const
{
    return m_menu;
}

void KLVBarButton::setMenu(QMenu *menu)
{
    m_menu = menu;
}

void KLVBarButton::setFaceRectangle(const QRectF &face)
{
    m_face = face;
    update();
}

QSize KLVBarButton::sizeHint() const
{
    const KLVMetrics metrics(QApplication::font());
    return QSizeF(metrics.length(statedWidth), metrics.length(statedHeight)).toSize();
}

int KLVBarButton::textWidth() const
{
    return QFontMetrics(textFont()).horizontalAdvance(text());
}

QColor KLVBarButton::faceColor() const
{
    const QColor face = palette().color(QPalette::Button);
    const QColor text = palette().color(QPalette::ButtonText);
    if (isDown())
        return KLVTheme::blended(text, pressedShare, face);
    if (underMouse() && isEnabled())
        return KLVTheme::blended(text, hoverShare, face);
    return face;
}

void KLVBarButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF face = m_face.isEmpty() ? QRectF(rect()) : m_face;
    const qreal unit = pointSize();
    const QPainterPath outline = faceOutline(face, cornerRadius * unit);
    painter.setPen(QPen(KLVTheme(palette()).controlLine(), 1));
    painter.setBrush(faceColor());
    painter.drawPath(outline);
    // Between two slices of one face stands a line, at the right edge of the left one.
    if (face.right() > rect().right() + 1)
        painter.drawLine(QPointF(width() - 0.5, 1), QPointF(width() - 0.5, height() - 1));

    const QColor text = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
    if (m_sign != KLVSign::None) {
        KLVDrawSign(painter, m_sign, QRectF(rect()), text, unit, layoutDirection());
    } else {
        painter.setPen(text);
        painter.setFont(textFont());
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine,
            painter.fontMetrics().elidedText(this->text(), Qt::ElideRight, width() - 2 * textMargin));
    }
    if (hasFocus())
        paintFocus(painter);
}

void KLVBarButton::paintFocus(QPainter &painter) const
{
    const qreal unit = pointSize();
    const qreal inset = focusWidth * unit / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(KLVTheme(palette()).focusLine(), focusWidth * unit));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cornerRadius * unit - inset,
        cornerRadius * unit - inset);
}

void KLVBarButton::enterEvent(QEnterEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void KLVBarButton::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}
