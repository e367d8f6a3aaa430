#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/district/import/map/kinds.h"
#include "tools/district/import/source/csv.h"

namespace tools::district {

/// Where one field comes from.
struct FieldMap {
    std::string column;                   ///< of the source, as its header has it
    std::size_t number = 0;               ///< of the column, from 1; 0 where it has a name
    std::optional<std::string> constant;  ///< the same in every row
    /// The part of the text in front of or behind the first such separator.
    enum class Part { Whole, Before, After } part = Part::Whole;
    std::string separator;
    double factor = 1;                          ///< from the source's unit to ours
    std::map<std::string, std::string> values;  ///< by the source's text in small letters
    std::optional<std::string> otherwise;       ///< for texts that `values` does not name
};

/// How the rows of one source are read as one kind.
struct MapSection {
    std::string source;  ///< "Export.csv", or the name of a table
    const FileKind* kind = nullptr;
    std::map<std::string, FieldMap> fields;  ///< by the kind's own name of the field
    bool hasHeader = true;
    CsvHints hints;
    std::int64_t line = 0;  ///< of the section in the map file
};

/// Reads a map file. Raises base::RunTimeError with the line and what is wrong there.
[[nodiscard]] std::vector<MapSection> readMap(std::string_view text);

}  // namespace tools::district
