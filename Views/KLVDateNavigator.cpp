// SPDX-License-Identifier: MIT
#include "KLVDateNavigator.h"

#include "KLVBarButton.h"
#include "KLVMetrics.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr qreal fixedWidth = 46; // points
constexpr qreal leastFixedWidth = 34; // points; so narrow only where the label has no room
constexpr qreal labelMargin = 8; // points
constexpr qreal statedHeight = 28; // points
constexpr int daysPerWeek = 7;

struct Segment {
    int tag; // days to go by; 0 goes to today
    KLVSign sign;
    const char *objectName;
    const char *name;
};

constexpr std::array<Segment, KLVDateNavigator::segmentCount> segments { {
    { -daysPerWeek, KLVSign::BackTwice, "previousWeekButton", QT_TRANSLATE_NOOP("Vantle", "Previous Week") },
    { -1, KLVSign::Back, "previousDayButton", QT_TRANSLATE_NOOP("Vantle", "Previous Day") },
    { 0, KLVSign::None, "todayButton", QT_TRANSLATE_NOOP("Vantle", "Today") },
    { 1, KLVSign::Forward, "nextDayButton", QT_TRANSLATE_NOOP("Vantle", "Next Day") },
    { daysPerWeek, KLVSign::ForwardTwice, "nextWeekButton", QT_TRANSLATE_NOOP("Vantle", "Next Week") },
} };

int pixels(double points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

} // namespace

KLVDateNavigator::KLVDateNavigator(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QCoreApplication::translate("Vantle", "Shown day"));
    for (int i = 0; i < segmentCount; ++i) {
        const Segment &segment = segments.at(static_cast<std::size_t>(i));
        auto *button = new KLVBarButton(this);
        button->setObjectName(QLatin1String(segment.objectName));
        button->setSign(segment.sign);
        button->setAccessibleName(QCoreApplication::translate("Vantle", segment.name));
        button->setToolTip(QCoreApplication::translate("Vantle", segment.name));
        button->installEventFilter(this);
        connect(button, &KLVBarButton::clicked, this, [this, i] { segmentClicked(i); });
        m_segments.append(button);
    }
    setFocusStop(middleSegment);
}

int KLVDateNavigator::tagForSegment(int segment) const
{
    return segments.at(static_cast<std::size_t>(segment)).tag;
}

QString KLVDateNavigator::labelForSegment(int segment) const
{
    return m_segments.at(segment)->text();
}

void KLVDateNavigator::setLabel_forSegment(const QString &label, int segment)
{
    KLVBarButton *button = m_segments.at(segment);
    if (button->text() == label)
        return;
    button->setText(label);
    button->setAccessibleDescription(label);
    layOutSegments();
}

void KLVDateNavigator::setTabOrderBetween(QWidget *previous, QWidget *next)
{
    // Qt leaves widgets where they are in the order that take no focus at this moment.
    for (KLVBarButton *button : std::as_const(m_segments))
        button->setFocusPolicy(Qt::TabFocus);
    QWidget *last = previous;
    for (KLVBarButton *button : std::as_const(m_segments)) {
        setTabOrder(last, button);
        last = button;
    }
    setTabOrder(last, next);
    setFocusStop(m_focusStop);
}

QSize KLVDateNavigator::sizeHint() const
{
    return { pixels(6 * fixedWidth), pixels(statedHeight) };
}

QSize KLVDateNavigator::minimumSizeHint() const
{
    return { pixels(5 * fixedWidth), pixels(statedHeight) };
}

void KLVDateNavigator::segmentClicked(int segment)
{
    m_selectedSegment = segment;
    setFocusStop(segment);
    Q_EMIT triggered();
}

bool KLVDateNavigator::eventFilter(QObject *watched, QEvent *event)
{
    const auto segment = static_cast<int>(m_segments.indexOf(static_cast<KLVBarButton *>(watched)));
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent *>(event)->key();
        const Qt::KeyboardModifiers modifiers = static_cast<const QKeyEvent *>(event)->modifiers();
        const bool isPlain = (modifiers & ~Qt::KeypadModifier) == Qt::NoModifier;
        if (isPlain && (key == Qt::Key_Left || key == Qt::Key_Right)) {
            const int forward = isLeftToRight() ? 1 : -1;
            moveFocus(segment, key == Qt::Key_Right ? forward : -forward);
            return true;
        }
        // The lists, not the buttons, follow these; a button would pass the focus on.
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            event->ignore();
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_segments.at(segment)->click();
            return true;
        }
    } else if (event->type() == QEvent::FocusIn) {
        setFocusStop(segment);
    }
    return QWidget::eventFilter(watched, event);
}

void KLVDateNavigator::moveFocus(int from, int step)
{
    const int to = from + step;
    if (to < 0 || to >= segmentCount)
        return;
    setFocusStop(to);
    m_segments.at(to)->setFocus(Qt::TabFocusReason);
}

// The tab key stops at one segment, the one that was used last.
void KLVDateNavigator::setFocusStop(int segment)
{
    m_focusStop = segment;
    for (int i = 0; i < segmentCount; ++i)
        m_segments.at(i)->setFocusPolicy(i == segment ? Qt::TabFocus : Qt::NoFocus);
}

void KLVDateNavigator::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOutSegments();
}

void KLVDateNavigator::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) {
        updateGeometry();
        layOutSegments();
    }
}

void KLVDateNavigator::layOutSegments()
{
    const int label = m_segments.at(middleSegment)->textWidth() + 2 * pixels(labelMargin);
    const int narrow = qBound(pixels(leastFixedWidth), (width() - label) / (segmentCount - 1), pixels(fixedWidth));
    const int wide = std::max(0, width() - narrow * (segmentCount - 1));
    int x = 0;
    for (int i = 0; i < segmentCount; ++i) {
        KLVBarButton *button = m_segments.at(i);
        const int ownWidth = i == middleSegment ? wide : narrow;
        const int left = isLeftToRight() ? x : width() - x - ownWidth;
        button->setGeometry(left, 0, ownWidth, QWidget::height());
        button->setFaceRectangle(QRectF(rect()).translated(-left, 0));
        x += ownWidth;
    }
}
