#pragma once

#include <functional>

namespace controls {
class MultiColumnList;
}

namespace forms {

class Form;

/// Writes all rows of a form's list to a file that the user chooses.
using ListExporter = std::function<void(Form&, const controls::MultiColumnList&)>;

/// The one in force for forms that are loaded from now on; without one no list offers it.
[[nodiscard]] ListExporter& listExporter();

}  // namespace forms
