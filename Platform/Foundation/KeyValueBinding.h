// SPDX-License-Identifier: MIT
#pragma once

#include "KeyValueObject.h"

#include <functional>

// Keeps a value of one object flowing into a setter: pushes it when made and on
// every change, until the binding or the source is destroyed.
class KeyValueBinding final : public KeyValueObserver
{
public:
    using Setter = std::function<void(const QVariant &value)>;

    KeyValueBinding(KeyValueObject &source, const QString &keyPath, Setter setter);
    ~KeyValueBinding() override;

    const QString &keyPath() const { return m_keyPath; }
    // Null once the source is gone.
    KeyValueObject *source() const;

    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange &change, void *context) override;

private:
    KeyValueObject *m_source;
    std::weak_ptr<const char> m_sourceLifeline;
    QString m_keyPath;
    Setter m_setter;
};
