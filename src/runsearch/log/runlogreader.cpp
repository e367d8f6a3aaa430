#include "runsearch/log/runlogreader.h"

#include <algorithm>
#include <utility>

#include "data/lists/cells.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

using table::CellKind;

/// How many keys are looked at in one part of a count.
constexpr std::int64_t CountedAtOnce = 100'000;

}  // namespace

RunLogReader::RunLogReader(ado::Connection& routing, RunLogFilters filters)
    : routing_(routing), filters_(std::move(filters)) {
    rows_.Open(runLogQuery(filters_), routing_);
    for (const auto* name : {"RunID", "StopID", "LogDate", "Description", "TripType"}) {
        fields_.push_back(&rows_.Fields(name));
    }
    id_ = &rows_.Fields("ID");
    if (rows_.Eof()) {
        rows_.Close();
    }
}

table::TextTable RunLogReader::emptyTable() {
    table::TextTable table;
    table.columns = {{"Run ID", 1100},
                     {"Stop ID", 1100},
                     {"Log Date", 2300, CellKind::DateTime},
                     {"Description", 10400},
                     {"Trip Type", 1100}};
    return table;
}

void RunLogReader::read(std::size_t entries, table::TextTable& into) {
    for (; entries > 0 && !atEnd(); --entries) {
        const auto row = into.addRow();
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            data::setCell(into, row, i, *fields_[i]);
        }
        ids_.push_back(id_->asInteger());
        rows_.MoveNext();
        if (rows_.Eof()) {
            rows_.Close();
        }
    }
}

std::optional<std::int64_t> RunLogReader::total() const {
    if (atEnd()) {
        return static_cast<std::int64_t>(ids_.size());
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
