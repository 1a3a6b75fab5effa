// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <DesktopAppearance.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QPalette>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;

struct PortalColor {
    double red = 0;
    double green = 0;
    double blue = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalColor &color)
{
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalColor &color)
{
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return argument;
}

// The settings part of the portal, on the test's own bus.
class FakePortal final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    using QDBusVirtualObject::QDBusVirtualObject;

    void change(const QString &key, const QVariant &value)
    {
        values.insert(key, value);
        QDBusMessage signal = QDBusMessage::createSignal(portalPath, settingsInterface, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << key << QVariant::fromValue(QDBusVariant(value));
        QVERIFY(connection().send(signal));
    }
    static QDBusConnection connection() { return QDBusConnection(u"portal"_s); }

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QString key = message.arguments().value(1).toString();
        if (message.member() != u"Read"_s || !values.contains(key))
            return bus.send(message.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such key"_s));
        // The portal's own extra wrapping: a variant in a variant.
        const QDBusVariant inner(values.value(key));
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }

    QVariantMap values;
};

QPalette paletteWithWindow(const QColor &color)
{
    QPalette palette;
    palette.setColor(QPalette::Window, color);
    return palette;
}

} // namespace
Q_DECLARE_METATYPE(PortalColor)

class DesktopAppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void platformPaletteCountsWithoutAPortalsWord_data();
    void platformPaletteCountsWithoutAPortalsWord();
    void portalsWishIsTakenWhenItComes();
    void changeInTheDesktopIsFollowed();
    void noPreferenceFallsBackToThePalette();
    void accentOutsideTheRangeMeansNone();
    void wishForContrastIsFollowed();
    void blackAndWhitePaletteCountsAsAWishForContrast();
    void portalThatComesLaterIsAsked();
    void oddValuesAreIgnored();

private:
    QProcess m_bus;
    FakePortal m_portal;
};

void DesktopAppearanceTest::initTestCase()
{
    qDBusRegisterMetaType<PortalColor>();
    m_bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address=1"_s });
    QVERIFY2(m_bus.waitForReadyRead(), "a private bus needs dbus-daemon");
    const QByteArray address = m_bus.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);

    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromLatin1(address), u"portal"_s);
    QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    QVERIFY(bus.registerVirtualObject(portalPath, &m_portal));
}

void DesktopAppearanceTest::init()
{
    m_portal.values.clear();
}

void DesktopAppearanceTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(u"portal"_s);
    m_bus.terminate();
    QVERIFY(m_bus.waitForFinished());
}

void DesktopAppearanceTest::platformPaletteCountsWithoutAPortalsWord_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<bool>("isDark");

    QTest::newRow("light") << QColor(0xef, 0xef, 0xef) << false;
    QTest::newRow("dark") << QColor(0x20, 0x20, 0x20) << true;
}

void DesktopAppearanceTest::platformPaletteCountsWithoutAPortalsWord()
{
    QFETCH(const QColor, window);
    QFETCH(const bool, isDark);

    const DesktopAppearance appearance(paletteWithWindow(window));

    QCOMPARE(appearance.colorScheme() == ColorScheme::Dark, isDark);
    QVERIFY(!appearance.accent());
}

void DesktopAppearanceTest::portalsWishIsTakenWhenItComes()
{
    m_portal.values.insert(u"color-scheme"_s, 1U);
    m_portal.values.insert(u"accent-color"_s, QVariant::fromValue(PortalColor { 1, 0, 0 }));
    DesktopAppearance appearance(paletteWithWindow(Qt::white));

    appearance.followPortal();

    QCOMPARE(appearance.colorScheme(), ColorScheme::Light);
    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::Dark);
    QTRY_VERIFY(appearance.accent().has_value());
    QCOMPARE(appearance.accent()->rgb(), QColor(Qt::red).rgb());
}

void DesktopAppearanceTest::changeInTheDesktopIsFollowed()
{
    m_portal.values.insert(u"color-scheme"_s, 2U);
    DesktopAppearance appearance(paletteWithWindow(Qt::white));
    QSignalSpy changes(&appearance, &DesktopAppearance::changed);
    appearance.followPortal();
    QTRY_VERIFY(!changes.isEmpty());

    m_portal.change(u"color-scheme"_s, 1U);

    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::Dark);
}

void DesktopAppearanceTest::noPreferenceFallsBackToThePalette()
{
    m_portal.values.insert(u"color-scheme"_s, 1U);
    DesktopAppearance appearance(paletteWithWindow(Qt::white));
    appearance.followPortal();
    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::Dark);

    m_portal.change(u"color-scheme"_s, 0U);

    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::Light);
}

void DesktopAppearanceTest::accentOutsideTheRangeMeansNone()
{
    m_portal.values.insert(u"accent-color"_s, QVariant::fromValue(PortalColor { 0, 1, 0 }));
    DesktopAppearance appearance(paletteWithWindow(Qt::white));
    appearance.followPortal();
    QTRY_VERIFY(appearance.accent().has_value());

    m_portal.change(u"accent-color"_s, QVariant::fromValue(PortalColor { -1, 2, 0 }));

    QTRY_VERIFY(!appearance.accent().has_value());
}

void DesktopAppearanceTest::wishForContrastIsFollowed()
{
    m_portal.values.insert(u"contrast"_s, 1U);
    DesktopAppearance appearance(paletteWithWindow(QColor(0xef, 0xef, 0xef)));
    QVERIFY(!appearance.prefersHighContrast());
    appearance.followPortal();
    QTRY_VERIFY(appearance.prefersHighContrast());

    m_portal.change(u"contrast"_s, 0U);

    QTRY_VERIFY(!appearance.prefersHighContrast());
}

void DesktopAppearanceTest::blackAndWhitePaletteCountsAsAWishForContrast()
{
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);

    QVERIFY(DesktopAppearance(palette).prefersHighContrast());
    palette.setColor(QPalette::Window, QColor(0x20, 0x20, 0x20));
    QVERIFY(!DesktopAppearance(palette).prefersHighContrast());
}

void DesktopAppearanceTest::portalThatComesLaterIsAsked()
{
    QDBusConnection bus = FakePortal::connection();
    QVERIFY(bus.unregisterService(u"org.freedesktop.portal.Desktop"_s));
    DesktopAppearance appearance(paletteWithWindow(QColor(0xef, 0xef, 0xef)));
    appearance.followPortal();
    m_portal.values.insert(u"color-scheme"_s, 1U);

    QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));

    QTRY_COMPARE(appearance.colorScheme(), ColorScheme::Dark);
}

void DesktopAppearanceTest::oddValuesAreIgnored()
{
    m_portal.values.insert(u"color-scheme"_s, u"dark"_s);
    m_portal.values.insert(u"accent-color"_s, u"red"_s);
    DesktopAppearance appearance(paletteWithWindow(Qt::white));
    QSignalSpy changes(&appearance, &DesktopAppearance::changed);

    appearance.followPortal();

    QTRY_COMPARE(changes.count(), 2);
    QCOMPARE(appearance.colorScheme(), ColorScheme::Light);
    QVERIFY(!appearance.accent());
}

VANTLE_TEST(DesktopAppearanceTest)
#include "DesktopAppearanceTest.moc"
