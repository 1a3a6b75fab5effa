// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

#include <map>

// A thing within a widget that assistive technology shall know and that is no
// widget: an entry, a row, or what a row shows. It is known by a key and looked
// for anew at every question, so that it may be gone.
class KLVAccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    // Among the children that child() gives.
    static int indexOf(const QAccessibleInterface *child, const QAccessibleInterface &parent);
    static QAccessibleInterface *childOf(const QAccessibleInterface &parent, int x, int y);

    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return parent() ? parent()->window() : nullptr; }
    int indexOfChild(const QAccessibleInterface *child) const override { return indexOf(child, *this); }
    QAccessibleInterface *childAt(int x, int y) const override { return childOf(*this, x, y); }
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override { }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }
    QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }
};

// The parts of one widget: each is made when it is first asked for, and all go with this.
template <typename Key> class KLVAccessibleParts final
{
public:
    KLVAccessibleParts() = default;
    ~KLVAccessibleParts()
    {
        for (const auto &[key, id] : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }
    KLVAccessibleParts(const KLVAccessibleParts &) = delete;
    KLVAccessibleParts &operator=(const KLVAccessibleParts &) = delete;

    // `make` returns a new interface, which is QAccessible's from then on.
    template <typename Make> QAccessibleInterface *part(const Key &key, Make make)
    {
        const auto known = m_ids.find(key);
        if (known != m_ids.end())
            return QAccessible::accessibleInterface(known->second);
        QAccessibleInterface *const made = make();
        m_ids.emplace(key, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    template <typename IsLost> void forgetIf(IsLost isLost)
    {
        std::erase_if(m_ids, [&isLost](const auto &entry) {
            if (!isLost(entry.first))
                return false;
            QAccessible::deleteAccessibleInterface(entry.second);
            return true;
        });
    }

private:
    std::map<Key, QAccessible::Id> m_ids;
};
