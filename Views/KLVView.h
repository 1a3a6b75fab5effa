// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

class KLVControl;
class KLVTheme;
class QPainter;

// What a view needs to know of its surroundings to draw itself.
struct KLVDrawingContext {
    QPainter &painter;
    const KLVTheme &theme;
    QColor background; // the opaque colour on which it stands
    QString currentControl; // the control that the keyboard is at; empty for none
};

// A rectangle of a row that draws itself: far lighter than a widget, since a
// list makes and discards hundreds of them at every refetch.
//
// Frames are in the coordinates of the view around it, y growing downwards.
// A view owns its subviews. Input reaches it through the accordion alone.
class KLVView
{
public:
    explicit KLVView(const QString &name = {});
    virtual ~KLVView();
    KLVView(const KLVView &) = delete;
    KLVView &operator=(const KLVView &) = delete;

    // The outlet's name: with the item's uid it tells a control apart, also after a rebuild.
    const QString &name() const { return m_name; }

    const QRectF &frame() const { return m_frame; }
    void setFrame(const QRectF &frame) { m_frame = frame; }

    // Where lines of text begin. Reaches the views inside; frames are mirrored by whoever sets them.
    Qt::LayoutDirection layoutDirection() const { return m_layoutDirection; }
    void setLayoutDirection(Qt::LayoutDirection direction);
    bool isRightToLeft() const { return m_layoutDirection == Qt::RightToLeft; }

    bool isHidden() const { return m_isHidden; }
    void setHidden(bool isHidden) { m_isHidden = isHidden; }

    template <typename View, typename... Arguments> View *addSubview(Arguments &&...arguments)
    {
        auto view = std::make_unique<View>(std::forward<Arguments>(arguments)...);
        View *const added = view.get();
        m_subviews.push_back(std::move(view));
        return added;
    }
    void removeSubview(const KLVView &view);
    const std::vector<std::unique_ptr<KLVView>> &subviews() const { return m_subviews; }

    // Draws itself, then the subviews that are not hidden; the painter's origin is the view's corner.
    void display(const KLVDrawingContext &drawing) const;

    // Whether drawing the other one would give the same picture.
    virtual bool looksLike(const KLVView &other) const;

    // What assistive technology is told; no role means that it is told nothing.
    virtual QAccessible::Role accessibleRole() const { return QAccessible::NoRole; }
    virtual QString accessibleText() const { return {}; }

    // Controls that can be used at this moment, in reading order: shown and enabled ones only.
    virtual std::vector<KLVControl *> usableControls();
    // The one of them under a point of this view; null for none.
    KLVControl *controlAt(const QPointF &point);
    // Where a view inside this one lies in it; a null rectangle when it is not inside.
    QRectF frameOfDescendant(const KLVView &view) const;

protected:
    virtual void draw(const KLVDrawingContext &drawing) const;

private:
    QString m_name;
    QRectF m_frame;
    Qt::LayoutDirection m_layoutDirection = Qt::LeftToRight;
    bool m_isHidden = false;
    std::vector<std::unique_ptr<KLVView>> m_subviews;
};
