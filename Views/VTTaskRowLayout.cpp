// SPDX-License-Identifier: MIT
#include "VTTaskRowLayout.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr double bottomMargin = 8.0;
constexpr double gap = 6.0;

} // namespace

VTRowLayout layOutTaskRow(const VTRowFrames &loaded, const VTTaskRowContent &content)
{
    VTRowLayout layout { loaded };
    VTRowFrames &frames = layout.frames;
    auto y = static_cast<float>(bottomMargin);

    if (content.notesHeight) {
        const auto height = static_cast<double>(*content.notesHeight);
        QRectF &field = frames[u"notesField"_s];
        field = QRectF(field.x(), bottomMargin, field.width(), height);
        y = static_cast<float>(gap + height + bottomMargin);
        QRectF &label = frames[u"notesLabel"_s];
        label.moveTop(height + bottomMargin - label.height());
    }

    if (content.hasUrl) {
        constexpr double labelLift = 3.0; // the event row's is 4; the buttons differ as well
        const auto base = static_cast<double>(y);
        QRectF &button = frames[u"urlButton"_s];
        button.moveTop(base);
        y = static_cast<float>(button.height() + gap + base);
        frames[u"urlLabel"_s].moveTop(base + labelLift);
    }

    if (content.hasCompletedDate) {
        const auto base = static_cast<double>(y);
        QRectF &field = frames[u"completedField"_s];
        field.moveTop(base);
        y = static_cast<float>(gap + field.height() + base);
        QRectF &label = frames[u"completedLabel"_s];
        label.moveTop(field.height() + base - label.height());
    }

    float height = y;
    if (content.titleHeight) {
        constexpr double topMargin = 4.0;
        const auto fitted = static_cast<double>(*content.titleHeight);
        QRectF &title = frames[u"titleField"_s];
        title = VTRowGeometry::withHeightFromTop(title, fitted);
        height = static_cast<float>(fitted + topMargin + static_cast<double>(y));
    }

    if (content.hasDueDate) {
        QRectF &due = frames[u"dueDateField"_s];
        due.moveTop(frames.value(u"titleField"_s).y() - due.height());
        height = static_cast<float>(static_cast<double>(height) + due.height());
    }

    layout.stackTop = y;
    layout.selectedHeight = height + -8.0F + -2.0F + 6.0F;
    layout.unselectedHeight = layout.selectedHeight - y + 8.0F;
    return layout;
}
