#include "snapshots.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/base/text.h"

namespace killing {

namespace {

std::string cellText(const ado::Field& field) {
    return field.isNull() ? std::string("Null") : field.asText();
}

std::string rowText(ado::Recordset& row) {
    std::string text;
    for (int i = 0; i < row.fieldCount(); ++i) {
        text += cellText(row.Fields(i)) + "|";
    }
    return text + "\n";
}

std::string placeOf(std::string_view run, std::string_view sequence) {
    return fmt::format("stop {} of run {}", sequence, base::uppered(base::trim(run)));
}

/// The place that a log row tells a merged stop to have now.
std::string placeInLog(ado::Recordset& row) {
    const std::string text = cellText(row["Description"]);
    const std::string_view before = "with a new sequence of: ";
    const auto at = text.rfind(before);
    return at == std::string::npos
               ? std::string("RUNLOG")
               : placeOf(cellText(row["RunID"]), text.substr(at + before.size()));
}

std::string unitOf(Operation::Unit unit, const std::string& table, ado::Recordset& row,
                   const Places& places) {
    const auto is = [&](std::string_view name) { return base::equalsNoCase(table, name); };
    switch (unit) {
        case Operation::Unit::Run:
            return is("RUN") || is("STOP_TRIPTYPE") ? "run " + base::uppered(cellText(row["RUN"]))
                                                    : table;
        case Operation::Unit::Route:
            return is("RUN") || is("ROUTE") ? "route " + cellText(row["INT_ROUTEID"]) : table;
        case Operation::Unit::MovedStop:
            return is("STOP_TRIPTYPE") ? places.at(cellText(row["ID"]))
                                       : (is("RUNLOG") ? placeInLog(row) : table);
    }
    return table;
}

const std::string& contentOf(const Snapshot& snapshot, const std::string& unit) {
    static const std::string nothing;
    const auto found = snapshot.find(unit);
    return found == snapshot.end() ? nothing : found->second;
}

}  // namespace

Places placesIn(District& district) {
    ado::Recordset rows;
    rows.Open("SELECT STOP_TRIPTYPE.ID, STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ FROM STOP_TRIPTYPE",
              district.routing);
    Places places;
    for (; !rows.Eof(); rows.MoveNext()) {
        places[cellText(rows["ID"])] = placeOf(cellText(rows["RUN"]), cellText(rows["RUNSEQ"]));
    }
    return places;
}

Snapshot snapshotOf(District& district, Operation::Unit unit, const Places& places) {
    Snapshot snapshot;
    for (const store::Table& table : district.routing.catalog().tables()) {
        ado::Recordset rows;
        rows.Open(fmt::format("SELECT {0}.* FROM {0}", table.name), district.routing);
        for (; !rows.Eof(); rows.MoveNext()) {
            snapshot[unitOf(unit, table.name, rows, places)] += table.name + ": " + rowText(rows);
        }
    }
    return snapshot;
}

Reached compare(const Snapshot& cutOff, const std::vector<Snapshot>& states) {
    Snapshot all = cutOff;
    all.insert(states.back().begin(), states.back().end());
    all.insert(states.front().begin(), states.front().end());
    Reached reached;
    std::vector<std::string> notBegun;
    bool anyBegun = false;
    for (const auto& entry : all) {
        const std::string& unit = entry.first;
        const std::string& content = contentOf(cutOff, unit);
        const std::string& first = contentOf(states.front(), unit);
        const std::string& last = contentOf(states.back(), unit);
        reached.units += first != last ? 1U : 0U;
        reached.changed += first != last && content == last ? 1U : 0U;
        anyBegun = anyBegun || content != first;
        if (std::ranges::none_of(
                states, [&](const Snapshot& state) { return contentOf(state, unit) == content; })) {
            reached.torn.push_back(unit);
        } else if (content == first && content != contentOf(states[1], unit) && content != last) {
            notBegun.push_back(unit);
        }
    }
    if (states.size() > 2 && anyBegun) {
        reached.torn.insert(reached.torn.end(), notBegun.begin(), notBegun.end());
    }
    return reached;
}

}  // namespace killing
