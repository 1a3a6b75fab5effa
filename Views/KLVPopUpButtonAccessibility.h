// SPDX-License-Identifier: MIT
#pragma once

class KLVPopUpButton;

// Tells assistive technology of a pop-up button: a combo box with its own name,
// and its entries as list items, one of them selected. An entry can be chosen by
// its action while the pop-up is closed; one that is disabled says why.
namespace KLVPopUpButtonAccessibility
{

// Once for the program; more often does no harm.
void install();

void currentDidChange(KLVPopUpButton &popUp);

} // namespace KLVPopUpButtonAccessibility
