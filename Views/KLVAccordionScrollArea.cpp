// SPDX-License-Identifier: MIT
#include "KLVAccordionScrollArea.h"

#include "KLVAccordionView.h"
#include "KLVSlimScrollBar.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

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
        painter.setPen(QPen(KLVTheme(palette()).accent(), 1.0));
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
    m_bar->setGeometry(area.right() + 1 - KLVSlimScrollBar::barWidth, area.top() + 1, KLVSlimScrollBar::barWidth,
        std::max(0, area.height() - 2));
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

void KLVAccordionScrollArea::updateFocusFrame()
{
    m_focusFrame->setVisible(m_accordion && m_accordion->hasFocus());
}
