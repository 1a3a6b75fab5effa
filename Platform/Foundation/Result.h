// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

// What went wrong, in words for the person at the screen.
struct Error {
    QString message;
};

// The value of an operation that is expected to fail now and then, or the
// reason why it did. value() and error() may be asked for only after isOk().
template <typename Value, typename Failure = Error> class [[nodiscard]] Result
{
public:
    Result(Value value) // NOLINT(google-explicit-constructor): returning a value reads best so
        : m_content(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Failure failure) // NOLINT(google-explicit-constructor)
        : m_content(std::in_place_index<1>, std::move(failure))
    {
    }

    bool isOk() const { return m_content.index() == 0; }
    explicit operator bool() const { return isOk(); }

    const Value &value() const & { return std::get<0>(m_content); }
    Value &value() & { return std::get<0>(m_content); }
    Value &&value() && { return std::get<0>(std::move(m_content)); }
    const Failure &error() const { return std::get<1>(m_content); }

private:
    std::variant<Value, Failure> m_content;
};

template <typename Failure> class [[nodiscard]] Result<void, Failure>
{
public:
    Result() = default;
    Result(Failure failure) // NOLINT(google-explicit-constructor)
        : m_failure(std::move(failure))
    {
    }

    bool isOk() const { return !m_failure.has_value(); }
    explicit operator bool() const { return isOk(); }
    const Failure &error() const { return *m_failure; }

private:
    std::optional<Failure> m_failure;
};
