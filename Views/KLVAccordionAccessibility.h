// SPDX-License-Identifier: MIT
#pragma once

class KLVAccordionView;
class KLVAccordionViewItem;

// Tells assistive technology of an accordion: a list, its rows as list items,
// and what a row shows as their children.
//
// Rows are made anew all the time; here an item's row stays one object as long
// as an item with its uid is in the list. Actions go to the control directly.
namespace KLVAccordionAccessibility
{

// Once for the program; more often does no harm.
void install();

void rowsDidChange(KLVAccordionView &accordion);
void selectionDidChange(KLVAccordionView &accordion);
// The keyboard went into the list, or to another control of its row.
void focusDidChange(KLVAccordionView &accordion);
void checkedDidChange(KLVAccordionView &accordion, const KLVAccordionViewItem &item);

} // namespace KLVAccordionAccessibility
