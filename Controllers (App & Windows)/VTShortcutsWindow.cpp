// SPDX-License-Identifier: MIT
#include "VTShortcutsWindow.h"

#include "VTKeyboardMap.h"

#include <KLVHeading.h>
#include <KLVKeyCaps.h>
#include <KLVMetrics.h>
#include <KLVReadingDirection.h>
#include <KLVSlimScrollBar.h>

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr QSizeF firstSize(420, 640);
constexpr double margin = 16;
constexpr double groupGap = 18;
constexpr double rowGap = 6;
constexpr double columnGap = 16;

int pixels(double points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

void addRow(QGridLayout *grid, const VTKeyboardEntry &entry)
{
    const int row = grid->rowCount();
    auto *text = new QLabel(entry.translatedText());
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    KLVFollowReadingDirection(*text);
    auto *keys = new KLVKeyCaps(entry.shortcuts());
    text->setBuddy(keys);
    // Read as one: what it does, then its keys.
    text->setAccessibleName(entry.translatedText() + u": "_s + keys->accessibleName());
    grid->addWidget(text, row, 0);
    grid->addWidget(keys, row, 1, Qt::AlignRight | Qt::AlignVCenter);
}

} // namespace

VTShortcutsWindow::VTShortcutsWindow(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(u"shortcutsWindow"_s);
    setWindowTitle(QCoreApplication::translate("Vantle", "Keyboard Shortcuts"));
    auto *content = new QWidget;
    auto *groups = new QVBoxLayout(content);
    groups->setContentsMargins(pixels(margin), pixels(margin), pixels(margin), pixels(margin));
    addGroups(groups);

    auto *area = new QScrollArea(this);
    area->setObjectName(u"shortcuts"_s);
    area->setAccessibleName(windowTitle());
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollBar = new KLVSlimScrollBar(area);
    area->setVerticalScrollBar(m_scrollBar);
    area->setWidgetResizable(true);
    // Arrows and Page keys scroll.
    area->setFocusPolicy(Qt::StrongFocus);
    area->setWidget(content);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area);
    resize(pixels(firstSize.width()), std::min(pixels(firstSize.height()), content->sizeHint().height()));
}

void VTShortcutsWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Home)
        m_scrollBar->setValue(m_scrollBar->minimum());
    else if (event->key() == Qt::Key_End)
        m_scrollBar->setValue(m_scrollBar->maximum());
    else
        QDialog::keyPressEvent(event);
}

void VTShortcutsWindow::addGroups(QVBoxLayout *layout)
{
    QGridLayout *grid = nullptr;
    std::optional<VTKeyGroup> group;
    for (const VTKeyboardEntry &entry : VTKeyboardMap()) {
        if (!grid || entry.group != group) {
            if (grid)
                layout->addSpacing(pixels(groupGap));
            group = entry.group;
            layout->addWidget(new KLVHeading(VTKeyGroupName(entry.group)));
            grid = new QGridLayout;
            grid->setVerticalSpacing(pixels(rowGap));
            grid->setHorizontalSpacing(pixels(columnGap));
            grid->setColumnStretch(0, 1);
            layout->addLayout(grid);
        }
        addRow(grid, entry);
    }
    layout->addStretch(1);
}
