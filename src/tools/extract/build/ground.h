#pragma once

#include <span>
#include <vector>

#include "streets/base/streetmap.h"
#include "tools/extract/build/nametable.h"
#include "tools/extract/read/extract.h"

namespace tools::extract {

/// What lies beside the streets, the rings of areas joined; buildings only from 4,000 square feet
/// on: homes would make most of the file.
[[nodiscard]] std::vector<streets::GroundShape> groundOf(const Extract& extract,
                                                         std::span<const geo::Feet> places,
                                                         NameTable& names);

}  // namespace tools::extract
