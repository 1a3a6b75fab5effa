// SPDX-License-Identifier: MIT
#include "VTTaskRowLayout.h"

using namespace Qt::StringLiterals;

VTRowLayout layOutTaskRow(const VTRowFrames &loaded, const VTTaskRowContent &content)
{
    VTRowFrames frames = loaded;
    VTDetailStack stack(frames);
    if (content.notesHeight)
        stack.addNotes(static_cast<double>(*content.notesHeight));
    if (content.hasUrl)
        stack.addLifted(u"urlButton"_s, u"urlLabel"_s, 3.0); // the event row's is 4; the buttons differ as well
    if (content.hasCompletedDate)
        stack.addDropped(u"completedField"_s, u"completedLabel"_s, 0.0);

    float height = stack.top();
    if (content.titleHeight) {
        constexpr double topMargin = 4.0;
        const auto fitted = static_cast<double>(*content.titleHeight);
        QRectF &title = frames[u"titleField"_s];
        title = VTRowGeometry::withHeightFromTop(title, fitted);
        height = static_cast<float>(fitted + topMargin + static_cast<double>(stack.top()));
    }

    if (content.hasDueDate) {
        const double titleBottom = frames.value(u"titleField"_s).y();
        QRectF &due = frames[u"dueDateField"_s];
        due.moveTop(titleBottom - due.height());
        height = static_cast<float>(static_cast<double>(height) + due.height());
    }
    return VTDetailStack::finished(frames, stack.top(), height);
}
