// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

// The colours of everything that is painted by ourselves, taken from a palette.
//
// What a palette has (window, base, text, highlight) is used as it is; what it
// has not is one of two fixed sets, light or dark, by the lightness of the
// palette's window colour.
class KLVTheme final
{
public:
    explicit KLVTheme(const QPalette &palette);

    // Palettes with our own colours, for desktops that bring none. An invalid accent gives the usual one.
    static QPalette lightPalette(const QColor &accent = {});
    static QPalette darkPalette(const QColor &accent = {});

    // The same for people who asked for high contrast: black and white, and lines in the colour of the text.
    static QPalette highContrastPalette(bool isDark, const QColor &accent = {});

    bool isDark() const { return m_isDark; }
    // Whether the palette is one of pure black and white.
    bool isHighContrast() const { return m_isHighContrast; }
    QColor window() const { return m_palette.color(QPalette::Window); }
    QColor base() const { return m_palette.color(QPalette::Base); }
    QColor text() const { return m_palette.color(QPalette::Text); }
    QColor dimText() const; // also the light grey of placeholders
    QColor hairline() const;
    QColor controlLine() const;
    QColor accent() const { return m_palette.color(QPalette::Highlight); }
    // The accent, brought far enough from the window and the base to be seen as a line (3 : 1).
    QColor focusLine() const;
    QColor overdue() const;
    QColor notice() const; // behind a line of warning

    // What stands for a colour that was chosen for a light surface: itself in a light palette.
    QColor surface(const QColor &lightColor) const;
    // The colour, brought just far enough from the background to be read on it.
    QColor readable(const QColor &color, const QColor &background) const;

    // The pill of a badge in a calendar's colour: that colour, in high contrast brought far enough from its text.
    QColor badge(const QColor &color) const;
    // White where it is readable (4 : 1), else black.
    static QColor textOnBadge(const QColor &badge);
    // The same for any other coloured face, at 4.5 : 1.
    static QColor textOn(const QColor &face);
    // Contrast of two opaque colours, 1 to 21 (WCAG 2).
    static double contrast(const QColor &one, const QColor &other);
    static QColor blended(const QColor &color, double alpha, const QColor &background);

private:
    QPalette m_palette;
    bool m_isDark;
    bool m_isHighContrast;
};
