// SPDX-License-Identifier: MIT
#include "DesktopAppearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace
{

const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;
const QString appearanceNamespace = u"org.freedesktop.appearance"_s;
const QString schemeKey = u"color-scheme"_s;
const QString accentKey = u"accent-color"_s;
const QString contrastKey = u"contrast"_s;

constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;
constexpr uint prefersHigherContrast = 1;

bool isDark(const QColor &color)
{
    return color.lightnessF() < 0.5;
}

bool isBlackAndWhite(const QPalette &palette)
{
    const auto isPure = [](const QColor &color) {
        const QColor plain = color.toRgb();
        return plain == QColor(Qt::black) || plain == QColor(Qt::white);
    };
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    return isPure(window) && isPure(text) && window.toRgb() != text.toRgb();
}

// Some portals wrap the value of Read() once more than they should.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

// Three numbers from 0 to 1; anything outside means that the person chose none.
std::optional<QColor> colorFromPortal(const QVariant &value)
{
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)"_s)
        return std::nullopt;
    double red = -1;
    double green = -1;
    double blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto isShare = [](double number) { return number >= 0 && number <= 1; };
    if (!isShare(red) || !isShare(green) || !isShare(blue))
        return std::nullopt;
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

} // namespace

DesktopAppearance::DesktopAppearance(const QPalette &platformPalette, QObject *parent)
    : QObject(parent)
    , m_platformScheme(isDark(platformPalette.color(QPalette::Window)) ? ColorScheme::Dark : ColorScheme::Light)
    , m_platformHasHighContrast(isBlackAndWhite(platformPalette))
{
}

ColorScheme DesktopAppearance::colorScheme() const
{
    return m_wish.value_or(m_platformScheme);
}

void DesktopAppearance::followPortal()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;

    bus.connect(
        portalService, portalPath, settingsInterface, u"SettingChanged"_s, this, SLOT(settingChanged(QDBusMessage)));
    auto *watcher = new QDBusServiceWatcher(portalService, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &DesktopAppearance::askForAll);
    askForAll();
}

void DesktopAppearance::askForAll()
{
    for (const QString &key : { schemeKey, accentKey, contrastKey })
        ask(key);
}

void DesktopAppearance::ask(const QString &key)
{
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_s);
    call << appearanceNamespace << key;
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, key, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        // No portal, or one that does not know the key: the desktop has said nothing.
        if (!reply.isError())
            take(key, reply.value().variant());
    });
}

void DesktopAppearance::settingChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.size() == 3 && arguments.at(0).toString() == appearanceNamespace)
        take(arguments.at(1).toString(), arguments.at(2));
}

void DesktopAppearance::take(const QString &key, const QVariant &value)
{
    const QVariant plain = unwrapped(value);
    if (key == schemeKey) {
        const uint number = plain.toUInt();
        m_wish.reset();
        if (number == prefersDark)
            m_wish = ColorScheme::Dark;
        else if (number == prefersLight)
            m_wish = ColorScheme::Light;
        Q_EMIT changed();
    } else if (key == contrastKey) {
        m_contrastWish.reset();
        if (plain.toUInt() == prefersHigherContrast)
            m_contrastWish = true;
        Q_EMIT changed();
    } else if (key == accentKey) {
        m_accent = colorFromPortal(plain);
        Q_EMIT changed();
    }
}
