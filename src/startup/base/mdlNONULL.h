#pragma once

#include "platform/base/value.h"

/// The conversions between database values and controls.
namespace startup {

/// A single blank for Null and for a text that is empty or all blanks; any other value unchanged,
/// blanks included.
base::Value NoNullString(base::Value value);

/// The value unchanged where the leading number of its text is not zero, otherwise the whole number
/// 0 (Null, zero, a text that starts with no number). Raises nothing.
base::Value NoNullNumber(base::Value value);

/// True for a check box's value 1 (checked); false for 0 and 2 (greyed).
bool SetBoolean(int checkBoxValue);

/// A check box's value: 1 for true, otherwise 0.
int SetCheckBox(bool flag);

}  // namespace startup
