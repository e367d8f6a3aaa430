#pragma once

#include <string>
#include <string_view>

#include "streets/base/streetmap.h"

namespace streets {

/// A street map as the bytes of a file, places to a sixteenth of a foot. The points of each piece
/// stand behind those of the piece before it, the first and the last at its nodes. Raises
/// base::RunTimeError for a map that does not hold together.
[[nodiscard]] std::string bytesOf(const StreetMap& map);

/// The map that such bytes hold, and holds together: whoever reads it need check no index. Raises
/// base::RunTimeError, with the reason as the end of a sentence ("is cut off"), for bytes that are
/// cut, damaged, of a newer program or no street file at all, before memory is taken for them.
[[nodiscard]] StreetMap streetMapIn(std::string_view bytes);

/// Bytes of a map with the heading that makes a street file of them.
[[nodiscard]] std::string framed(std::string_view body);

/// Writes the file beside its place and gives it its name when it is whole. Raises
/// base::RunTimeError.
void writeStreetFile(const std::string& path, const StreetMap& map);

/// Raises base::RunTimeError for a file that is not there or that streetMapIn refuses.
[[nodiscard]] StreetMap readStreetFile(const std::string& path);

}  // namespace streets
