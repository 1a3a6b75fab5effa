// SPDX-License-Identifier: MIT
#include "KLVAccordionViewItem.h"

#include "KLVView.h"

using namespace Qt::StringLiterals;

KLVAccordionViewItem::KLVAccordionViewItem() = default;

KLVAccordionViewItem::~KLVAccordionViewItem() = default;

KLVAccordionViewItemPtr KLVAccordionViewItem::copyWithZone() const
{
    KLVAccordionViewItemPtr copy = newItem();
    copy->setAccordionView(m_accordionView);
    copy->setIsSelected(false);
    return copy;
}

KLVAccordionViewItemPtr KLVAccordionViewItem::newItem() const
{
    return std::make_shared<KLVAccordionViewItem>();
}

QString KLVAccordionViewItem::description() const
{
    const auto address = [](const void *object) {
        return object ? u"0x"_s + QString::number(reinterpret_cast<quintptr>(object), 16) : u"(null)"_s;
    };
    return u"KLVAccordionViewItem: <KLVAccordionViewItem: %1> - repObj: %2"_s.arg(
        address(this), address(m_representedObject.get()));
}

void KLVAccordionViewItem::setRepresentedObject(const KeyValueObjectPtr &object)
{
    willChangeValueForKey(u"representedObject"_s);
    m_representedObject = object;
    didChangeValueForKey(u"representedObject"_s);
}

KLVView *KLVAccordionViewItem::view()
{
    if (!m_isLoaded) {
        m_isLoaded = true;
        m_view = loadView();
    }
    return m_view.get();
}

std::shared_ptr<KLVView> KLVAccordionViewItem::loadView()
{
    return nullptr;
}

void KLVAccordionViewItem::setFrame(const QRectF &frame)
{
    if (view())
        m_view->setFrame(frame);
}

QVariant KLVAccordionViewItem::valueForKey(const QString &key) const
{
    return key == u"representedObject"_s && m_representedObject ? QVariant::fromValue(m_representedObject) : QVariant();
}
