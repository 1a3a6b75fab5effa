// SPDX-License-Identifier: MIT
#pragma once

class KLVTableView;

// Tells assistive technology of a table of lines with buttons: a list, its rows
// as list items that can be selected, and each row's button as its child. Rows
// without a text are not there.
namespace KLVTableViewAccessibility
{

// Once for the program; more often does no harm.
void install();

void rowsDidChange(KLVTableView &table);
void selectionDidChange(KLVTableView &table);

} // namespace KLVTableViewAccessibility
