// SPDX-License-Identifier: MIT
#include "KLVMonthView.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QTextCharFormat>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace
{

constexpr double margin = 6; // points
constexpr double signSize = 16; // points

} // namespace

KLVMonthView::KLVMonthView(QWidget *parent)
    : QCalendarWidget(parent)
{
    setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    setAccessibleName(QCoreApplication::translate("Vantle", "Month"));
    for (int day = Qt::Monday; day <= Qt::Sunday; ++day)
        setWeekdayTextFormat(static_cast<Qt::DayOfWeek>(day), {});
    const int side = qRound(KLVMetrics(QApplication::font()).length(margin));
    setContentsMargins(side, side, side, side);
    takeColors();
}

void KLVMonthView::takeColors()
{
    const KLVTheme theme(QApplication::palette());
    QTextCharFormat weekdays;
    weekdays.setForeground(theme.readable(theme.dimText(), theme.base()));
    weekdays.setBackground(theme.base());
    setHeaderTextFormat(weekdays);

    // Its buttons are written in the colour of highlighted text.
    if (auto *const bar = findChild<QWidget *>(u"qt_calendar_navigationbar"_s)) {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Highlight, theme.base());
        palette.setColor(QPalette::HighlightedText, theme.text());
        bar->setPalette(palette);
    }
    if (auto *const year = findChild<QWidget *>(u"qt_calendar_yearedit"_s))
        year->setPalette(QApplication::palette());
    takeSign(u"qt_calendar_prevmonth"_s, KLVSign::Back, QCoreApplication::translate("Vantle", "Previous Month"));
    takeSign(u"qt_calendar_nextmonth"_s, KLVSign::Forward, QCoreApplication::translate("Vantle", "Next Month"));
}

void KLVMonthView::takeSign(const QString &button, KLVSign sign, const QString &name)
{
    auto *const tool = findChild<QToolButton *>(button);
    if (!tool)
        return;
    const double unit = KLVMetrics(QApplication::font()).length(1);
    const QSize size(qRound(signSize * unit), qRound(signSize * unit));
    QPixmap pixmap(size * devicePixelRatioF());
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        KLVDrawSign(
            painter, sign, QRectF(QPointF(), size), KLVTheme(QApplication::palette()).text(), unit, layoutDirection());
    }
    tool->setIcon(QIcon(pixmap));
    tool->setIconSize(size);
    tool->setAccessibleName(name);
    tool->setToolTip(name);
}

void KLVMonthView::changeEvent(QEvent *event)
{
    QCalendarWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::StyleChange
        || event->type() == QEvent::LayoutDirectionChange)
        takeColors();
}

void KLVMonthView::paintEvent(QPaintEvent * /*event*/)
{
    const KLVTheme theme(palette());
    QPainter painter(this);
    painter.fillRect(rect(), theme.base());
    painter.setPen(theme.controlLine());
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
