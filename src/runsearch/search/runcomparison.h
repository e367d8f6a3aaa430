#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "data/lists/listreader.h"
#include "platform/ado/connection.h"
#include "platform/table/texttable.h"

namespace runsearch {

/// Compares a list of runs with what its question finds by now, bit by bit, so that the form stays
/// alive. The list outlives it and stays as it is.
class RunComparison {
public:
    /// Asks. Raises jet::SqlError, store::StoreError.
    RunComparison(const table::TextTable& shown, bool withRouting, const std::string& question,
                  ado::Connection& connection);

    /// Compares the next rows, at most so many; false once there are none left.
    [[nodiscard]] bool goOn(std::size_t most);
    /// At the end: the ids of the runs of the list that are other ones now, or not found any more.
    [[nodiscard]] std::vector<std::string> changed() const;

private:
    void compare(const table::TextTable& now, std::size_t row);

    const table::TextTable& shown_;
    std::vector<data::ListColumn> columns_;
    data::ListReader reader_;
    std::unordered_map<std::string, std::size_t> rowOf_;
    std::vector<bool> isSame_;
};

}  // namespace runsearch
