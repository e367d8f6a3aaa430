#include "tools/district/deadhead/filltravel.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "platform/store/open/open.h"
#include "streets/district/districtstreets.h"
#include "tools/district/base/cases.h"
#include "tools/district/deadhead/computedtravel.h"
#include "tools/district/deadhead/neededways.h"
#include "tools/district/export/snapshot.h"
#include "tools/district/place/streetsof.h"

namespace tools::district {

namespace {

constexpr std::size_t RowsOfBatch = 2000;
constexpr double FeetPerMile = 5280;

/// The two ends of a way, whichever comes first.
using Pair = std::pair<std::int64_t, std::int64_t>;
Pair pairOf(const TravelWay& way) { return std::minmax({way.first, way.second}); }

TravelRows readStored(store::Database& cross) {
    TravelRows rows;
    const auto stored = cross.prepare(
        "SELECT ENDPOINT_INT_STOPID, DEST_INT_STOPID, TRAVEL_MINUTES, TRAVEL_MILES FROM"
        " DEADHEAD_CROSS ORDER BY ROWID");
    while (stored->step()) {
        rows.try_emplace(
            {stored->integer(0), stored->integer(1)},
            StoredTravel{static_cast<float>(stored->real(2)), static_cast<float>(stored->real(3))});
    }
    return rows;
}

/// The sum over the directions of a pair that are needed.
struct Sum {
    double seconds = 0;
    double feet = 0;
    int ways = 0;

    /// Whole seconds, and miles to two decimals, as the map gives them.
    [[nodiscard]] StoredTravel mean() const {
        constexpr double Hundredths = 100;
        return {
            static_cast<float>(std::round(seconds / ways) / 60),
            static_cast<float>(std::round(feet / ways / FeetPerMile * Hundredths) / Hundredths)};
    }
};

class Filler {
public:
    Filler(const TravelOptions& options, Progress& progress)
        : options_(options), progress_(progress), district_(options.folders) {
        auto& routing = district_.database(data::DatabaseFile::Routing);
        progress_.begin("Looking at the routes", 0);
        needed_ = neededWays(routing, options.all);
        streets_ = openStreetsOf(options.folders, routing);
        stored_ = readStored(district_.database(data::DatabaseFile::DeadCross));
        computed_ = readComputed(options_.folders.computedTravel().string());
        report_.routes = needed_.routes;
        report_.open = streets_->remarks();
    }

    TravelReport fill() {
        compute(missingWays());
        write();
        return std::move(report_);
    }

private:
    /// How a pair stands in the table, where it does.
    [[nodiscard]] TravelRows::const_iterator storedAs(const Pair& pair) const {
        const auto found = stored_.find(pair);
        return found != stored_.end() ? found : stored_.find({pair.second, pair.first});
    }

    [[nodiscard]] bool isRenewed(TravelRows::const_iterator row) const {
        const auto listed = computed_.find(row->first);
        return options_.again && listed != computed_.end() && listed->second == row->second;
    }

    std::vector<TravelWay> missingWays() {
        std::vector<TravelWay> missing;
        std::set<Pair> known;
        for (const TravelWay& way : needed_.ways) {
            const auto row = storedAs(pairOf(way));
            if (row == stored_.end() || isRenewed(row)) {
                missing.push_back(way);
            } else {
                known.insert(pairOf(way));
            }
        }
        report_.known = known.size();
        return missing;
    }

    const std::vector<streets::Halt>& haltsOf(std::int64_t stop) {
        const auto [at, isNew] = halts_.try_emplace(stop);
        const TravelEnd& end = needed_.ends.at(stop);
        if (isNew && end.placed) {
            at->second = streets_->network().haltsAt(end.at, streets::DoorSide::Passing);
        }
        if (isNew && at->second.empty()) {
            report_.open.push_back(fmt::format(
                "{}: {}.", nameOf(stop),
                end.placed ? "no street that a bus drives is near" : "it has no place on the map"));
        }
        return at->second;
    }

    [[nodiscard]] std::string nameOf(std::int64_t stop) const {
        const std::string& name = needed_.ends.at(stop).stop;
        return name.empty() ? fmt::format("Stop {}", stop) : name;
    }

    void compute(const std::vector<TravelWay>& ways) {
        progress_.begin("Working out ways", static_cast<std::int64_t>(ways.size()));
        for (auto first = ways.begin(); first != ways.end();) {
            const auto last = std::find_if(
                first, ways.end(), [&](const TravelWay& way) { return way.first != first->first; });
            computeFrom(first->first, std::vector(first, last));
            first = last;
            progress_.reach(first - ways.begin(), static_cast<std::int64_t>(ways.size()));
        }
    }

    void computeFrom(std::int64_t from, const std::vector<TravelWay>& ways) {
        const auto& starts = haltsOf(from);
        std::vector<streets::Halt> goals;
        for (const TravelWay& way : ways) {
            const auto& halts = haltsOf(way.second);
            goals.insert(goals.end(), halts.begin(), halts.end());
        }
        if (starts.empty() || goals.empty()) {
            return;
        }
        const auto travels = streets_->network().matrix(starts, goals);
        std::size_t goal = 0;
        for (const TravelWay& way : ways) {
            const std::size_t many = haltsOf(way.second).size();
            take(way, best(travels, goals.size(), {goal, goal + many}), many > 0);
            goal += many;
        }
    }

