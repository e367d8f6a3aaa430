#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/schema/schema.h"
#include "platform/base/value.h"

namespace tools::district {

/// A column that a file to be imported may have.
struct FileField {
    std::string name;                   ///< "last_name"
    std::vector<std::string> synonyms;  ///< as other systems call it, see plainName()
    bool isRequired = false;
};

/// A row of another table that a text must name.
struct Reference {
    std::string table;
    std::string column;                               ///< holds what the text says
    enum class As { Text, Row, Note } as = As::Text;  ///< what the cell gets: Row is its number
    /// Makes the cell's value of the row's note: the trip type of a run, the category of a trip
    /// type.
    base::Value (*ofNote)(std::string_view note) = nullptr;
    bool isCode = false;  ///< a code and little else: it may be made up where the user allows it
};

/// What a text must be beside fitting its column.
enum class TextRule { None, RunId, Capacity, NotNegative, Minutes };

/// What one column of a table gets.
struct CellSource {
    std::string column;
    std::string field = {};  ///< of the file; empty where it is one of the next two
    std::optional<base::Value> always = {};
    std::optional<std::size_t> rowOf = {};  ///< the number of that row (from 0) of the same line
    std::optional<Reference> reference = {};
    TextRule rule = TextRule::None;
};

/// A row that a line of the file makes in one table.
struct RowSource {
    data::DatabaseFile file = data::DatabaseFile::Routing;
    std::string table;
    std::vector<CellSource> key;
    std::vector<CellSource> values;
    std::vector<CellSource> onAdding = {};  ///< beside key and values, in a new row
    std::string onlyWith = {};              ///< no row where this field is missing or empty
    std::string listIn = {};                ///< a row for each of the words in this field
};

/// One kind of file: its columns and what its lines make. The first row owns the others: it comes
/// once a line, and rows of a new owner are new.
struct FileKind {
    std::string name;  ///< "students"
    std::vector<FileField> fields;
    std::vector<RowSource> rows;
    bool isTable = false;  ///< the table of that name as it stands

    [[nodiscard]] const FileField* find(std::string_view field) const;
};

/// The practical kinds, in the order in which they need one another.
[[nodiscard]] const std::vector<FileKind>& practicalKinds();

/// The kind that a name without folder and ".csv" belongs to, in any case: a practical one or a
/// table; null where there is none. It lives as long as the program.
[[nodiscard]] const FileKind* kindNamed(std::string_view name);

/// Small letters and digits alone: "Student_Number" is "studentnumber".
[[nodiscard]] std::string plainName(std::string_view name);

}  // namespace tools::district
