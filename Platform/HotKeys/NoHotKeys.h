// SPDX-License-Identifier: MIT
#pragma once

#include "HotKeyBackend.h"

#include <QHash>

// For a desktop without global hot keys: accepts everything, hears nothing and
// says so in the status.
class NoHotKeys final : public HotKeyBackend
{
    Q_OBJECT

public:
    using HotKeyBackend::HotKeyBackend;

    bool isAvailable() const override { return false; }
    Result<void> grab(quint32 id, int virtualKey, quint32 modifiers, const HotKeyLabel &label) override;
    void release(quint32 id) override;
    HotKeyStatus status(quint32 id) const override;

private:
    QHash<quint32, HotKeyLabel> m_labels;
};
