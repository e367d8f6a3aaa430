#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/district/import/map/kinds.h"
#include "tools/district/import/map/mapfile.h"
#include "tools/district/import/source/csv.h"

namespace tools::district {

/// What a field of a kind gets in one record.
struct BoundCell {
    std::string_view text;  ///< until the next call
    bool isNull = true;
};

/// Which column of a source each field of a kind takes: by the map where it says so, otherwise by
/// the field's own name, the table's, or a synonym.
class Binding {
public:
    /// `header` is null for a source without one; `section` where there is no map. Raises
    /// base::RunTimeError where the map names a column that is not there.
    Binding(const FileKind& kind, const CsvRecord* header, const MapSection* section);

    /// Required fields that nothing is bound to.
    [[nodiscard]] std::vector<std::string> missing() const;
    /// Columns of the source that no field takes.
    [[nodiscard]] const std::vector<std::string>& unused() const { return unused_; }
    [[nodiscard]] bool has(std::string_view field) const;
    /// The field's name in the source, as its header has it: "Student_Number", "column 3".
    [[nodiscard]] std::string sourceName(std::string_view field) const;

    /// How many fields each record has; 0 for any number.
    [[nodiscard]] std::size_t width() const { return header_.size(); }
    /// Where the field stands; for cell().
    [[nodiscard]] int placeOf(std::string_view field) const;
    [[nodiscard]] BoundCell cell(int place, const CsvRecord& record);

private:
    struct Bound {
        std::string field;
        std::size_t column = 0;  ///< from 0
        FieldMap how;
    };

    void bindByMap(const MapSection& section);
    void changeByMap(const MapSection& section);
    void bindByName(const FileKind& kind);
    void bind(const std::string& field, std::string_view header);
    [[nodiscard]] std::string_view transformed(const Bound& bound, std::string_view text);

    const FileKind& kind_;
    std::vector<std::string> header_;
    std::vector<bool> taken_;
    std::vector<Bound> bound_;
    std::vector<std::string> unused_;
    std::string scratch_;
};

/// A first map for a source: each field with the column whose name is the nearest, and what is left
/// on either side as comments.
[[nodiscard]] std::string sketchMap(const std::string& source, const FileKind& kind,
                                    const CsvRecord& header);

/// The practical kind that most of the header's names belong to.
[[nodiscard]] const FileKind& likeliestKind(const CsvRecord& header);

}  // namespace tools::district
