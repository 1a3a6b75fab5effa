// SPDX-License-Identifier: MIT
#include "KLVCalendarsDrawer.h"

#include "KLVCheckBoxTable.h"
#include "KLVDatePicker.h"
#include "KLVHeading.h"
#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr double drawerWidth = 190;
constexpr double margin = 12;
constexpr double tableOutset = 4; // a row's face and its focus ring begin that much left of the text
constexpr double gap = 8;
constexpr double groupGap = 16;
constexpr int hairline = 1; // pixels

int pixels(double points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

// Side by side, inside the drawer's margin.
QLayout *line(const QList<QWidget *> &widgets)
{
    auto *layout = new QHBoxLayout;
    layout->setContentsMargins(pixels(tableOutset), 0, pixels(tableOutset), 0);
    layout->setSpacing(pixels(gap));
    for (QWidget *widget : widgets)
        layout->addWidget(widget);
    if (widgets.size() > 1)
        layout->addStretch();
    return layout;
}

} // namespace

KLVCalendarsDrawer::KLVCalendarsDrawer(QWidget *parent)
    : QWidget(parent)
    , m_calendarsTable(new KLVCheckBoxTable(this))
    , m_allButton(addButton(QCoreApplication::translate("Vantle", "All"), u"selectAllCalendars"_s))
    , m_noneButton(addButton(QCoreApplication::translate("Vantle", "None"), u"unselectAllCalendars"_s))
    , m_accountSettingsButton(
          addButton(QCoreApplication::translate("Vantle", "Account Settings…"), u"accountSettings"_s))
    , m_textDatePicker(new KLVDatePicker(this))
{
    setAccessibleName(QCoreApplication::translate("Vantle", "Calendars drawer"));
    setFixedWidth(statedWidth());
    m_allButton->setAccessibleName(QCoreApplication::translate("Vantle", "Show all calendars"));
    m_noneButton->setAccessibleName(QCoreApplication::translate("Vantle", "Show no calendar"));
    m_accountSettingsButton->setAccessibleName(QCoreApplication::translate("Vantle", "Open the account settings"));
    m_calendarsTable->setObjectName(u"calendarsTable"_s);
    m_calendarsTable->setAccessibleName(QCoreApplication::translate("Vantle", "Calendars"));
    m_textDatePicker->setObjectName(u"textDatePicker"_s);
    m_textDatePicker->setAccessibleName(QCoreApplication::translate("Vantle", "Go to date"));
    m_textDatePicker->setButtonSymbols(QAbstractSpinBox::NoButtons);
    // The day is gone to when it is whole, not at every digit.
    m_textDatePicker->setKeyboardTracking(false);

    auto *dateHeading = new KLVHeading(QCoreApplication::translate("Vantle", "Go to date"), this);
    dateHeading->setBuddy(m_textDatePicker);
    auto *layout = new QVBoxLayout(this);
    const int edge = pixels(margin - tableOutset);
    layout->setContentsMargins(edge + hairline, pixels(margin), edge, pixels(margin));
    layout->setSpacing(pixels(gap));
    layout->addLayout(line({ new KLVHeading(QCoreApplication::translate("Vantle", "Calendars"), this) }));
    layout->addWidget(m_calendarsTable);
    layout->addLayout(line({ m_allButton, m_noneButton }));
    QLayout *settingsLine = line({ m_accountSettingsButton });
    settingsLine->setAlignment(m_accountSettingsButton, Qt::AlignLeft);
    layout->addLayout(settingsLine);
    m_accountSettingsButton->hide();
    layout->addSpacing(pixels(groupGap - gap));
    layout->addLayout(line({ dateHeading }));
    layout->addLayout(line({ m_textDatePicker }));
    layout->addStretch(1);
}

QPushButton *KLVCalendarsDrawer::addButton(const QString &text, const QString &objectName)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(objectName);
    button->setFocusPolicy(Qt::TabFocus);
    // Return is for the button that has the keyboard, not for the selected to-do.
    button->setAutoDefault(true);
    button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    return button;
}

void KLVCalendarsDrawer::setTabOrderAfter(QWidget *previous)
{
    m_calendarsTable->setTabOrderAfter(previous);
    setTabOrder(m_calendarsTable->lastInTabOrder(), m_allButton);
    setTabOrder(m_allButton, m_noneButton);
    setTabOrder(m_noneButton, m_accountSettingsButton);
    setTabOrder(m_accountSettingsButton, m_textDatePicker);
}

int KLVCalendarsDrawer::statedWidth()
{
    return pixels(drawerWidth);
}

void KLVCalendarsDrawer::cancelOperation()
{
    Q_EMIT cancelled();
}

void KLVCalendarsDrawer::paintEvent(QPaintEvent * /*event*/)
{
    const int x = isLeftToRight() ? 0 : width() - hairline;
    QPainter painter(this);
    painter.fillRect(x, 0, hairline, height(), KLVTheme(palette()).hairline());
}
