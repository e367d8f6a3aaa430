#pragma once

#include <string>

namespace reports {

/// Whether a workbook's file and each of its sheets is written to its end. The library that writes
/// them does not tell of a disk or a quota that was full for some of its bytes.
[[nodiscard]] bool isWholeWorkbook(const std::string& path);

}  // namespace reports
