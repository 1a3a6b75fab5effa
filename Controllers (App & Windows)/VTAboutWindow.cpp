// SPDX-License-Identifier: MIT
#include "VTAboutWindow.h"

#include "VTSheetForm.h"

#include <ApplicationMetadata.h>
#include <KLVMetrics.h>
#include <Workspace.h>

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr qreal statedWidth = 320;
constexpr qreal margin = 24;
constexpr qreal rowGap = 4;
constexpr qreal groupGap = 12;
constexpr qreal gapBetweenButtons = 8;
constexpr qreal iconSize = 72;
constexpr int nameSize = 17;
constexpr int nameWeight = 650;

int pixels(qreal points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

} // namespace

VTAboutWindow::VTAboutWindow(const ApplicationMetadata &metadata, Workspace &workspace, QWidget *parent)
    : QDialog(parent)
{
    setObjectName(u"aboutWindow"_s);
    setWindowTitle(QCoreApplication::translate("Vantle", "About Vantle"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(pixels(margin), pixels(margin), pixels(margin), pixels(margin));
    column->setSpacing(pixels(rowGap));
    const auto addLine = [this, column](const char *name, const QString &text) {
        auto *line = new QLabel(this);
        line->setObjectName(QLatin1String(name));
        line->setTextFormat(Qt::PlainText);
        line->setText(text);
        line->setAlignment(Qt::AlignHCenter);
        line->setWordWrap(true);
        // To be copied into a message.
        line->setTextInteractionFlags(Qt::TextSelectableByMouse);
        column->addWidget(line);
        return line;
    };

    auto *icon = new QLabel(this);
    icon->setAlignment(Qt::AlignHCenter);
    icon->setAccessibleName(metadata.name);
    icon->setPixmap(
        QIcon(u":/org.vantle.Vantle.svg"_s).pixmap(QSize(pixels(iconSize), pixels(iconSize)), devicePixelRatioF()));
    column->addWidget(icon);
    column->addSpacing(pixels(groupGap));
    addLine("name", metadata.name)->setFont(KLVMetrics(QApplication::font()).font(nameSize, nameWeight));
    addLine("version", QCoreApplication::translate("Vantle", "Version %1").arg(metadata.version));
    column->addSpacing(pixels(groupGap));
    addLine("summary", metadata.summary);
    column->addSpacing(pixels(groupGap));
    VTSheetForm::setUpNote(*addLine("developer", metadata.developer));
    VTSheetForm::setUpNote(
        *addLine("licence", QCoreApplication::translate("Vantle", "Licence: %1").arg(metadata.licence)));
    column->addSpacing(pixels(groupGap));

    auto *homepage = new QPushButton(QCoreApplication::translate("Vantle", "&Website…"), this);
    homepage->setObjectName(u"homepage"_s);
    homepage->setVisible(!metadata.homepage.isEmpty());
    homepage->setAutoDefault(false);
    connect(homepage, &QPushButton::clicked, this, [&workspace, page = metadata.homepage] { workspace.openURL(page); });
    auto *close = new QPushButton(QCoreApplication::translate("Vantle", "&Close"), this);
    close->setObjectName(u"close"_s);
    close->setDefault(true);
    close->setFocus();
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(pixels(gapBetweenButtons));
    buttons->addStretch(1);
    buttons->addWidget(homepage);
    buttons->addWidget(close);
    buttons->addStretch(1);
    column->addLayout(buttons);
    setMinimumWidth(pixels(statedWidth));
}
