#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/base/notcopied.h"

/// Reads the tables of an Access file (97 to 2003, and later ones). A damaged file may hang or end
/// the process that reads it, so that only vireo-read-access does, within limits.
namespace tools::access {

/// Why a file or table cannot be read, in words for an administrator.
struct Unreadable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Entry {
    enum class Kind { Table, LinkedTable, Query };
    Kind kind = Kind::Table;
    std::string name;
    std::string linkedTo;   ///< the file that holds a linked table, where it is known
    std::int64_t rows = 0;  ///< of a table, as the file counts them
};

struct Column {
    std::string name;
    std::string type;     ///< "text", "number", "date", …
    std::string refused;  ///< why its cells are not read; empty where they are
};

/// A cell as text; nothing is Null.
using Cell = std::optional<std::string>;

class AccessFile : private base::NotCopied {
public:
    /// `codePage` is that of the texts of a 97 file; the file itself often names a wrong one.
    /// Raises Unreadable: no Access file, damaged, cut short, encrypted.
    AccessFile(const std::string& path, std::string codePage);
    ~AccessFile();

    /// The tables and queries that somebody made, as the file orders them.
    [[nodiscard]] std::vector<Entry> entries() const;

    /// Gives the columns and then each row, with a cell for every column that is not refused.
    /// Raises Unreadable: there is no such table (by name without case), it is linked or a query,
    /// and where fewer rows were found than the file counts.
    void read(const std::string& table,
              const std::function<void(const std::vector<Column>&)>& columns,
              const std::function<void(const std::vector<Cell>&)>& row) const;

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
    std::string codePage_;
};

}  // namespace tools::access
