// SPDX-License-Identifier: MIT
#pragma once

// Before every header of Qt, whose key words some of GLib's names would be.
#include <libecal/libecal.h>

#include <QByteArray>
#include <QString>

#include <memory>

namespace Service
{

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
};
// The one owner of one reference.
template <typename T> using Owned = std::unique_ptr<T, Unreference>;

template <typename T> Owned<T> referenced(T *object)
{
    return Owned<T>(object ? static_cast<T *>(g_object_ref(object)) : nullptr);
}

// The text of a string that the library gives away; empty for none.
inline QByteArray takenText(char *text)
{
    QByteArray result(text);
    g_free(text);
    return result;
}

// Where a call puts what went wrong.
class Failure final
{
public:
    Failure() = default;
    explicit Failure(GError *error)
        : m_error(error)
    {
    }
    ~Failure() { g_clear_error(&m_error); }
    Failure(const Failure &) = delete;
    Failure &operator=(const Failure &) = delete;

    operator GError **() { return &m_error; } // NOLINT(google-explicit-constructor): an argument of each call
    bool isSet() const { return m_error != nullptr; }
    bool is(GQuark domain, int code) const { return g_error_matches(m_error, domain, code); }
    // In the words of the library.
    QString reason() const { return m_error ? QString::fromUtf8(m_error->message).trimmed() : QString(); }

private:
    GError *m_error = nullptr;
};

} // namespace Service
