// SPDX-License-Identifier: MIT
#include "KLVSplitViewDivider.h"

#include "KLVSplitView.h"
#include "KLVTheme.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// In points.
constexpr int keyStep = 8;
constexpr int pageStep = 48;
constexpr double focusWidth = 2;

class DividerInterface final : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit DividerInterface(KLVSplitViewDivider *divider)
        : QAccessibleWidget(divider, QAccessible::Separator)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return view()->positionOfDivider(); }
    void setCurrentValue(const QVariant &value) override { view()->dragDivider(value.toDouble()); }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return std::max(0, view()->height() - view()->handleWidth()); }
    QVariant minimumStepSize() const override { return keyStep; }

private:
    KLVSplitView *view() const { return static_cast<KLVSplitView *>(widget()->parentWidget()); }
};

QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    return className == u"KLVSplitViewDivider"_s ? new DividerInterface(static_cast<KLVSplitViewDivider *>(object))
                                                 : nullptr;
}

} // namespace

KLVSplitViewDivider::KLVSplitViewDivider(KLVSplitView *splitView)
    : QSplitterHandle(Qt::Vertical, splitView)
    , m_splitView(splitView)
{
    // Once for the program; more often does no harm.
    QAccessible::installFactory(makeInterface);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(QCoreApplication::translate("Vantle", "Divider"));
    setAccessibleDescription(
        QCoreApplication::translate("Vantle", "Up and Down move it, Home and End hide one of the lists."));
}

void KLVSplitViewDivider::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    m_splitView->drawDividerInRect(painter, rect());
    if (!hasFocus())
        return;
    constexpr double inset = focusWidth / 2;
    painter.setPen(QPen(KLVTheme(palette()).accent(), focusWidth));
    painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
}

void KLVSplitViewDivider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_grip = qRound(event->position().y());
}

void KLVSplitViewDivider::mouseMoveEvent(QMouseEvent *event)
{
    if (m_grip)
        m_splitView->dragDivider(mapToParent(event->position()).y() - *m_grip);
}

void KLVSplitViewDivider::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_grip.reset();
}

void KLVSplitViewDivider::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
        m_splitView->moveDivider(-keyStep);
        return;
    case Qt::Key_Down:
        m_splitView->moveDivider(keyStep);
        return;
    case Qt::Key_PageUp:
        m_splitView->moveDivider(-pageStep);
        return;
    case Qt::Key_PageDown:
        m_splitView->moveDivider(pageStep);
        return;
    case Qt::Key_Home:
        m_splitView->collapseSubview(0);
        return;
    case Qt::Key_End:
        m_splitView->collapseSubview(1);
        return;
    default:
        QSplitterHandle::keyPressEvent(event);
    }
}

void KLVSplitViewDivider::focusInEvent(QFocusEvent *event)
{
    QSplitterHandle::focusInEvent(event);
    update();
}

void KLVSplitViewDivider::focusOutEvent(QFocusEvent *event)
{
    QSplitterHandle::focusOutEvent(event);
    update();
}
