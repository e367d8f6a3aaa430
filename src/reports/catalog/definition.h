#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ado/recordset.h"
#include "reports/base/report.h"
#include "reports/catalog/worktables.h"

namespace reports {

/// What becomes of a list's row before it is shown: cells that no field of its own says.
using RowChange = std::function<void(ado::Recordset& row, std::vector<base::Value>& cells)>;

/// One report: what it looks like, what fills its work tables and what is read from them.
struct Definition {
    Report report = {};
    bool ofOneRun = false;  ///< offered for a single run, too
    bool wholeDay = false;  ///< shows all runs of the routes that the runs are on

    /// The order of the runs: columns of RPT_RUN with commas between, behind those that a group or
    /// a page break asks for; what a planner chooses takes its place.
    std::string groupOrder = {};
    std::string runOrder = "RUN";
    /// What is put beside the runs, batch by batch.
    std::vector<void (*)(const Batch&)> fills = {};

    /// The question for a list's rows, without order; {0} is the session, {1} and {2} are the first
    /// and the last key of its runs. It gives every field that columns and groups name.
    std::string rows = {};
    /// The work table that gives a row each, by its name and by what `rows` calls it; none where
    /// rows are added up.
    std::string table = {};
    std::string alias = {};
    /// Of the rows: keys stand in the order of the runs and of what belongs to them.
    std::string order = {};
    bool sortsRows = false;           ///< whether a planner's fields may come before that
    std::string sortedBy = {};        ///< and what keeps the groups together then: "N.RUNID"
    std::string remark = {};          ///< the field of the text below a row
    std::string counts = "run";       ///< what a row is
    std::string all = "All";          ///< what the last line adds up: "All schools"
    std::string nothing = "No run.";  ///< what stands there without a row
    /// The field that a ratio divides where its column holds more than that.
    std::string divided = {};
    /// Made for each reading.
    std::function<RowChange()> change = {};
};

// Columns of a definition, one trait after the other.
[[nodiscard]] Column strong(Column column);
[[nodiscard]] Column growing(Column column);
[[nodiscard]] Column condensed(Column column);
[[nodiscard]] Column added(Column column);
[[nodiscard]] Column ratio(Column column, std::string of, std::string to);

/// All reports, in the order in which they are offered.
[[nodiscard]] const std::vector<Definition>& definitions();

// What each file of the catalogue has.
[[nodiscard]] std::vector<Definition> runLists();
[[nodiscard]] std::vector<Definition> stopLists();
[[nodiscard]] std::vector<Definition> driverSheets();
[[nodiscard]] std::vector<Definition> directionLists();
[[nodiscard]] std::vector<Definition> warningLists();
[[nodiscard]] std::vector<Definition> summaryLists();
[[nodiscard]] std::vector<Definition> changeLists();

}  // namespace reports
