// SPDX-License-Identifier: MIT
#pragma once

#include "KLVAccordionViewDelegate.h"
#include "KLVAccordionViewItem.h"
#include "KLVRepresentedObjects.h"

#include <KeyValueBinding.h>
#include <KeyValueObject.h>

#include <QAbstractSlider>
#include <QColor>
#include <QWidget>

#include <map>
#include <memory>
#include <optional>

class KLVAccordionClickShield;
class KLVAccordionScrollArea;
class KLVControl;
class KLVTheme;
class QScrollArea;

// A vertical list whose rows are made by its delegate, one for each object, and
// grow when their object is selected.
//
// The list does not decide on the selection: every press is reported to the
// delegate, which changes what selectedObjects is bound to. Rows are made afresh
// at every assignment of objects. Rows and shield are no widgets: the accordion
// draws them, so that a rebuild repaints only rows that look different.
//
// It stands in a scroll area and keeps its own height; the width is given to
// it, and a new width rebuilds the rows once. "isFirstResponder" can be observed.
class KLVAccordionView : public QWidget, public KeyValueObject, public KeyValueObserver
{
    Q_OBJECT

public:
    explicit KLVAccordionView(QWidget *parent = nullptr);
    ~KLVAccordionView() override;

    const KLVAccordionViewItemPtr &itemPrototype() const { return m_itemPrototype; }
    void setItemPrototype(const KLVAccordionViewItemPtr &prototype) { m_itemPrototype = prototype; }

    // Not owned.
    KLVAccordionViewDelegate *delegate() const { return m_delegate; }
    void setDelegate(KLVAccordionViewDelegate *delegate);

    // Invalid while unset. Drawn as their dark counterparts in a dark palette.
    const QColor &alternativeBackgroundColor() const { return m_alternativeBackgroundColor; }
    void setAlternativeBackgroundColor(const QColor &color);
    const QColor &selectedBackgroundColor() const { return m_selectedBackgroundColor; }
    void setSelectedBackgroundColor(const QColor &color);

    const KLVRepresentedObjects &representedObjects() const { return m_representedObjects; }
    void setRepresentedObjects(const KLVRepresentedObjects &objects);
    const KLVRepresentedObjects &selectedObjects() const { return m_selectedObjects; }
    void setSelectedObjects(const KLVRepresentedObjects &objects);
    void setSelectedObject(const KeyValueObjectPtr &object);
    // Plain stores: nothing follows.
    void setRepresentedObjectsSynth(const KLVRepresentedObjects &objects) { m_representedObjects = objects; }
    void setSelectedObjectsSynth(const KLVRepresentedObjects &objects) { m_selectedObjects = objects; }

    const QList<KLVAccordionViewItemPtr> &accordionViewItems() const { return m_accordionViewItems; }
    void setAccordionViewItems(const QList<KLVAccordionViewItemPtr> &items) { m_accordionViewItems = items; }
    KLVAccordionClickShield *clickCatcher() const { return m_clickCatcher.get(); }
    // The views of the rows in the order in which they were added; the shield lies over all of them.
    QList<KLVView *> subviews() const;

    // The item of this very object; null when there is none.
    KLVAccordionViewItemPtr getAccordionViewItemForRepObj(const KeyValueObjectPtr &object) const;
    KLVAccordionViewItemPtr getAccordionViewItemForView(const KLVView *view) const;

    // Whether the window's keys go to this view.
    bool isFirstResponder() const;
    bool acceptsFirstResponder() const { return true; }
    bool isFlipped() const { return true; }

