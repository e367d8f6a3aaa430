#pragma once

#include <cstddef>
#include <string>

#include <libpq-fe.h>

namespace bench {

/// The routing file of a district on a server, read through the server's own library.
class RawServer {
public:
    /// `routing` as the program's settings say it: "postgresql://…/routing.mdb".
    explicit RawServer(const std::string& routing);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    /// Reads all that a search of all runs selects, every cell; the number of rows.
    std::size_t readRuns();
    /// Reads the row of a run by a prepared statement; the number of cells.
    std::size_t readRun(const std::string& run);

private:
    PGconn* connection_;
};

}  // namespace bench
