#pragma once

#include "platform/controls/multicolumnlist.h"
#include "platform/forms/form.h"

namespace reports {

/// Asks for a file and writes all rows of a form's list to it, in the order shown; tells in plain
/// words what went wrong, and before it writes where the list is not read to its end. Who may not
/// print is told so.
void exportList(forms::Form& form, const controls::MultiColumnList& list);

}  // namespace reports
