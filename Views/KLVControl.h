// SPDX-License-Identifier: MIT
#pragma once

#include "KLVView.h"

#include <functional>

// A view of a row that can be clicked: by pointer, keyboard and assistive
// technology alike, always through performClick().
class KLVControl : public KLVView
{
public:
    using Action = std::function<void()>;
    using KLVView::KLVView;

    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool isEnabled) { m_isEnabled = isEnabled; }

    const Action &action() const { return m_action; }
    void setAction(Action action) { m_action = std::move(action); }

    // Where it can be clicked, in its own coordinates.
    virtual QRectF clickableRect() const { return { QPointF(0, 0), frame().size() }; }
    // Nothing happens while it is disabled.
    virtual void performClick();

    bool looksLike(const KLVView &other) const override;
    std::vector<KLVControl *> usableControls() override;

    virtual bool isCheckable() const { return false; }
    virtual bool isChecked() const { return false; }

protected:
    // The ring that shows where the keyboard is.
    void drawCurrentMark(const KLVDrawingContext &drawing) const;
    void sendAction();

private:
    bool m_isEnabled = true;
    Action m_action;
};
