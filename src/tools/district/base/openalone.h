#pragma once

#include <memory>
#include <string>

#include "platform/store/base/database.h"

namespace tools::district {

/// Opens one of a district's files and keeps everybody else out of it until it is closed. Raises
/// base::RunTimeError where somebody has it open, store::StoreError.
[[nodiscard]] std::unique_ptr<store::Database> openAlone(const std::string& path);

}  // namespace tools::district
