// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace ICalendar
{

// A value that few of very many owners have. One that has none reads it as it is when made, and spends a
// pointer's room on it; one that has it keeps it apart, and copies it with itself.
template <typename Value> class Seldom
{
public:
    Seldom() = default;
    Seldom(const Seldom &other)
        : m_value(other.m_value ? std::make_unique<Value>(*other.m_value) : nullptr)
    {
    }
    Seldom(Seldom &&other) noexcept = default;
    Seldom &operator=(const Seldom &other)
    {
        *this = Seldom(other);
        return *this;
    }
    Seldom &operator=(Seldom &&other) noexcept = default;
    ~Seldom() = default;

    const Value &operator*() const
    {
        static const Value absent = {};
        return m_value ? *m_value : absent;
    }
    const Value *operator->() const { return &**this; }

    // To be written to; kept from here on.
    Value &edit()
    {
        if (!m_value)
            m_value = std::make_unique<Value>();
        return *m_value;
    }

private:
    std::unique_ptr<Value> m_value;
};

} // namespace ICalendar
