#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <variant>

#include <sqlite3.h>

namespace bench {

/// One connection through SQLite's own C interface, for statements that a measured operation is
/// compared with; each is prepared once.
class RawDatabase {
public:
    using Parameter = std::variant<std::int64_t, double, std::string>;
    using Row = std::function<void(sqlite3_stmt*)>;

    explicit RawDatabase(const std::string& path);
    ~RawDatabase();
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    /// Runs a statement and calls `row` for each row it returns. `sql` is a literal.
    void run(const char* sql, std::initializer_list<Parameter> parameters = {},
             const Row& row = nullptr);

private:
    sqlite3* database_ = nullptr;
    std::map<const char*, sqlite3_stmt*> statements_;
};

}  // namespace bench
