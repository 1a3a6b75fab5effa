// SPDX-License-Identifier: MIT
#pragma once

#include <QFlags>
#include <QString>
#include <QVariant>

#include <memory>
#include <optional>
#include <vector>

class KeyValueObject;

enum class KeyValueOption {
    NewValue = 0x1, // the change carries the value after it
    OldValue = 0x2, // the change carries the value before it
};
Q_DECLARE_FLAGS(KeyValueOptions, KeyValueOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyValueOptions)

// What an observer asked to be told about a change. Values that it did not ask for are absent.
struct KeyValueChange {
    std::optional<QVariant> oldValue;
    std::optional<QVariant> newValue;
};

// Hears of changes to keys of KeyValueObjects. A registration ends when the
// observer or the observed object is destroyed, whichever is first.
class KeyValueObserver
{
public:
    KeyValueObserver(const KeyValueObserver &) = delete;
    KeyValueObserver &operator=(const KeyValueObserver &) = delete;

    virtual void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject *object, const KeyValueChange &change, void *context)
        = 0;

protected:
    KeyValueObserver() = default;
    virtual ~KeyValueObserver() = default;

private:
    friend class KeyValueObject;
    std::shared_ptr<const char> m_lifeline = std::make_shared<const char>('\0');
};

// An object whose values are read by name and observed by name.
//
// Whoever changes a value announces it with willChangeValueForKey before and
// didChangeValueForKey after, once the object is whole again. Observers are
// called by the second, in the order in which they registered. An observer may
// register or unregister anyone while it is called. Main thread only.
class KeyValueObject
{
public:
    KeyValueObject();
    virtual ~KeyValueObject();
    // A copy has the same values and no observers.
    KeyValueObject(const KeyValueObject &);
    KeyValueObject &operator=(const KeyValueObject &);

    // An invalid variant for a key that the object does not have, or a value that is absent.
    virtual QVariant valueForKey(const QString &key) const = 0;
    // Whether both stand for the same thing; identity unless a class knows better.
    virtual bool isEqual(const KeyValueObject &other) const;

    void addObserver_forKeyPath_options_context(
        KeyValueObserver *observer, const QString &keyPath, KeyValueOptions options = {}, void *context = nullptr);
    // Ends every registration of the observer for that key; unknown ones are ignored.
    void removeObserver_forKeyPath(KeyValueObserver *observer, const QString &keyPath);
    bool isObserved(const QString &keyPath) const;

    void willChangeValueForKey(const QString &key);
    void didChangeValueForKey(const QString &key);

    // Expires when the object is destroyed.
    std::weak_ptr<const char> lifeline() const;

private:
    struct Registration;
    struct Observation;
    std::unique_ptr<Observation> m_observation; // only while somebody observes
    mutable std::shared_ptr<const char> m_lifeline;
};

using KeyValueObjectPtr = std::shared_ptr<KeyValueObject>;
