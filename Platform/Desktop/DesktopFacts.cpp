// SPDX-License-Identifier: MIT
#include "DesktopFacts.h"

#include <QApplication>
#include <QFontInfo>
#include <QLocale>
#include <QProxyStyle>
#include <QScreen>
#include <QStringList>
#include <QStyle>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace
{

// A style that stands upon another one has no name of its own.
QString styleName()
{
    const QStyle *style = QApplication::style();
    while (const auto *const proxy = qobject_cast<const QProxyStyle *>(style))
        style = proxy->baseStyle();
    return style->name();
}

} // namespace

QString desktopFacts()
{
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP", u"unknown"_s);
    QStringList screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        screens << u"%1 x %2 at %3"_s.arg(screen->size().width())
                       .arg(screen->size().height())
                       .arg(screen->devicePixelRatio());
    }
    const QFontInfo font(QApplication::font());
    const QStringList facts {
        u"Qt: %1"_s.arg(QLatin1StringView(qVersion())),
        u"System: %1 (%2)"_s.arg(QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture()),
        u"Desktop: %1 (%2)"_s.arg(desktop, QGuiApplication::platformName()),
        u"Language: %1"_s.arg(QLocale().name()),
        u"Screens: %1"_s.arg(screens.join(u", "_s)),
        u"Font: %1, %2 pixels"_s.arg(font.family()).arg(font.pixelSize()),
        u"Style: %1"_s.arg(styleName()),
    };
    return facts.join(u'\n') + u'\n';
}
