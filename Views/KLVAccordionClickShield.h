// SPDX-License-Identifier: MIT
#pragma once

#include "KLVAccordionViewDelegate.h"
#include "KLVView.h"

#include <memory>

class KLVAccordionView;
class QMenu;

// Lies over all rows of an accordion, so that every press reaches the accordion
// rather than a control inside a row. Draws nothing.
class KLVAccordionClickShield final : public KLVView
{
public:
    explicit KLVAccordionClickShield(KLVAccordionView &superview);
    ~KLVAccordionClickShield() override;

    KLVAccordionView &superview() const { return m_superview; }

    // A left press is not handled here and goes on to the next responder, which is the accordion.
    void mouseDown(const KLVMouseEvent &event);
    void rightMouseDown(const KLVMouseEvent &event);
    void otherMouseDown(const KLVMouseEvent &event);

    // A context menu of one item, "test", without an action or a key. It never opens by itself,
    // for right presses go to the accordion. Made when it is asked for.
    QMenu &menu();

private:
    KLVAccordionView &m_superview;
    std::unique_ptr<QMenu> m_menu;
};
