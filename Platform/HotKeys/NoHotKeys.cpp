// SPDX-License-Identifier: MIT
#include "NoHotKeys.h"

Result<void> NoHotKeys::grab(quint32 id, int /*virtualKey*/, quint32 /*modifiers*/, const HotKeyLabel &label)
{
    m_labels.insert(id, label);
    return {};
}

void NoHotKeys::release(quint32 id)
{
    m_labels.remove(id);
}

HotKeyStatus NoHotKeys::status(quint32 id) const
{
    const auto label = m_labels.constFind(id);
    return label == m_labels.constEnd() ? HotKeyStatus() : HotKeyStatus::notOffered(label->desktopAction);
}
