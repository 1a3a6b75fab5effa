// SPDX-License-Identifier: MIT
#pragma once

#include <KeyValueObject.h>

#include <QColor>
#include <QRectF>
#include <QString>

#include <memory>

class KLVAccordionView;
class KLVAccordionViewItem;
class KLVView;

using KLVAccordionViewItemPtr = std::shared_ptr<KLVAccordionViewItem>;

// One row of an accordion: a controller that owns the row's view, the object
// shown in it, and the row's two heights.
//
// It is made, given its object and its accordion, and only then asked for its
// view, which loads it: a subclass makes and lays out its view in loadView().
// "representedObject" can be observed.
class KLVAccordionViewItem : public KeyValueObject
{
public:
    KLVAccordionViewItem();
    ~KLVAccordionViewItem() override;

    // A fresh item of the same class in the same accordion: unselected, without an object, and
    // with the heights of a new item.
    KLVAccordionViewItemPtr copyWithZone() const;
    QString description() const;

    const KeyValueObjectPtr &representedObject() const { return m_representedObject; }
    void setRepresentedObject(const KeyValueObjectPtr &object);

    // Loads the view the first time. Null for a class that has no interface.
    KLVView *view();
    // The view as far as it is loaded.
    const std::shared_ptr<KLVView> &sharedView() const { return m_view; }

    float desiredHeight() const { return m_isSelected ? m_selectedHeight : m_unselectedHeight; }
    float unselectedHeight() const { return m_unselectedHeight; }
    void setUnselectedHeight(float height) { m_unselectedHeight = height; }
    float selectedHeight() const { return m_selectedHeight; }
    void setSelectedHeight(float height) { m_selectedHeight = height; }

    KLVAccordionView *accordionView() const { return m_accordionView; }
    void setAccordionView(KLVAccordionView *accordionView) { m_accordionView = accordionView; }

    // Changes nothing on screen: the accordion always follows with a layout pass.
    bool isSelected() const { return m_isSelected; }
    void setIsSelected(bool isSelected) { m_isSelected = isSelected; }

    // Loads the view, if there is one to load.
    void setFrame(const QRectF &frame);

    QVariant valueForKey(const QString &key) const override;

    // What assistive technology reads for the whole row.
    virtual QString accessibleText() const { return {}; }
    // The colour that stands for the object, and tints the row while it is selected; invalid for none.
    virtual QColor tintColor() const { return {}; }
    // Shows or hides what only a selected row shows. Called by every layout pass.
    virtual void updateForSelection() { }

protected:
    // A new item of the receiver's own class.
    virtual KLVAccordionViewItemPtr newItem() const;
    virtual std::shared_ptr<KLVView> loadView();

private:
    float m_unselectedHeight = 50.0F;
    float m_selectedHeight = 50.0F;
    KLVAccordionView *m_accordionView = nullptr;
    bool m_isSelected = false;
    KeyValueObjectPtr m_representedObject;
    bool m_isLoaded = false;
    std::shared_ptr<KLVView> m_view;
};
