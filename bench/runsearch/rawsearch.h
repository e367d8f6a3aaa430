#pragma once

#include <cstddef>
#include <string>

#include <sqlite3.h>

namespace bench {

/// The session's routing.mdb and trip.mdb, opened a second time through SQLite's own C interface.
class RawDistrict {
public:
    RawDistrict(const std::string& routing, const std::string& trip);
    ~RawDistrict();
    RawDistrict(const RawDistrict&) = delete;
    RawDistrict& operator=(const RawDistrict&) = delete;

    /// The first column of the first row.
    [[nodiscard]] std::string value(const std::string& sql);

    /// Which columns are read: all that the form's query selects, or those that its list shows.
    enum class Columns { Queried, Shown };

    /// Reads the runs that meet a condition by a statement written for SQLite; touches every cell
    /// and returns the number of rows.
    std::size_t readRuns(Columns columns, const std::string& condition);

private:
    sqlite3_stmt* prepare(const std::string& sql);

    sqlite3* database_ = nullptr;
};

}  // namespace bench
