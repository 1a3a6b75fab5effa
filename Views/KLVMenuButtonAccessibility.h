// SPDX-License-Identifier: MIT
#pragma once

// Tells assistive technology of a button that opens a menu: the menu is its
// child, so that a menu can be walked to without opening it by eye. Menus have
// no place of their own in the tree of windows.
namespace KLVMenuButtonAccessibility
{

// Once for the program; more often does no harm.
void install();

} // namespace KLVMenuButtonAccessibility
