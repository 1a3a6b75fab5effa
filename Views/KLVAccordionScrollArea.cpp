// SPDX-License-Identifier: MIT
#include "KLVAccordionScrollArea.h"

#include "KLVAccordionView.h"
#include "KLVDrawings.h"
#include "KLVSlimScrollBar.h"
#include "KLVTheme.h"
#include "KLVView.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

namespace
{

class FocusFrame final : public QWidget
{
public:
    explicit FocusFrame(QWidget *parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(QPen(KLVTheme(palette()).focusLine(), 1.0));
        painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    }
};

} // namespace

KLVAccordionScrollArea::KLVAccordionScrollArea(KLVAccordionView *accordion, QWidget *parent)
    : QScrollArea(parent)
    , m_accordion(accordion)
    , m_bar(new KLVSlimScrollBar(this))
    , m_focusFrame(new FocusFrame(this))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Base);
    setWidget(accordion);
    accordion->setAutoFillBackground(false);

    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &KLVAccordionScrollArea::updateBar);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &KLVAccordionScrollArea::updateBar);
    connect(m_bar, &QScrollBar::valueChanged, verticalScrollBar(), &QScrollBar::setValue);
    connect(qApp, &QApplication::focusChanged, this, &KLVAccordionScrollArea::updateFocusFrame);
    // The ring of a selected row is always whole.
    m_bar->setCover([this] { return ringsOverBar(); });
    updateBar();
    updateFocusFrame();
}

// The accordion lays itself out once more when it goes: it must find a whole scroll area, and
// nothing that happens after it may come back here.
KLVAccordionScrollArea::~KLVAccordionScrollArea()
{
    disconnect(qApp, nullptr, this, nullptr);
    delete takeWidget();
    disconnect(verticalScrollBar(), nullptr, this, nullptr);
}

KLVAccordionView *KLVAccordionScrollArea::accordion() const
{
    return m_accordion;
}

void KLVAccordionScrollArea::resizeEvent(QResizeEvent *event)
{
    if (m_accordion)
        m_accordion->resize(viewport()->width(), m_accordion->height());
    QScrollArea::resizeEvent(event);
    placeOverlays();
    updateBar();
}

// A scroll area's own would scroll to the middle of the list when the keyboard leaves it.
bool KLVAccordionScrollArea::focusNextPrevChild(bool next)
{
    return QWidget::focusNextPrevChild(next); // NOLINT(bugprone-parent-virtual-call)
}

void KLVAccordionScrollArea::placeOverlays()
{
    const QRect area = viewport()->geometry();
    constexpr int ring = 2; // the handle is clear of the line at the row's edge
    const int width = KLVSlimScrollBar::barWidth;
    const QRect bar(area.right() + 1 - ring - width, area.top() + 1, width, std::max(0, area.height() - 2));
    m_bar->setGeometry(QStyle::visualRect(layoutDirection(), area, bar));
    m_bar->raise();
    m_focusFrame->setGeometry(area);
    m_focusFrame->raise();
}

void KLVAccordionScrollArea::updateBar()
{
    const QScrollBar *const model = verticalScrollBar();
    m_bar->setRange(model->minimum(), model->maximum());
    m_bar->setPageStep(model->pageStep());
    m_bar->setSingleStep(model->singleStep());
    m_bar->setValue(model->value());
    m_bar->setVisible(model->maximum() > model->minimum());
}

QPainterPath KLVAccordionScrollArea::ringsOverBar() const
{
    QPainterPath rings;
    if (!m_accordion)
        return rings;
    const QPointF offset = m_bar->mapFromGlobal(m_accordion->mapToGlobal(QPoint(0, 0)));
    for (const KLVAccordionViewItemPtr &item : m_accordion->accordionViewItems()) {
        if (item->isSelected() && item->view())
            rings.addPath(KLVDrawings::selectedRing(item->view()->frame()).translated(offset));
    }
    return rings;
}

void KLVAccordionScrollArea::updateFocusFrame()
{
    m_focusFrame->setVisible(m_accordion && m_accordion->hasFocus());
}