    // For "representedObjects" and "selectedObjects": the value at the key path, now and on every change.
    // It may be any list that toRepresentedObjects() understands. A null observable ends the binding.
    void bind_toObject_withKeyPath_options(
        const QString &binding, KeyValueObject *observable, const QString &keyPath, const QVariantMap &options = {});
    void unbind(const QString &binding);
    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange &change, void *context) override;

    // The steps of a rebuild and of a layout pass.
    void assignRepObjsToAccordionViews();
    void updateAccordionViewItemsSelectState();
    void updateAVItemViews();
    QRectF updateAVItemViews_generateNewFrame() const;
    void updateAVItemViews_growFrame(QRectF frame);
    void updateAVItemViews_repositionViews();
    void updateAVItemViews_scrollToFirstSelection();

    // A refetch gives the list its objects and its selection anew in several steps. Between these two
    // calls the steps are not drawn; after the second the person's place in the list is as it was, if
    // the same items are selected, and only rows that look different are repainted.
    void beginRefetch();
    void endRefetch();

    // In document coordinates: its origin stays 0 however far the list is scrolled.
    QRectF frameRectangle() const;
    // The painter of the drawing in progress; null outside of it.
    QPainter *graphicsContext() const { return m_graphicsContext; }

    // For a row whose content changed where it stands.
    void setNeedsDisplay(const KLVAccordionViewItem &item);

    void mouseDown(const KLVMouseEvent &event);
    void rightMouseDown(const KLVMouseEvent &event);
    void otherMouseDown(const KLVMouseEvent &event);

    // Where the keyboard is inside the rows. It survives a rebuild as the item's uid and the control's name.
    struct ControlKey {
        QString uid;
        QString name;

        bool isNull() const { return name.isEmpty(); }
        bool operator==(const ControlKey &) const = default;
    };
    const ControlKey &currentControl() const { return m_currentControl; }
    void setCurrentControl(const ControlKey &key);
    // The control that can be used under that key at this moment; null when there is none.
    KLVControl *controlForKey(const ControlKey &key) const;
    // In the accordion; empty when there is no such control.
    QRectF frameOfControl(const ControlKey &key) const;
    // Does what a click on it would do; false when there is no such control.
    bool performControl(const ControlKey &key);

    QVariant valueForKey(const QString &key) const override;

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    enum class RowBackground { Selected, Alternate, Normal };
    // What stands on screen for one row, to tell which rows a change leaves as they are.
    struct ShownRow {
        std::shared_ptr<KLVView> view;
        QRectF frame;
        RowBackground background;
        QColor tint;

        bool looksLike(const ShownRow &other) const;
    };
    struct Press {
        KeyValueObjectPtr object; // what the press was reported for; null for no row
        ControlKey control; // what a release close by acts on, if anything
        QPoint globalPosition;
    };

    bool becomeFirstResponder();
    bool resignFirstResponder();
    bool announceFirstResponder();

    void drawRect(QPainter &painter, const QRectF &dirtyRect);
    void drawBackgroundOfRow(const KLVAccordionViewItemPtr &item, RowBackground background);
    QColor backgroundColor(const KLVTheme &theme, RowBackground background, const KLVAccordionViewItem &item) const;
    RowBackground backgroundOfRow(qsizetype index) const;
    void repaintWhatLooksDifferent();

    QStringList selectedUids() const;
    QScrollArea *enclosingScrollView() const;
    void scrollRectToVisible(const QRectF &rect);
    void scheduleRebuild();
    void rebuild();

    KeyValueObjectPtr objectAt(const QPointF &point) const;
    ControlKey controlAt(const QPointF &point) const;
    KLVAccordionViewItemPtr itemForUid(const QString &uid) const;
    void pressed(const QMouseEvent &event, int clickCount);
    void scrollByKey(QAbstractSlider::SliderAction action);
    bool moveCurrentControl(bool forward);
    QList<ControlKey> controlsOfSelection() const;

    KLVAccordionViewItemPtr m_itemPrototype;
    KLVAccordionViewDelegate *m_delegate = nullptr;
    QColor m_alternativeBackgroundColor;
    QColor m_selectedBackgroundColor;
    KLVRepresentedObjects m_representedObjects;
    KLVRepresentedObjects m_selectedObjects;
    QList<KLVAccordionViewItemPtr> m_accordionViewItems;
    std::unique_ptr<KLVAccordionClickShield> m_clickCatcher;

    std::map<QString, std::unique_ptr<KeyValueBinding>> m_bindings;
    struct Observation {
        KeyValueObject *object;
        std::weak_ptr<const char> lifeline;
        QString keyPath;
    };
    std::map<QString, Observation> m_observations;

    struct Refetch {
        std::vector<ShownRow> shownRows;
        QStringList selectedUids;
        QRect geometry;
        int scrollOffset;
    };

    std::vector<ShownRow> m_shownRows;
    std::optional<Refetch> m_refetch;
    QPainter *m_graphicsContext = nullptr;
    std::optional<Press> m_press;
    ControlKey m_currentControl;
    bool m_wasFirstResponder = false;
    bool m_isRebuildScheduled = false;
    bool m_keepsScrollOffset = false;
};
