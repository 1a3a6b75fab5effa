// SPDX-License-Identifier: MIT
#pragma once

// Tells assistive technology of the buttons of the date bar. The menu that one
// opens is its child, so that it can be walked to: Qt gives menus no place of
// their own in the tree of windows.
namespace KLVBarButtonAccessibility
{

// Once for the program; more often does no harm.
void install();

} // namespace KLVBarButtonAccessibility
