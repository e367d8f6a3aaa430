#pragma once

#include "help/guide/guide.h"

namespace help {

/// The guide that belongs to this program, read when it is first asked for.
[[nodiscard]] const Guide& theGuide();

/// Shows a place of the guide in its window, which is opened where it is not. It can be used beside
/// any form, a message box included.
void showGuide(const Place& place);

/// From now on F1 shows what the guide tells of the form in front, and the fields of each form that
/// is loaded say what they mean.
void offerGuide();

}  // namespace help
