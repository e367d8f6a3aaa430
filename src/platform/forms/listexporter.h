#pragma once

#include <functional>

namespace controls {
class MultiColumnList;
}

namespace forms {

class Form;

/// Writes all rows that a form's list shows to a file that the user chooses, or prints them.
using ListExporter = std::function<void(Form&, const controls::MultiColumnList&)>;

/// Those in force for forms that are loaded from now on; without one no list offers it.
[[nodiscard]] ListExporter& listExporter();
[[nodiscard]] ListExporter& listPrinter();

}  // namespace forms
