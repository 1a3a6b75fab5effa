// SPDX-License-Identifier: MIT
#pragma once

#include "KLVMetrics.h"

#include <QFont>
#include <QHash>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QWidget;

// Frames of a row's outlets by name, in the row's own coordinates: y grows
// upwards from the row's bottom edge.
using VTRowFrames = QHash<QString, QRectF>;

// A row's interface file, read once for all rows of a class: where its fields
// stand and how they follow the row's width.
class VTRowTemplate final
{
public:
    // Reads the geometries of an interface that was set up on this widget, and each field's "resizing":
    // "left" keeps x, "right" keeps the distance from the right edge, "width" keeps both edges.
    explicit VTRowTemplate(const QWidget &interface);

    // The height at which rows are loaded.
    double height() const { return m_size.height(); }
    // The size of a field in the interface file.
    QSizeF size(const QString &field) const { return m_fields.value(field).geometry.size(); }
    // The frames in a row of that width with the person's font.
    VTRowFrames frames(double width, const KLVMetrics &metrics) const;

private:
    enum class Resizing { Left, Right, Width };
    struct Field {
        QRectF geometry; // as in the file, y growing downwards
        Resizing resizing = Resizing::Left;
    };

    QSizeF m_size;
    QHash<QString, Field> m_fields;
};

// Helpers on unflipped frames.
namespace VTRowGeometry
{

// The same top edge with another height.
QRectF withHeightFromTop(const QRectF &frame, double height);
// The same size, its middle at that distance from the row's top edge.
QRectF centred(const QRectF &frame, double rowHeight, double distanceFromTop);
// Turned over: the frame in a row of that height with y growing downwards.
QRectF flipped(const QRectF &frame, double rowHeight);

} // namespace VTRowGeometry
