// SPDX-License-Identifier: MIT
#include "VTEventRowLayout.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr double bottomMargin = 8.0;
constexpr double gap = 6.0;
constexpr double oneLine = 14.0;

} // namespace

VTRowLayout layOutEventRow(const VTRowFrames &loaded, const VTEventRowContent &content)
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
        constexpr double labelLift = 4.0;
        const auto base = static_cast<double>(y);
        QRectF &button = frames[u"urlButton"_s];
        button.moveTop(base);
        y = static_cast<float>(button.height() + gap + base);
        frames[u"urlLabel"_s].moveTop(base + labelLift);
    }

    if (content.hasAttendees) {
        constexpr double labelDrop = 2.0;
        const auto base = static_cast<double>(y);
        QRectF &matrix = frames[u"attendeesMatrix"_s];
        matrix.moveTop(base);
        y = static_cast<float>(matrix.height() + gap + base);
        QRectF &label = frames[u"attendeesLabel"_s];
        label.moveTop(matrix.height() + base - label.height() - labelDrop);
    }

    if (content.hasLocation) {
        const auto base = static_cast<double>(y);
        QRectF &field = frames[u"locationField"_s];
        field.moveTop(base);
        y = static_cast<float>(field.height() + gap + base);
        QRectF &label = frames[u"locationLabel"_s];
        label.moveTop(field.height() + base - label.height());
    }

    constexpr double titleArea = 40.0;
    auto height = static_cast<float>(static_cast<double>(y) + titleArea);

    if (content.titleHeight) {
        constexpr double iconsGap = 4.0;
        const auto fitted = static_cast<double>(*content.titleHeight);
        QRectF &title = frames[u"titleField"_s];
        title = VTRowGeometry::withHeightFromTop(title, fitted);
        if (fitted > oneLine)
            height = static_cast<float>(static_cast<double>(height) + (fitted - oneLine));
        QRectF &icons = frames[u"icons"_s];
        icons.moveTop(static_cast<double>(static_cast<float>(title.y() - icons.height() - iconsGap)));
    }

    layout.stackTop = y;
    layout.selectedHeight = height + -8.0F + -2.0F + 6.0F;
    layout.unselectedHeight = layout.selectedHeight - y + 8.0F;
    return layout;
}
