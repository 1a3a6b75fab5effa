// SPDX-License-Identifier: MIT
#include "VTRowTemplate.h"

#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

VTRowTemplate::VTRowTemplate(const QWidget &interface)
    : m_size(interface.size())
{
    const auto children = interface.findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        const QString resizing = child->property("resizing").toString();
        m_fields.insert(child->objectName(),
            { QRectF(child->geometry()),
                resizing == u"right"_s       ? Resizing::Right
                    : resizing == u"width"_s ? Resizing::Width
                                             : Resizing::Left });
    }
}

VTRowFrames VTRowTemplate::frames(double width, const KLVMetrics &metrics) const
{
    VTRowFrames frames;
    for (auto field = m_fields.cbegin(); field != m_fields.cend(); ++field) {
        const QRectF &geometry = field->geometry;
        const double leftMargin = metrics.length(geometry.left());
        // A field that reaches past the edge on purpose does so by the same amount at every size.
        const double past = m_size.width() - geometry.right();
        const double rightMargin = past < 0 ? past : metrics.length(past);
        const double ownWidth = metrics.length(geometry.width());
        double x = leftMargin;
        double fieldWidth = ownWidth;
        if (field->resizing == Resizing::Right)
            x = width - rightMargin - ownWidth;
        else if (field->resizing == Resizing::Width)
            fieldWidth = std::max(0.0, width - rightMargin - leftMargin);
        const double y = m_size.height() - geometry.bottom();
        frames.insert(field.key(), QRectF(x, y, fieldWidth, geometry.height()));
    }
    return frames;
}

QRectF VTRowGeometry::withHeightFromTop(const QRectF &frame, double height)
{
    return { frame.x(), frame.y() + frame.height() - height, frame.width(), height };
}

QRectF VTRowGeometry::centred(const QRectF &frame, double rowHeight, double distanceFromTop)
{
    return { frame.x(), rowHeight - distanceFromTop - frame.height() / 2, frame.width(), frame.height() };
}

QRectF VTRowGeometry::flipped(const QRectF &frame, double rowHeight)
{
    return { frame.x(), rowHeight - frame.y() - frame.height(), frame.width(), frame.height() };
}
