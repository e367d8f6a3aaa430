#include "operations.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include <fmt/format.h>

#include "groupops/belltime/bellchange.h"
#include "groupops/deadhead/districtdeadhead.h"
#include "groupops/groupchange/runchange.h"
#include "groupops/merge/runmerge.h"
#include "platform/ado/recordset.h"
#include "platform/base/ports.h"
#include "tools/district/base/folders.h"

namespace killing {

namespace {

/// Nobody watches and nobody stops it.
class Unwatched : public base::ProgressPort {
public:
    void progress(double) override {}
    void status(const std::string&) override {}
    bool yield() override { return false; }
};

std::vector<std::string> allRuns(District& district) {
    ado::Recordset rows;
    rows.Open("SELECT RUN.RUN FROM RUN ORDER BY RUN.RUN", district.routing);
    std::vector<std::string> runs;
    for (; !rows.Eof(); rows.MoveNext()) {
        runs.push_back(rows["RUN"].asText());
    }
    return runs;
}

void changeGroup(District& district) {
    const auto runs = allRuns(district);
    const std::vector<groupops::RunChange> changes{{"Capacity", "Low"}, {"OverFill", 7}};
    Unwatched progress;
    groupops::changeRuns(district.routing, runs, changes, progress);
}

/// Every bell ten minutes later, every run as far from it as before.
void changeBells(District& district) {
    groupops::BellGroups groups;
    groupops::readBellGroups(
        district.routing, "SELECT RUN.* FROM RUN INNER JOIN SCHOOL ON RUN.SCHOOL = SCHOOL.SCHOOL",
        groups);
    groupops::BellChange change{groups, {}, {.fromEnd = true}};
    for (int group = 1; group <= groups.count(); ++group) {
        const auto bell = base::Date::parse(groups[group].bellTime);
        change.newBells.push_back(bell ? std::optional(bell->plusSeconds(600)) : std::nullopt);
    }
    Unwatched progress;
    groupops::changeBellTimes(district.routing, change, {progress, [](double) {}});
}

void calculateDeadHead(District& district, bool reset) {
    Unwatched progress;
    groupops::calculateAllRoutes({district.routing, district.cross}, reset, progress);
}

/// Every second run onto the end of the one before it.
void mergeNeighbours(District& district) {
    const auto runs = allRuns(district);
    Unwatched progress;
    for (std::size_t i = 1; i < runs.size(); i += 2) {
        groupops::mergeRuns(district.routing, {runs[i - 1], runs[i], "PLANNER"}, progress);
    }
}

using enum Operation::Unit;

constexpr Operation All[] = {
    {"group-change", changeGroup, Run},
    {"bell-change", changeBells, Run},
    {"dead-head", [](District& district) { calculateDeadHead(district, false); }, Route},
    {"dead-head-anew", [](District& district) { calculateDeadHead(district, true); }, Route,
     [](District& district) { groupops::resetDeadHead(district.routing); }},
    {"merge", mergeNeighbours, MovedStop},
};

}  // namespace

District::District(const std::string& folder) {
    const auto folders = tools::district::foldersOf(folder);
    routing.Open(folders.database(data::DatabaseFile::Routing).string());
    cross.Open(folders.database(data::DatabaseFile::DeadCross).string());
}

std::span<const Operation> operations() { return All; }

const Operation& operationOf(std::string_view name) {
    const auto* found = std::ranges::find(All, name, &Operation::name);
    if (found == std::end(All)) {
        throw std::invalid_argument(fmt::format("There is no operation {}.", name));
    }
    return *found;
}

}  // namespace killing
