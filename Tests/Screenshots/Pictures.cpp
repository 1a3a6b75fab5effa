// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include <KLVStyle.h>

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QLocale>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr int gap = 16;
constexpr int usualFontPixels = 13;
const QString family = u"Inter"_s;
constexpr QColor desktop { 0xce, 0xd5, 0xdf };

} // namespace

bool dressForPictures()
{
    if (!QFontDatabase::families().contains(family)) {
        std::fprintf(stderr, "The font Inter is not here; script/bootstrap installs it\n");
        return false;
    }
    setFontPixels(usualFontPixels);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    return KLVStyle::dressApplication();
}

void setFontPixels(int size)
{
    QFont font(family);
    font.setPixelSize(size);
    QApplication::setFont(font);
}

QPixmap pictureOf(QWidget &window)
{
    window.show();
    QApplication::processEvents();
    window.setFocus();
    return window.grab();
}

QPixmap beside(const QList<QPixmap> &pictures)
{
    QSize size(gap, 0);
    for (const QPixmap &one : pictures) {
        const QSize own = one.deviceIndependentSize().toSize();
        size = { size.width() + own.width() + gap, std::max(size.height(), own.height() + 2 * gap) };
    }
    QPixmap all(size * qApp->devicePixelRatio());
    all.setDevicePixelRatio(qApp->devicePixelRatio());
    all.fill(desktop);
    QPainter painter(&all);
    int x = gap;
    for (const QPixmap &one : pictures) {
        painter.drawPixmap(x, gap, one);
        x += one.deviceIndependentSize().toSize().width() + gap;
    }
    return all;
}
