#pragma once

#include "platform/controls/multicolumnlist.h"
#include "platform/forms/form.h"

namespace reports {

/// Asks for a file and writes what a form's list shows to it, rows and columns in their order;
/// tells in plain words what went wrong, and before it writes where the list is not read to its
/// end. Who may not print is told so.
void exportList(forms::Form& form, const controls::MultiColumnList& list);

/// Shows the pages of what a form's list shows, to be printed; says the same as exportList().
void printList(forms::Form& form, const controls::MultiColumnList& list);

}  // namespace reports
