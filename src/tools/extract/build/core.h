#pragma once

#include <cstddef>

#include "streets/base/streetmap.h"

namespace tools::extract {

/// Sets of each piece whether it belongs to the largest part of the streets in which a bus gets
/// from each piece, driven one way, to each other one, by the rules for turns, turning round in
/// dead ends only. Returns how many pieces that a bus may drive do not.
std::size_t markReachable(streets::StreetMap& map);

}  // namespace tools::extract
