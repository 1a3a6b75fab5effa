// SPDX-License-Identifier: MIT
#include "KLVAccordionClickShield.h"

#include "KLVAccordionView.h"

#include <QMenu>

using namespace Qt::StringLiterals;

KLVAccordionClickShield::KLVAccordionClickShield(KLVAccordionView &superview)
    : KLVView(u"clickCatcher"_s)
    , m_superview(superview)
{
}

KLVAccordionClickShield::~KLVAccordionClickShield() = default;

void KLVAccordionClickShield::mouseDown(const KLVMouseEvent &event)
{
    m_superview.mouseDown(event);
}

void KLVAccordionClickShield::rightMouseDown(const KLVMouseEvent &event)
{
    m_superview.rightMouseDown(event);
}

void KLVAccordionClickShield::otherMouseDown(const KLVMouseEvent &event)
{
    m_superview.otherMouseDown(event);
}

QMenu &KLVAccordionClickShield::menu()
{
    if (!m_menu) {
        m_menu = std::make_unique<QMenu>();
        m_menu->addAction(u"test"_s);
    }
    return *m_menu;
}
