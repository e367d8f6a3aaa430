#include "runsearch/log/runlogreader.h"

#include <algorithm>
#include <utility>

#include "platform/ado/recordset.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

constexpr data::ListColumn Columns[]{
    {"Run ID", "RunID", 1100},
    {"Stop ID", "StopID", 1100},
    {"Log Date", "LogDate", 2300, table::CellKind::DateTime},
    {"Description", "Description", 10400},
    {"Trip Type", "TripType", 1100},
    {"User", "User", 1100},
    data::hidden("ID"),
};

/// How many keys are looked at in one part of a count.
constexpr std::int64_t CountedAtOnce = 100'000;

}  // namespace

RunLogReader::RunLogReader(ado::Connection& routing, RunLogFilters filters)
    : routing_(routing),
      filters_(std::move(filters)),
      entries_(Columns, runLogQuery(filters_), routing) {}

table::TextTable RunLogReader::emptyTable() { return data::emptyTable(Columns); }

void RunLogReader::read(std::size_t entries, table::TextTable& into) {
    const std::size_t before = into.rowCount();
    entries_.read(into, entries);
    read_ += static_cast<std::int64_t>(into.rowCount() - before);
}

std::optional<std::int64_t> RunLogReader::total() const {
    if (atEnd()) {
        return read_;
    }
    return isCounted_ ? std::optional(counted_) : std::nullopt;
}

// An index tells how many entries a run or a range of days has. The activity stands in the rows
// alone, which are counted in parts.
void RunLogReader::countOn() {
    if (total()) {
        return;
    }
    if (base::trim(filters_.activityCode).empty()) {
        counted_ = number(runLogCountQuery(filters_), "TOTAL");
        isCounted_ = true;
        return;
    }
    if (!toCount_) {
        toCount_ = {number("Select Min(RUNLOG.ID) AS FIRSTID FROM RUNLOG", "FIRSTID"),
                    number("Select Max(RUNLOG.ID) AS LASTID FROM RUNLOG", "LASTID") + 1};
    }
    const auto end = std::min(toCount_->from + CountedAtOnce, toCount_->end);
    counted_ += number(runLogCountQuery(filters_, KeyRange{toCount_->from, end}), "TOTAL");
    toCount_->from = end;
    isCounted_ = toCount_->from == toCount_->end;
}

std::int64_t RunLogReader::number(const std::string& sql, std::string_view name) {
    ado::Recordset row;
    row.Open(sql, routing_);
    return row.Fields(name).asInteger();
}

}  // namespace runsearch
