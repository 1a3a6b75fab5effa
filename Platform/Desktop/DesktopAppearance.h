// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QObject>

#include <optional>

class QDBusMessage;
class QPalette;

enum class ColorScheme { Light, Dark };

// The desktop's wish for dark or light and for high contrast, and its accent
// colour, from the portal's settings (org.freedesktop.appearance), and every
// change of them.
//
// Asks without waiting. Until the portal has answered, and on a desktop
// without one, what the platform's palette shows counts.
class DesktopAppearance final : public QObject
{
    Q_OBJECT

public:
    explicit DesktopAppearance(const QPalette &platformPalette, QObject *parent = nullptr);

    ColorScheme colorScheme() const;
    // A platform's palette of pure black and white counts as such a wish.
    bool prefersHighContrast() const { return m_contrastWish.value_or(m_platformHasHighContrast); }
    // Absent when the desktop names none.
    std::optional<QColor> accent() const { return m_accent; }

    // Connects to the portal and asks for all values; the answers come as changes. A portal that starts
    // again later is asked again.
    void followPortal();

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &signal);

private:
    void askForAll();
    void ask(const QString &key);
    void take(const QString &key, const QVariant &value);

    ColorScheme m_platformScheme;
    bool m_platformHasHighContrast;
    std::optional<ColorScheme> m_wish; // absent: the desktop has no preference
    std::optional<bool> m_contrastWish;
    std::optional<QColor> m_accent;
};
