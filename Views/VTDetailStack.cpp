// SPDX-License-Identifier: MIT
#include "VTDetailStack.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr double bottomMargin = 8.0;
constexpr double gap = 6.0;

} // namespace

VTDetailStack::VTDetailStack(VTRowFrames &frames)
    : m_frames(frames)
    , m_top(static_cast<float>(bottomMargin))
{
}

void VTDetailStack::addNotes(double height)
{
    QRectF &field = m_frames[u"notesField"_s];
    field = QRectF(field.x(), bottomMargin, field.width(), height);
    m_top = static_cast<float>(gap + height + bottomMargin);
    QRectF &caption = m_frames[u"notesLabel"_s];
    caption.moveTop(height + bottomMargin - caption.height());
}

void VTDetailStack::addLifted(const QString &value, const QString &caption, double lift)
{
    m_frames[caption].moveTop(place(value) + lift);
}

void VTDetailStack::addDropped(const QString &value, const QString &caption, double drop)
{
    const double base = place(value);
    QRectF &label = m_frames[caption];
    label.moveTop(m_frames.value(value).height() + base - label.height() - drop);
}

double VTDetailStack::place(const QString &value)
{
    const auto base = static_cast<double>(m_top);
    QRectF &frame = m_frames[value];
    frame.moveTop(base);
    m_top = static_cast<float>(frame.height() + gap + base);
    return base;
}

VTRowLayout VTDetailStack::finished(VTRowFrames frames, float stackTop, float sum)
{
    VTRowLayout layout { std::move(frames), stackTop };
    layout.selectedHeight = sum + -8.0F + -2.0F + 6.0F;
    layout.unselectedHeight = layout.selectedHeight - stackTop + 8.0F;
    return layout;
}
