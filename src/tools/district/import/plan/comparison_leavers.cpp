#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "tools/district/import/plan/comparison.h"

// What a source takes out of a district by not naming it.

namespace tools::district {

namespace {

using data::DatabaseFile;
using State = KeyMap::State;

}  // namespace

/// A source that lists a run's stops lists all of them: the others leave the run, and keep their
/// record without one.
void Comparison::takeStopsOff(StoredTable& stopTrips) {
    const std::vector<const store::Column*> columns = {stopTrips.table().find("RUN"),
                                                       stopTrips.table().find("RUNSEQ")};
    const std::vector<base::Value> nowhere = {" ", 0};
    TableOutcome& outcome = outcomeOf(stopTrips.table().name);
    for (KeyMap::Number i = 0; i < stopTrips.rows().size(); ++i) {
        const KeyMap::Entry& entry = stopTrips.rows()[i];
        const std::string run(base::trim(stopTrips.note(entry.note)));
        if (entry.line != 0 || entry.state != State::Stored || run.empty() ||
            !runsMet_.contains(base::lowered(run))) {
            continue;
        }
        if (guard_.isEdited(run) && !rules_.overwriteEdited) {
            ++outcome.left;
            continue;
        }
        ++outcome.changed;
        outcome.tell("off run " + run + ": stop trip " + std::to_string(entry.row));
        touched_.insert(run);
        otherStops_.insert(run);
        if (sink_ != nullptr) {
            sink_->change(stopTrips, entry.row, columns, nowhere);
        }
    }
}

/// Students whom the source does not name, and those of another school where it says nothing of
/// their stops, ride no longer than the day given.
void Comparison::endRides(StoredTable& students) {
    std::set<std::int64_t> ending = moved_;
    if (brings("STU_ADDR_TRIPTYPE", "INT_STOPID")) {
        ending.clear();
    }
    for (KeyMap::Number i = 0; i < students.rows().size(); ++i) {
        const KeyMap::Entry& entry = students.rows()[i];
        if (entry.line == 0 && entry.state == State::Stored) {
            ending.insert(entry.row);
        }
    }
    StoredTable& rides = of("STU_ADDR_TRIPTYPE", {"INT_STUID", "TRIPTYPE"});
    store::Database& routing = *district_.at(DatabaseFile::Routing);
    const auto rows =
        routing.prepare(fmt::format("SELECT {}, INT_STUID, ENDDT FROM STU_ADDR_TRIPTYPE",
                                    routing.catalog().find("STU_ADDR_TRIPTYPE")->rowKey));
    std::vector<std::int64_t> ended;
    const std::string last = rules_.rollOver->iso();
    while (rows->step()) {
        const bool isOver = rows->type(2) == store::CellType::Text && rows->text(2) <= last;
        if (!isOver && ending.contains(rows->integer(1))) {
            ended.push_back(rows->integer(0));
        }
    }
    rows->reset();
    TableOutcome& outcome = outcomeOf("STU_ADDR_TRIPTYPE");
    outcome.changed += static_cast<std::int64_t>(ended.size());
    outcome.tell(fmt::format("{} rides end on {}", ended.size(), rules_.rollOver->text()));
    const std::vector<const store::Column*> column = {rides.table().find("ENDDT")};
    const std::vector<base::Value> day = {*rules_.rollOver};
    for (const std::int64_t row : ended) {
        if (sink_ != nullptr) {
            sink_->change(rides, row, column, day);
        }
    }
}

void Comparison::removeUnmet(StoredTable& table) {
    TableOutcome& outcome = outcomeOf(table.table().name);
    for (KeyMap::Number i = 0; i < table.rows().size(); ++i) {
        const KeyMap::Entry& entry = table.rows()[i];
        if (entry.line != 0 || entry.state != State::Stored) {
            continue;
        }
        std::string key(table.rows().keyOf(i));
        std::ranges::replace(key, '\x1F', ' ');
        key = base::trim(key);
        if (table.table().name == "RUN" && guard_.isEdited(key) && !rules_.overwriteEdited) {
            ++outcome.left;
            outcome_.editedRuns.push_back(key);
            continue;
        }
        ++outcome.removed;
        outcome.tell("removed: " + key);
        if (sink_ != nullptr) {
            sink_->remove(table, entry.row);
        }
    }
}

}  // namespace tools::district
