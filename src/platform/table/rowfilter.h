#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/table/texttable.h"

namespace table {

/// Finds the rows of a table in which all words stand, in any order and any of the columns looked
/// at, as these are shown and without regard to case. What was read of a table is kept for the next
/// words.
class RowFilter {
public:
    /// From now on looks at these columns of a table, or of the same one filled anew.
    void lookAt(std::vector<std::size_t> columns);

    /// The words, apart by blanks; every row holds none.
    void setWords(std::string_view typed);
    [[nodiscard]] bool isEmpty() const { return words_.empty(); }

    /// Reads so many more rows, so that the first words find them read; true while there are more.
    bool readOn(const TextTable& table, std::size_t rows);
    /// The rows of the table from `first` on that hold all words, rising. Rows may have been added
    /// to it since lookAt(), but none changed.
    [[nodiscard]] std::vector<std::size_t> rows(const TextTable& table, std::size_t first = 0);

private:
    void addCell(std::string_view text);
    [[nodiscard]] bool holdsAll(std::string_view row) const;

    std::vector<std::string> words_;
    std::vector<std::size_t> columns_;
    std::string texts_;              ///< of all rows, folded, cells apart by line ends
    std::vector<std::size_t> ends_;  ///< where each row ends in it
};

}  // namespace table
