// SPDX-License-Identifier: MIT
#include "KLVSheet.h"

#include "KLVDatePicker.h"
#include "KLVKeyBindings.h"
#include "KLVTheme.h"

#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto sheetFlags = Qt::Sheet | Qt::FramelessWindowHint;

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

KLVSheet::KLVSheet(QWidget *parent)
    : QDialog(parent, sheetFlags)
{
    setWindowModality(Qt::WindowModal);
}

void KLVSheet::setController(QObject *controller)
{
    KLVKeyBindings::setNextResponder(this, controller);
}

void KLVSheet::beginSheet(QWidget *window)
{
    endSheet();
    m_window = window;
    QWidget *const focused = focusWidget();
    setParent(window, sheetFlags);
    window->installEventFilter(this);
    listenToControls();
    fit();
    show();
    raise();
    activateWindow();
    if (focused)
        focused->setFocus(Qt::OtherFocusReason);
    m_isBegun = true;
}

void KLVSheet::endSheet()
{
    if (!m_window)
        return;
    QWidget *const window = m_window;
    m_window.clear();
    m_isBegun = false;
    window->removeEventFilter(this);
    hide();
    setParent(nullptr, sheetFlags);
    window->activateWindow();
}

void KLVSheet::reject()
{
    KLVKeyBindings::sendAction(u"cancelOperation"_s, this, this);
}

void KLVSheet::listenToControls()
{
    const auto controls = findChildren<QWidget *>();
    for (QWidget *control : controls) {
        control->removeEventFilter(this);
        control->installEventFilter(this);
    }
}

bool KLVSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window) {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
            place();
            break;
        case QEvent::WindowActivate:
            takeKeyboardBack();
            break;
        default:
            break;
        }
        return false;
    }

    auto *const control = qobject_cast<QWidget *>(watched);
    // A dialog that is shown again tells its control that Tab has led there; what was typed would be selected.
    if (event->type() == QEvent::FocusIn && m_isBegun && control && !control->hasFocus())
        return true;
    if (event->type() == QEvent::KeyPress && control && control->window() == this)
        return interpretKey(static_cast<QKeyEvent &>(*event), control);
    return QDialog::eventFilter(watched, event);
}

bool KLVSheet::interpretKey(const QKeyEvent &event, QWidget *control)
{
    if (!isReturn(event))
        return false;
    // Held too long: what it did is done, and nothing else is meant.
    if (event.isAutoRepeat())
        return true;
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::ControlModifier) {
        if (auto *const picker = qobject_cast<KLVDatePicker *>(control))
            picker->interpretText();
    } else if (modifiers != Qt::NoModifier || qobject_cast<QPlainTextEdit *>(control)
        || qobject_cast<KLVDatePicker *>(control)) {
        return false;
    }
    return KLVKeyBindings::sendAction(u"insertNewline"_s, control, control);
}

bool KLVSheet::event(QEvent *event)
{
    const bool wasUsed = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest && m_window && isVisible())
        fit();
    return wasUsed;
}

void KLVSheet::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    QPainter painter(this);
    painter.setPen(KLVTheme(palette()).controlLine());
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void KLVSheet::fit()
{
    const int width = qMax(minimumWidth(), sizeHint().width());
    const bool dependsOnWidth = layout() && layout()->hasHeightForWidth();
    resize(width, dependsOnWidth ? layout()->totalHeightForWidth(width) : sizeHint().height());
    place();
}

void KLVSheet::place()
{
    if (!m_window)
        return;
    const QPoint top = m_window->mapToGlobal(QPoint(m_window->width() / 2, 0));
    QRect frame(QPoint(top.x() - width() / 2, top.y()), size());
    // All of the sheet is to be seen, also when its window leaves the screen.
    const QRect available = m_window->screen()->availableGeometry();
    frame.moveLeft(qMax(available.left(), qMin(frame.left(), available.right() + 1 - frame.width())));
    frame.moveTop(qMax(available.top(), qMin(frame.top(), available.bottom() + 1 - frame.height())));
    move(frame.topLeft());
}

void KLVSheet::takeKeyboardBack()
{
    // After the window manager has finished with the window that it activated.
    QTimer::singleShot(0, this, [this] {
        if (!m_window || !isVisible())
            return;
        raise();
        activateWindow();
    });
}
