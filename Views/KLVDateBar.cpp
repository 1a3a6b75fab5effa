// SPDX-License-Identifier: MIT
#include "KLVDateBar.h"

#include "KLVBarButton.h"
#include "KLVDateNavigator.h"
#include "KLVMetrics.h"
#include "KLVTheme.h"
#include "KLVTitleLabel.h"

#include <QApplication>
#include <QGridLayout>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr qreal sideMargin = 12;
constexpr qreal endMargin = 10;
constexpr qreal gap = 10;
constexpr int hairline = 1; // pixels

void setUpButton(KLVBarButton &button, KLVSign sign, const QString &objectName, const QString &title)
{
    button.setObjectName(objectName);
    button.setSign(sign);
    button.setFocusPolicy(Qt::TabFocus);
    button.setAccessibleName(title);
    button.setToolTip(title);
    button.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

} // namespace

KLVDateBar::KLVDateBar(QWidget *parent)
    : QWidget(parent)
    , m_dateLabel(new KLVTitleLabel(this))
    , m_newButton(new KLVBarButton(this))
    , m_menuButton(new KLVBarButton(this))
    , m_dateNavigator(new KLVDateNavigator(this))
{
    setAccessibleName(QCoreApplication::translate("Vantle", "Date bar"));
    m_dateLabel->setObjectName(u"dateLabel"_s);
    setUpButton(*m_newButton, KLVSign::Plus, u"newButton"_s, QCoreApplication::translate("Vantle", "New"));
    setUpButton(*m_menuButton, KLVSign::Menu, u"menuButton"_s, QCoreApplication::translate("Vantle", "Menu"));
    m_dateNavigator->setObjectName(u"dateNavigator"_s);

    auto *layout = new QGridLayout(this);
    takeMeasures();
    layout->addWidget(m_dateLabel, 0, 0);
    layout->addWidget(m_newButton, 0, 1);
    layout->addWidget(m_menuButton, 0, 2);
    layout->addWidget(m_dateNavigator, 1, 0, 1, 3);
    layout->setColumnStretch(0, 1);
}

void KLVDateBar::takeMeasures()
{
    const KLVMetrics metrics(QApplication::font());
    const int side = qRound(metrics.length(sideMargin));
    const int end = qRound(metrics.length(endMargin));
    layout()->setContentsMargins(side, end, side, end + hairline);
    layout()->setSpacing(qRound(metrics.length(gap)));
}

void KLVDateBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        takeMeasures();
        for (KLVBarButton *button : { m_newButton, m_menuButton })
            button->updateGeometry();
    }
    QWidget::changeEvent(event);
}

void KLVDateBar::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(0, height() - hairline, width(), hairline, KLVTheme(palette()).hairline());
}
