// SPDX-License-Identifier: MIT
#include "KeyValueBinding.h"

KeyValueBinding::KeyValueBinding(KeyValueObject &source, const QString &keyPath, Setter setter)
    : m_source(&source)
    , m_sourceLifeline(source.lifeline())
    , m_keyPath(keyPath)
    , m_setter(std::move(setter))
{
    source.addObserver_forKeyPath_options_context(this, keyPath);
    m_setter(source.valueForKey(keyPath));
}

KeyValueBinding::~KeyValueBinding()
{
    if (KeyValueObject *object = source())
        object->removeObserver_forKeyPath(this, m_keyPath);
}

KeyValueObject *KeyValueBinding::source() const
{
    return m_sourceLifeline.expired() ? nullptr : m_source;
}

void KeyValueBinding::observeValueForKeyPath_ofObject_change_context(
    const QString &keyPath, KeyValueObject *object, const KeyValueChange & /*change*/, void * /*context*/)
{
    m_setter(object->valueForKey(keyPath));
}
