#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace support {

/// What a screen reader, the keyboard or weak eyes miss in a window that is shown, a sentence each:
/// controls without a name, a role or their state, marks without a word, controls that Tab does not
/// reach or not in the order of the layout, a focus that cannot be seen, texts with a contrast
/// below 4.5. The window is used by keys meanwhile.
[[nodiscard]] std::vector<std::string> accessFindings(QWidget& window);

/// What is read of the accessible things in and below a widget, one a line, with their role and
/// value.
[[nodiscard]] std::string spoken(QWidget& part);

}  // namespace support
