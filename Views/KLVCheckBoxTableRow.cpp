// SPDX-License-Identifier: MIT
#include "KLVCheckBoxTableRow.h"

#include "KLVMetrics.h"
#include "KLVSign.h"
#include "KLVText.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <limits>

namespace
{

// All in points.
constexpr double rowHeight = 26;
constexpr double boxSide = 14;
constexpr double boxLeft = 6;
constexpr double textLeft = 28;
constexpr double textRight = 6;
constexpr double signSide = 14;
constexpr double signRight = 6;
constexpr double signGap = 6; // between the text and the sign
constexpr double cornerRadius = 6;
constexpr double focusWidth = 2;
constexpr double hoverShare = 0.05; // of the text's colour

double points(double stated)
{
    return KLVMetrics(QApplication::font()).length(stated);
}

} // namespace

KLVCheckBoxTableRow::KLVCheckBoxTableRow(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void KLVCheckBoxTableRow::setCell(const KLVColoredButtonCell &cell)
{
    const bool looksTheSame = cell.title() == m_cell.title() && cell.imageTintColor() == m_cell.imageTintColor()
        && cell.remark() == m_cell.remark();
    m_cell = cell;
    setChecked(cell.integerValue() != 0);
    if (looksTheSame)
        return;
    const QString title = KLVText::singleLine(KLVText::shown(cell.title()));
    setAccessibleName(title);
    setAccessibleDescription(KLVText::singleLine(KLVText::shown(cell.remark())));
    update();
}

QSize KLVCheckBoxTableRow::sizeHint() const
{
    const KLVMetrics metrics(QApplication::font());
    return QSizeF(metrics.length(boxLeft + textLeft), metrics.height(rowHeight, font())).toSize();
}

QSize KLVCheckBoxTableRow::minimumSizeHint() const
{
    return sizeHint();
}

QRectF KLVCheckBoxTableRow::boxRectangle() const
{
    const double side = points(boxSide);
    const QRect left(qRound(points(boxLeft)), qRound((height() - side) / 2), qRound(side), qRound(side));
    return QStyle::visualRect(layoutDirection(), rect(), left);
}

QRectF KLVCheckBoxTableRow::signRectangle() const
{
    const double side = points(signSide);
    const QRect left(
        qRound(width() - points(signRight) - side), qRound((height() - side) / 2), qRound(side), qRound(side));
    return QStyle::visualRect(layoutDirection(), rect(), left);
}

QRect KLVCheckBoxTableRow::textRectangle() const
{
    const double right = m_cell.remark().isEmpty() ? textRight : signRight + signSide + signGap;
    const QRect left = rect().adjusted(qRound(points(textLeft)), 0, -qRound(points(right)), 0);
    return QStyle::visualRect(layoutDirection(), rect(), left);
}

QString KLVCheckBoxTableRow::shownTitle() const
{
    return fontMetrics().elidedText(accessibleName(), Qt::ElideRight, textRectangle().width());
}

QString KLVCheckBoxTableRow::toolTipText() const
{
    QStringList lines;
    if (shownTitle() != accessibleName())
        lines.append(accessibleName());
    if (!accessibleDescription().isEmpty())
        lines.append(accessibleDescription());
    return lines.join(u'\n');
}

void KLVCheckBoxTableRow::paintEvent(QPaintEvent * /*event*/)
{
    const KLVTheme theme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDown() || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(KLVTheme::blended(theme.text(), isDown() ? 2 * hoverShare : hoverShare, theme.window()));
        painter.drawRoundedRect(rect(), points(cornerRadius), points(cornerRadius));
    }

    KLVColoredButtonCell shown = m_cell;
    shown.setIntegerValue(isChecked() ? 1 : 0);
    shown.drawImage_withFrame_inView({}, boxRectangle(), painter, theme);
    painter.setPen(theme.text());
    const Qt::Alignment alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(textRectangle(), static_cast<int>(alignment | Qt::TextSingleLine), shownTitle());

    if (!m_cell.remark().isEmpty())
        KLVDrawSign(painter, KLVSign::Warning, signRectangle(), theme.overdue(), points(1), layoutDirection());

    if (hasFocus()) {
        const double inset = points(focusWidth) / 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme.focusLine(), points(focusWidth)));
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), points(cornerRadius) - inset,
            points(cornerRadius) - inset);
    }
}

void KLVCheckBoxTableRow::keyPressEvent(QKeyEvent *event)
{
    constexpr int many = std::numeric_limits<int>::max() / 2;
    switch (event->key()) {
    case Qt::Key_Up:
        Q_EMIT moveWanted(-1);
        return;
    case Qt::Key_Down:
        Q_EMIT moveWanted(1);
        return;
    case Qt::Key_Home:
        Q_EMIT moveWanted(-many);
        return;
    case Qt::Key_End:
        Q_EMIT moveWanted(many);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void KLVCheckBoxTableRow::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    Q_EMIT moveWanted(0);
}

bool KLVCheckBoxTableRow::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        // Plain text: a name that looks like markup is shown as it is.
        QToolTip::showText(static_cast<const QHelpEvent *>(event)->globalPos(), KLVText::toolTip(toolTipText()), this);
        return true;
    }
    return QAbstractButton::event(event);
}
