#include "runsearch/log/runlogreader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "data/lists/listreader.h"
#include "platform/base/error.h"
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
/// So many of the newest entries tell which index leads to a filter's entries sooner: that of the
/// times where one in `Rarest` of them is wanted. Sorting the entries of a run costs more then.
constexpr std::int64_t Sample = 1'000;
constexpr std::int64_t Rarest = 20;

}  // namespace

RunLogReader::RunLogReader(ado::Connection& routing, RunLogFilters filters)
    : routing_(routing), filters_(std::move(filters)) {}

table::TextTable RunLogReader::emptyTable() { return data::emptyTable(Columns); }

KeyRange RunLogReader::allKeys() {
    return {number("Select Min(RUNLOG.ID) AS FIRSTID FROM RUNLOG", "FIRSTID"),
            number("Select Max(RUNLOG.ID) AS LASTID FROM RUNLOG", "LASTID") + 1};
}

RunLogWay RunLogReader::bestWay() {
    if (base::trim(filters_.runId).empty()) {
        return RunLogWay::ByTime;
    }
    const KeyRange all = allKeys();
    const KeyRange newest{std::max(all.from, all.end - Sample), all.end};
    const std::int64_t wanted = number(runLogCountQuery(filters_, newest), "TOTAL");
    return wanted * Rarest >= newest.end - newest.from ? RunLogWay::ByTime : RunLogWay::ByRun;
}

void RunLogReader::read(std::size_t entries, table::TextTable& into) {
    if (!way_) {
        way_ = bestWay();
    }
    const std::size_t before = into.rowCount();
    while (!atEnd_ && into.rowCount() < before + entries) {
        readStretch(entries, before + entries - into.rowCount(), into);
    }
    read_ += static_cast<std::int64_t>(into.rowCount() - before);
}

/// Asks for `entries`, always as many, so that one translation serves; takes `most` of them.
void RunLogReader::readStretch(std::size_t entries, std::size_t most, table::TextTable& into) {
    ado::Recordset rows(runLogPageQuery(filters_, *way_, place_, entries), routing_);
    const data::ListFields fields(Columns, rows);
    const ado::Field& time = rows.Fields("LOGDATE");
    const ado::Field& key = rows.Fields("ID");
    std::size_t taken = 0;
    for (; taken < most && !rows.Eof(); rows.MoveNext()) {
        fields.addRow(into);
        if (++taken == most) {
            return remember(time, key);
        }
    }
    leaveStretch();
}

// A text that is no time sorts where no question finds it again.
void RunLogReader::remember(const ado::Field& time, const ado::Field& key) {
    place_.key = key.asInteger();
    if (time.isNull()) {
        place_.stretch = RunLogPlace::Stretch::WithoutTime;
        return;
    }
    const auto read = base::Date::fromIso(time.textView());
    if (!read) {
        throw base::RunTimeError(
            base::errors::TypeMismatch,
            fmt::format(
                "The log's entry number {} has the time \"{}\", which is none. What is older "
                "cannot be listed; \"vireo-district check\" names all such entries.",
                place_.key, time.textView()));
    }
    place_.stretch = RunLogPlace::Stretch::SameTime;
    place_.time = *read;
}

void RunLogReader::leaveStretch() {
    using Stretch = RunLogPlace::Stretch;
    if (place_.stretch == Stretch::SameTime) {
        place_.stretch = Stretch::Earlier;
    } else if (place_.stretch == Stretch::Earlier) {
        place_.stretch = Stretch::WithoutTime;
        place_.key = std::numeric_limits<std::int64_t>::max();
    } else {
        atEnd_ = true;
    }
}

std::optional<std::int64_t> RunLogReader::total() const {
    if (atEnd()) {
        return read_;
    }
    return isCounted_ ? std::optional(std::max(counted_, read_)) : std::nullopt;
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
        toCount_ = allKeys();
    }
    const auto end = std::min(toCount_->from + CountedAtOnce, toCount_->end);
    counted_ += number(runLogCountQuery(filters_, KeyRange{toCount_->from, end}), "TOTAL");
    toCount_->from = end;
    isCounted_ = toCount_->from == toCount_->end;
}

std::int64_t RunLogReader::number(const std::string& sql, std::string_view name) {
    ado::Recordset row(sql, routing_);
    const ado::Field& field = row.Fields(name);
    return field.isNull() ? 0 : field.asInteger();
}

}  // namespace runsearch
