// SPDX-License-Identifier: MIT
#pragma once

#include <KeyValueObject.h>

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QString>

class KLVTheme;
class QPainter;

// How a check box in a calendar's colour is drawn: its picture tinted, and a
// tick over it while it is on or mixed. It draws on any painter, so it serves rows and
// tables alike.
class KLVColoredButtonCell final
{
public:
    const QColor &imageTintColor() const { return m_imageTintColor; }
    void setImageTintColor(const QColor &color) { m_imageTintColor = color; }

    // What stands beside the box; plain text.
    const QString &title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }

    // What is out of order with it, in words for the person; plain text, empty for nothing.
    const QString &remark() const { return m_remark; }
    void setRemark(const QString &remark) { m_remark = remark; }

    // Whatever the owner wants to find again, a calendar for instance.
    const KeyValueObjectPtr &representedObject() const { return m_representedObject; }
    void setRepresentedObject(const KeyValueObjectPtr &object) { m_representedObject = object; }

    // 0 is off, 1 on, -1 mixed.
    int integerValue() const { return m_integerValue; }
    void setIntegerValue(int value) { m_integerValue = value; }

    // The cell's own picture, untinted.
    static QImage image(const QSizeF &size, qreal devicePixelRatio);

    // The image argument does not count: the cell's own picture is drawn.
    void drawImage_withFrame_inView(
        const QImage &image, const QRectF &frame, QPainter &view, const KLVTheme &theme) const;
    // The image at 0.4, with the colour in the image's shape laid behind and over it.
    static QImage tintImage_tintColor(const QImage &image, const QColor &color);

private:
    QColor m_imageTintColor;
    QString m_title;
    QString m_remark;
    KeyValueObjectPtr m_representedObject;
    int m_integerValue = 0;
};
