// SPDX-License-Identifier: MIT
#include "SRRecorderControl.h"

#include "SRRecorderClearButton.h"

#include <QFontInfo>
#include <QPainter>

namespace
{

// Measures at a font of 13 pixels; they grow with the person's font.
constexpr qreal statedFontPixels = 13;
constexpr qreal combinationFontPixels = 14;
constexpr qreal statedWidth = 176;
constexpr qreal leastWidth = 120;
constexpr qreal statedHeight = 28;
constexpr qreal clearButtonWidth = 28;
constexpr qreal cornerRadius = 6;
constexpr qreal focusWidth = 2;
constexpr qreal textMargin = 8;

constexpr qreal lineShare = 0.18; // of the text's colour in the outline
constexpr qreal recordingShare = 0.08; // of the accent in the face
constexpr qreal hoverShare = 0.03;

QColor blended(const QColor &color, qreal share, const QColor &background)
{
    const auto mix = [share](int over, int under) { return qRound(share * over + (1 - share) * under); };
    return { mix(color.red(), background.red()), mix(color.green(), background.green()),
        mix(color.blue(), background.blue()) };
}

// Signs that stand side by side need a little more room than letters do.
QFont combinationFont(QFont font, qreal unit)
{
    font.setPixelSize(qRound(combinationFontPixels * unit));
    font.setLetterSpacing(QFont::AbsoluteSpacing, unit);
    return font;
}

} // namespace

QSize SRRecorderControl::sizeHint() const
{
    return { qRound(statedWidth * unit()), qRound(statedHeight * unit()) };
}

QSize SRRecorderControl::minimumSizeHint() const
{
    return { qRound(leastWidth * unit()), qRound(statedHeight * unit()) };
}

qreal SRRecorderControl::unit() const
{
    return std::max<qreal>(1, QFontInfo(font()).pixelSize() / statedFontPixels);
}

void SRRecorderControl::layOutClearButton()
{
    const int buttonWidth = qRound(clearButtonWidth * unit());
    const int left = isRightToLeft() ? 0 : width() - buttonWidth;
    m_clearButton->setGeometry(left, 0, buttonWidth, height());
}

void SRRecorderControl::paintEvent(QPaintEvent * /*event*/)
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor window = palette().color(group, QPalette::Window);
    const QColor text = palette().color(group, QPalette::ButtonText);
    const QColor accent = palette().color(group, QPalette::Highlight);

    QColor face = palette().color(group, QPalette::Button);
    QColor line = blended(palette().color(QPalette::Active, QPalette::ButtonText), lineShare, window);
    if (!isEnabled()) {
        face = blended(face, 0.5, window);
        line = blended(line, 0.5, window);
    } else if (m_isRecording) {
        face = blended(accent, recordingShare, face);
    } else if (underMouse()) {
        face = blended(text, hoverShare, face);
    }

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal radius = cornerRadius * unit();
    // Half a line inside, so that a line of one point lies on whole pixels.
    painter.setPen(QPen(line, 1));
    painter.setBrush(face);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (m_isRecording || (hasFocus() && isEnabled())) {
        const qreal inset = focusWidth * unit() / 2;
        painter.setPen(QPen(accent, focusWidth * unit()));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    }

    const bool isCombination = m_isRecording ? m_heldFlags != 0 && m_hint == Hint::None : !m_keyCombo.isClear();
    const bool isQuiet = isEnabled() && !m_isRecording && !isCombination;
    painter.setPen(isQuiet ? palette().color(group, QPalette::PlaceholderText) : text);
    // The combination stands in the middle of the whole field, clear of the button at both sides.
    const int margin = qRound((isCombination ? clearButtonWidth : textMargin) * unit());
    const QRect textArea = rect().adjusted(margin, 0, -margin, 0);
    const QFont roomy = combinationFont(font(), unit());
    if (isCombination && QFontMetrics(roomy).horizontalAdvance(displayedText()) <= textArea.width())
        painter.setFont(roomy);
    // Keys stand in their order, whichever way people read.
    if (isCombination)
        painter.setLayoutDirection(Qt::LeftToRight);
    painter.drawText(textArea, Qt::AlignCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(displayedText(), Qt::ElideRight, textArea.width()));
}

void SRRecorderClearButton::paintEvent(QPaintEvent * /*event*/)
{
    constexpr qreal crossSize = 8;
    constexpr qreal crossWidth = 1.3;
    const qreal unit = std::max<qreal>(1, QFontInfo(font()).pixelSize() / statedFontPixels);
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const bool isHot = isEnabled() && (underMouse() || isDown());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(palette().color(group, isHot || !isEnabled() ? QPalette::ButtonText : QPalette::PlaceholderText),
            crossWidth * unit, Qt::SolidLine, Qt::RoundCap));
    const qreal half = crossSize * unit / 2;
    const QRectF cross(QRectF(rect()).center() - QPointF(half, half), QSizeF(2 * half, 2 * half));
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.bottomLeft(), cross.topRight());
}
