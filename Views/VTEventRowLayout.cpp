// SPDX-License-Identifier: MIT
#include "VTEventRowLayout.h"

using namespace Qt::StringLiterals;

VTRowLayout layOutEventRow(const VTRowFrames &loaded, const VTEventRowContent &content)
{
    VTRowFrames frames = loaded;
    VTDetailStack stack(frames);
    if (content.notesHeight)
        stack.addNotes(static_cast<double>(*content.notesHeight));
    if (content.hasUrl)
        stack.addLifted(u"urlButton"_s, u"urlLabel"_s, 4.0);
    if (content.hasAttendees)
        stack.addDropped(u"attendeesMatrix"_s, u"attendeesLabel"_s, 2.0);
    if (content.hasLocation)
        stack.addDropped(u"locationField"_s, u"locationLabel"_s, 0.0);

    constexpr double titleArea = 40.0;
    auto height = static_cast<float>(static_cast<double>(stack.top()) + titleArea);

    if (content.titleHeight) {
        constexpr double iconsGap = 4.0;
        constexpr double oneLine = 14.0;
        const auto fitted = static_cast<double>(*content.titleHeight);
        QRectF &title = frames[u"titleField"_s];
        title = VTRowGeometry::withHeightFromTop(title, fitted);
        if (fitted > oneLine)
            height = static_cast<float>(static_cast<double>(height) + (fitted - oneLine));
        const double titleBottom = title.y();
        QRectF &icons = frames[u"icons"_s];
        icons.moveTop(static_cast<double>(static_cast<float>(titleBottom - icons.height() - iconsGap)));
    }
    return VTDetailStack::finished(frames, stack.top(), height);
}