    /// From any halt of the one stop to any of the other one's.
    static std::optional<streets::Travel> best(const std::vector<streets::Travel>& travels,
                                               std::size_t goals,
                                               std::pair<std::size_t, std::size_t> range) {
        std::optional<streets::Travel> least;
        const auto cost = [](const streets::Travel& one) { return one.seconds + one.reluctance; };
        for (std::size_t row = 0; row < travels.size(); row += goals) {
            for (std::size_t i = row + range.first; i < row + range.second; ++i) {
                if (std::isfinite(travels[i].seconds) &&
                    (!least || cost(travels[i]) < cost(*least))) {
                    least = travels[i];
                }
            }
        }
        return least;
    }

    void take(const TravelWay& way, const std::optional<streets::Travel>& travel, bool hasHalts) {
        if (travel) {
            Sum& sum = sums_[pairOf(way)];
            sum.seconds += travel->seconds;
            sum.feet += travel->feet;
            ++sum.ways;
        } else if (hasHalts) {
            report_.open.push_back(
                fmt::format("No way leads from {} to {}.", nameOf(way.first), nameOf(way.second)));
        }
    }

    /// The list goes first: what it names and the table lacks does no harm.
    void write() {
        if (sums_.empty()) {
            return;
        }
        TravelRows rows;
        for (const auto& [pair, sum] : sums_) {
            const auto row = storedAs(pair);
            rows[row == stored_.end() ? pair : row->first] = sum.mean();
        }
        TravelRows listed = rows;
        listed.merge(TravelRows(computed_));
        writeComputed(options_.folders.computedTravel().string(), listed);
        const auto cross = store::open(database(data::DatabaseFile::DeadCross));
        std::vector<TravelRows::value_type> batch;
        progress_.begin("Writing", static_cast<std::int64_t>(rows.size()));
        for (const auto& row : rows) {
            batch.push_back(row);
            if (batch.size() == RowsOfBatch) {
                writeBatch(*cross, batch);
                progress_.reach(static_cast<std::int64_t>(report_.added + report_.renewed),
                                static_cast<std::int64_t>(rows.size()));
            }
        }
        writeBatch(*cross, batch);
        store::open(database(data::DatabaseFile::Routing))
            ->execute("UPDATE SYSTEM SET NEEDDEADHEADBUILD = TRUE");
    }

    [[nodiscard]] std::string database(data::DatabaseFile file) const {
        return options_.folders.database(file).string();
    }

    /// A row that somebody has changed or added meanwhile stays.
    void writeBatch(store::Database& cross, std::vector<TravelRows::value_type>& batch) {
        cross.begin();
        const auto update = cross.prepare(
            "UPDATE DEADHEAD_CROSS SET TRAVEL_MINUTES = ?, TRAVEL_MILES = ? WHERE"
            " ENDPOINT_INT_STOPID = ? AND DEST_INT_STOPID = ? AND TRAVEL_MINUTES = ? AND"
            " TRAVEL_MILES = ?");
        const auto insert = cross.prepare(
            "INSERT INTO DEADHEAD_CROSS (TRAVEL_MINUTES, TRAVEL_MILES, ENDPOINT_INT_STOPID,"
            " DEST_INT_STOPID) SELECT ?, ?, ?, ? WHERE NOT EXISTS (SELECT 1 FROM DEADHEAD_CROSS"
            " WHERE (ENDPOINT_INT_STOPID = ? AND DEST_INT_STOPID = ?) OR"
            " (DEST_INT_STOPID = ? AND ENDPOINT_INT_STOPID = ?))");
        std::size_t added = 0;
        std::size_t renewed = 0;
        for (const auto& [ends, travel] : batch) {
            const auto row = stored_.find(ends);
            const bool isNew = row == stored_.end();
            store::Statement& statement = isNew ? *insert : *update;
            statement.reset();
            statement.bind(0, base::Value(static_cast<double>(travel.minutes)));
            statement.bind(1, base::Value(static_cast<double>(travel.miles)));
            const auto bindEnds = [&statement, &ends = ends](int place) {
                statement.bind(place, base::Value(ends.first));
                statement.bind(place + 1, base::Value(ends.second));
            };
            bindEnds(2);
            if (isNew) {
                bindEnds(4);
                bindEnds(6);
            } else {
                statement.bind(4, base::Value(static_cast<double>(row->second.minutes)));
                statement.bind(5, base::Value(static_cast<double>(row->second.miles)));
            }
            statement.step();
            (isNew ? added : renewed) += cross.changedRows() > 0 ? 1 : 0;
        }
        cross.commit();
        report_.added += added;
        report_.renewed += renewed;
        batch.clear();
    }

    const TravelOptions& options_;
    Progress& progress_;
    DistrictSnapshot district_;
    NeededWays needed_;
    std::shared_ptr<const streets::DistrictStreets> streets_;
    TravelRows stored_;
    TravelRows computed_;
    std::map<std::int64_t, std::vector<streets::Halt>> halts_;
    std::map<Pair, Sum> sums_;
    TravelReport report_;
};

}  // namespace

std::string TravelReport::text() const {
    std::string text = fmt::format(
        "Added the travel between {} pairs of stops for {} routes; {} pairs stood there and stay",
        added, routes, known);
    text += renewed > 0 ? fmt::format(", {} were renewed.\n", renewed) : ".\n";
    return text + firstCases(open);
}

TravelReport fillTravel(const TravelOptions& options, Progress& progress) {
    return Filler(options, progress).fill();
}

}  // namespace tools::district
