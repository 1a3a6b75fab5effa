// SPDX-License-Identifier: MIT
#include "KeyValueObject.h"

#include <algorithm>

struct KeyValueObject::Registration {
    KeyValueObserver *observer;
    std::weak_ptr<const char> observerLifeline;
    QString keyPath;
    KeyValueOptions options;
    void *context;
    // One entry for each announced change that has not been completed yet: changes nest.
    std::vector<QVariant> oldValues;

    bool isLive() const { return observer && !observerLifeline.expired(); }
};

struct KeyValueObject::Observation {
    // Shared, so that a registration ended by an observer survives the walk that called it.
    std::vector<std::shared_ptr<Registration>> registrations;
};

KeyValueObject::KeyValueObject() = default;

KeyValueObject::~KeyValueObject() = default;

KeyValueObject::KeyValueObject(const KeyValueObject &) { }

// Observers stay with their object. NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
KeyValueObject &KeyValueObject::operator=(const KeyValueObject &)
{
    return *this;
}

bool KeyValueObject::isEqual(const KeyValueObject &other) const
{
    return this == &other;
}

void KeyValueObject::addObserver_forKeyPath_options_context(
    KeyValueObserver *observer, const QString &keyPath, KeyValueOptions options, void *context)
{
    if (!m_observation)
        m_observation = std::make_unique<Observation>();

    auto registration = std::make_shared<Registration>();
    registration->observer = observer;
    registration->observerLifeline = observer->m_lifeline;
    registration->keyPath = keyPath;
    registration->options = options;
    registration->context = context;
    m_observation->registrations.push_back(std::move(registration));
}

void KeyValueObject::removeObserver_forKeyPath(KeyValueObserver *observer, const QString &keyPath)
{
    if (!m_observation)
        return;

    std::erase_if(m_observation->registrations, [&](const auto &registration) {
        const bool ends = registration->observer == observer && registration->keyPath == keyPath;
        if (ends)
            registration->observer = nullptr;
        return ends || !registration->isLive();
    });
}

bool KeyValueObject::isObserved(const QString &keyPath) const
{
    return m_observation && std::ranges::any_of(m_observation->registrations, [&](const auto &registration) {
        return registration->isLive() && registration->keyPath == keyPath;
    });
}

void KeyValueObject::willChangeValueForKey(const QString &key)
{
    if (!m_observation)
        return;

    for (const auto &registration : m_observation->registrations) {
        if (registration->keyPath == key && registration->options.testFlag(KeyValueOption::OldValue))
            registration->oldValues.push_back(valueForKey(key));
    }
}

void KeyValueObject::didChangeValueForKey(const QString &key)
{
    if (!m_observation)
        return;

    // Observers may register, unregister or destroy this object: the walk goes over a copy.
    const auto registrations = m_observation->registrations;
    const auto alive = lifeline();
    for (const auto &registration : registrations) {
        if (alive.expired())
            return;
        if (registration->keyPath != key || !registration->isLive())
            continue;

        KeyValueChange change;
        if (!registration->oldValues.empty()) {
            change.oldValue = registration->oldValues.back();
            registration->oldValues.pop_back();
        }
        if (registration->options.testFlag(KeyValueOption::NewValue))
            change.newValue = valueForKey(key);
        registration->observer->observeValueForKeyPath_ofObject_change_context(
            key, this, change, registration->context);
    }
}

std::weak_ptr<const char> KeyValueObject::lifeline() const
{
    if (!m_lifeline)
        m_lifeline = std::make_shared<const char>('\0');
    return m_lifeline;
}
