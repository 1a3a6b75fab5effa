// SPDX-License-Identifier: MIT
#pragma once

#include <KLVAccordionView.h>
#include <KLVControl.h>
#include <KLVView.h>

#include <QPainter>

// An object of a list: equal to every other one with its uid.
class ListObject final : public KeyValueObject
{
public:
    explicit ListObject(const QString &uid)
        : m_uid(uid)
    {
    }

    QVariant valueForKey(const QString &key) const override
    {
        return key == QStringLiteral("uid") ? QVariant(m_uid) : QVariant();
    }
    bool isEqual(const KeyValueObject &other) const override
    {
        return other.valueForKey(QStringLiteral("uid")) == m_uid;
    }

private:
    QString m_uid;
};

inline KeyValueObjectPtr listObject(const QString &uid)
{
    return std::make_shared<ListObject>(uid);
}

inline KLVRepresentedObjects listObjects(int count)
{
    KLVRepresentedObjects objects;
    for (int index = 0; index < count; ++index)
        objects.append(listObject(QString::number(index)));
    return objects;
}

// A row with an own view and a button in it, 30 high and 60 when selected.
class PlainRow final : public KLVAccordionViewItem
{
public:
    explicit PlainRow(float unselected = 30, float selected = 60)
    {
        setUnselectedHeight(unselected);
        setSelectedHeight(selected);
    }

    KLVControl *button = nullptr;
    KLVControl *detail = nullptr; // shown while the row is selected
    int clicks = 0;
    int detailClicks = 0;
    static inline int totalClicks = 0;

protected:
    KLVAccordionViewItemPtr newItem() const override { return std::make_shared<PlainRow>(); }
    std::shared_ptr<KLVView> loadView() override
    {
        auto view = std::make_shared<KLVView>();
        button = view->addSubview<KLVControl>(QStringLiteral("button"));
        button->setFrame(QRectF(10, 5, 20, 20));
        button->setAction([this] {
            ++clicks;
            ++totalClicks;
        });
        detail = view->addSubview<KLVControl>(QStringLiteral("detail"));
        detail->setFrame(QRectF(10, 35, 20, 20));
        detail->setAction([this] { ++detailClicks; });
        return view;
    }
    void updateForSelection() override { detail->setHidden(!isSelected()); }
};

// Answers every question as it is told and records every call.
class RecordingDelegate final : public KLVAccordionViewDelegate
{
public:
    bool makesRows = true;
    bool takesPresses = true;
    bool drawsSelected = false;
    bool drawsAlternate = false;
    bool drawsNormal = false;
    bool drawsPlaceholder = false;
    bool selectsOnPress = false;
    float unselectedHeight = 30;
    float selectedHeight = 60;

    struct Press {
        KeyValueObjectPtr object;
        KLVMouseEvent event;
    };
    struct Drawing {
        QString kind;
        KeyValueObjectPtr object;
        QRectF frame;
    };
    QList<Press> presses;
    QList<Drawing> drawings;

    bool respondsToAccordionView_itemForRepresentedObject() const override { return makesRows; }
    KLVAccordionViewItemPtr accordionView_itemForRepresentedObject(
        KLVAccordionView * /*view*/, const KeyValueObjectPtr & /*object*/) override
    {
        return std::make_shared<PlainRow>(unselectedHeight, selectedHeight);
    }
    bool respondsToAccordionView_mouseDown_forRepresentedObject() const override { return takesPresses; }
    bool accordionView_mouseDown_forRepresentedObject(
        KLVAccordionView *view, const KLVMouseEvent &event, const KeyValueObjectPtr &object) override
    {
        presses.append({ object, event });
        if (selectsOnPress && object)
            view->setSelectedObject(object);
        return true;
    }
    bool respondsToAccordionView_drawSelectedBackgroundForItem_frame() const override { return drawsSelected; }
    void accordionView_drawSelectedBackgroundForItem_frame(
        KLVAccordionView * /*view*/, const KeyValueObjectPtr &object, const QRectF &frame) override
    {
        drawings.append({ QStringLiteral("selected"), object, frame });
    }
    bool respondsToAccordionView_drawAltBackgroundForItem_frame() const override { return drawsAlternate; }
    void accordionView_drawAltBackgroundForItem_frame(
        KLVAccordionView * /*view*/, const KeyValueObjectPtr &object, const QRectF &frame) override
    {
        drawings.append({ QStringLiteral("alternate"), object, frame });
    }
    bool respondsToAccordionView_drawBackgroundForItem_frame() const override { return drawsNormal; }
    void accordionView_drawBackgroundForItem_frame(
        KLVAccordionView * /*view*/, const KeyValueObjectPtr &object, const QRectF &frame) override
    {
        drawings.append({ QStringLiteral("normal"), object, frame });
    }
    bool respondsToAccordionView_drawPlaceHolderBackgroundInFrame() const override { return drawsPlaceholder; }
    void accordionView_drawPlaceHolderBackgroundInFrame(KLVAccordionView * /*view*/, const QRectF &frame) override
    {
        drawings.append({ QStringLiteral("placeholder"), nullptr, frame });
    }
};
