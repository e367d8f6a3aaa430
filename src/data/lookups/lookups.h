#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/table/texttable.h"

namespace data {

/// The database a look-up reads: routing.mdb or trip.mdb.
enum class Source { Routing, Trip };

/// One column of a look-up list. Several fields stand side by side, ", " between them.
struct LookupColumn {
    std::string_view caption;
    int widthTwips = 0;
    std::vector<std::string_view> fields;
    table::CellKind kind = table::CellKind::Text;
};

/// What one `Load_…` procedure shows, where it comes from and which control it fills.
struct ListLookup {
    std::string_view procedure;
    std::string_view control;
    Source source;
    std::string_view sql;
    std::vector<LookupColumn> columns;
    /// What stands between key and text where a plain combo shows both as one: "12:Smith, Ann".
    std::string_view plainSeparator = {};
};

/// How a key is put behind the text of a key look-up.
enum class KeyKind { None, Text, Number };

/// What one `Get…` function asks and which fields it answers with, ", " or `separator` between.
struct KeyLookup {
    std::string_view function;
    Source source;
    KeyKind key;
    std::string_view sql;
    std::vector<std::string_view> fields;
    std::string_view separator = ", ";
};

/// The entry of a procedure; there must be one.
[[nodiscard]] const ListLookup& listLookup(std::string_view procedure);
[[nodiscard]] const KeyLookup& keyLookup(std::string_view function);
[[nodiscard]] const std::vector<ListLookup>& listLookups();
[[nodiscard]] const std::vector<KeyLookup>& keyLookups();

/// The question of a key look-up: text keys trimmed and quoted, numbers as they are.
[[nodiscard]] std::string keySql(const KeyLookup& lookup, std::string_view key);

}  // namespace data
