// SPDX-License-Identifier: MIT
#pragma once

#include <HotKeyBackend.h>

#include <map>
#include <optional>

// Hot keys without a keyboard: writes down what is asked of it, refuses when
// told to, and is pressed by the test.
class RecordingHotKeys final : public HotKeyBackend
{
    Q_OBJECT

public:
    struct Grab {
        int virtualKey;
        quint32 modifiers;
        HotKeyLabel label;
        HotKeyStatus status = HotKeyStatus::active();
    };

    using HotKeyBackend::HotKeyBackend;

    // Arranging.
    void refuseGrabs(const QString &reason) { m_refusal = reason; }
    void setTimeOfPresses(quint32 time) { setLatestPress({ .time = time, .waylandToken = {} }); }
    void allowGrabs() { m_refusal.reset(); }
    void setStatus(quint32 id, const HotKeyStatus &status)
    {
        m_grabs.at(id).status = status;
        Q_EMIT statusChanged(id);
    }
    void press(quint32 id) { Q_EMIT pressed(id); }
    void releaseKeys(quint32 id) { Q_EMIT released(id); }

    // Asserting.
    const std::map<quint32, Grab> &grabs() const { return m_grabs; }
    const QList<quint32> &attemptedIds() const { return m_attemptedIds; } // also the refused ones
    int pressListeners() const { return receivers(SIGNAL(pressed(quint32))); }
    int releaseListeners() const { return receivers(SIGNAL(released(quint32))); }

    bool isAvailable() const override { return true; }
    Result<void> grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label) override
    {
        m_attemptedIds.append(id);
        if (m_refusal)
            return Error { *m_refusal };
        m_grabs.insert_or_assign(id, Grab { virtualKey, modifiers, label });
        return {};
    }
    void release(quint32 id) override { m_grabs.erase(id); }
    HotKeyStatus status(quint32 id) const override
    {
        const auto grab = m_grabs.find(id);
        return grab == m_grabs.end() ? HotKeyStatus() : grab->second.status;
    }

private:
    std::map<quint32, Grab> m_grabs;
    QList<quint32> m_attemptedIds;
    std::optional<QString> m_refusal;
};
