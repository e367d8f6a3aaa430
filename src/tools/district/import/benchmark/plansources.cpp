#include "tools/district/import/benchmark/plansources.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <set>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "platform/base/value.h"
#include "platform/files/files.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/refuse.h"
#include "tools/district/make/plan.h"
#include "tools/district/make/sample.h"
#include "tools/district/travel/timetable.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t StopsOfATrip = 10;  ///< the column with the first one
constexpr std::int64_t Milliseconds = 1000;

/// A run of the instance, whichever file it comes from.
struct PlannedRun {
    std::string id;
    std::string route;
    std::vector<int> stops;
    int school = 0;
    base::Date arrival = {};
};

std::string contents(const fs::path& instance, const char* name) {
    const std::string path = files::find((instance / name).string());
    return fs::exists(path) ? files::read(path) : std::string();
}

/// Trips stand behind the node 0, a line each, up to the first line that is none.
std::vector<PlannedRun> tripsIn(const std::string& text, Plan& plan) {
    std::vector<PlannedRun> runs;
    std::istringstream lines(text.substr(std::min(text.find("\nNODE_COORD_SECTION"), text.size())));
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream cells(line);
        const std::vector<std::string> all{std::istream_iterator<std::string>(cells), {}};
        if (all.size() > 2 && all[0] == "0") {
            plan.depot = {std::stod(all[1]), std::stod(all[2])};
        }
        if (all.size() <= StopsOfATrip) {
            continue;
        }
        PlannedRun run{.id = "T" + all[0], .route = {}, .stops = {}, .school = std::stoi(all[7])};
        std::transform(all.begin() + StopsOfATrip, all.end(), std::back_inserter(run.stops),
                       [](const std::string& stop) { return std::stoi(stop); });
        run.arrival = base::Date{plan.school(run.school).latest};
        runs.push_back(std::move(run));
    }
    return runs;
}

std::vector<PlannedRun> runsIn(const Plan& plan) {
    std::vector<PlannedRun> runs;
    for (const PlanRun& one : plan.runs) {
        PlannedRun run{.id = sampleRunId(one),
                       .route = std::to_string(100 + one.bus),
                       .stops = {},
                       .school = one.school.stop};
        std::ranges::transform(one.pickups, std::back_inserter(run.stops), &PlanVisit::stop);
        run.arrival =
            base::Date{base::roundHalfEven(static_cast<double>(one.school.arrival) / Milliseconds)};
        runs.push_back(std::move(run));
    }
    return runs;
}

class SourceWriter {
public:
    SourceWriter(const Plan& plan, const std::vector<PlannedRun>& runs, fs::path folder)
        : plan_(plan), runs_(runs), folder_(std::move(folder)) {}

    void write() {
        places();
        runs();
        deadHead();
    }

private:
    void file(const char* name, const std::string& text) const {
        writePrivateFile(folder_ / name, text);
    }

    void places() {
        std::string schools = "school\n";
        std::string stops = "stop,type,description,school,x,y\n";
        stops +=
            fmt::format("{},GARAGE,Depot,,{},{}\n", plan_.depotId, plan_.depot.x, plan_.depot.y);
        for (const PlanSchool& school : plan_.schools) {
            schools += fmt::format("{}\n", school.id);
            stops += fmt::format("{0},SCHOOL,School {0},{0},{1},{2}\n", school.id, school.at.x,
                                 school.at.y);
        }
        for (const PlanStop& stop : plan_.stops) {
            stops += fmt::format("{},REGULAR,{},,{},{}\n", stop.id, cornerAt(stop.at), stop.at.x,
                                 stop.at.y);
        }
        file("schools.csv", schools);
        file("stops.csv", stops);
    }

    /// The stops with their minutes, timed from the arrival backwards by the program's own rule.
    [[nodiscard]] Run timed(const PlannedRun& planned, std::vector<Stop>& places) const {
        Run run;
        for (const int id : planned.stops) {
            places.push_back({.id = id, .at = plan_.stop(id).at});
        }
        places.push_back({.id = planned.school, .at = plan_.school(planned.school).at});
        for (const Stop& place : places) {
            const bool isSchool = &place == &places.back();
            const int students = isSchool ? 0 : plan_.stop(static_cast<int>(place.id)).students;
            run.visits.push_back(
                {.stop = &place,
                 .students = students,
                 .loadMinutes = isSchool ? schoolMinutes() : boardingMinutes(students)});
        }
        setLegs(run, false);
        setTimes(run, Anchor::End, planned.arrival);
        return run;
    }

    void runs() {
        std::string routes = "route,name,garage\n";
        std::string runs = "run,school,trip_type,route,bell,start,end,minutes,miles\n";
        std::string stops = "run,stop,sequence,students,load_minutes,drive_minutes,miles,time\n";
        std::set<std::string> known;
        for (const PlannedRun& planned : runs_) {
            std::vector<Stop> places;
            const Run run = timed(planned, places);
            if (!planned.route.empty() && known.insert(planned.route).second) {
                routes += fmt::format("{0},Bus {0},{1}\n", planned.route, plan_.depotId);
            }
            runs +=
                fmt::format("{},{},AM,{},{},{},{},{},{}\n", planned.id, planned.school,
                            planned.route, base::Date{plan_.school(planned.school).latest}.text(),
                            run.start.text(), run.end.text(), run.totalMinutes, run.totalMiles);
            for (const Visit& visit : run.visits) {
                stops += fmt::format("{},{},{},{},{},{},{},{}\n", planned.id, visit.stop->id,
                                     visit.sequence, visit.students, visit.loadMinutes,
                                     visit.driveMinutes, visit.miles, visit.time->text());
            }
        }
        file("routes.csv", routes);
        file("runs.csv", runs);
        file("run_stops.csv", stops);
    }

    [[nodiscard]] Point placeOf(int id) const {
        const auto school = std::ranges::find(plan_.schools, id, &PlanSchool::id);
        return id == plan_.depotId             ? plan_.depot
               : school != plan_.schools.end() ? school->at
                                               : plan_.stop(id).at;
    }

    void deadHead() const {
        std::string ways = "from,to,minutes,miles\n";
        std::set<std::pair<int, int>> known;
        for (const PlanLeg& leg : plan_.legs) {
            if (leg.action == "deadhead" && known.insert(std::minmax(leg.from, leg.to)).second) {
                const auto [from, to] = std::pair{placeOf(leg.from), placeOf(leg.to)};
                ways += fmt::format("{},{},{},{}\n", leg.from, leg.to, driveMinutes(from, to),
                                    milesBetween(from, to));
            }
        }
        file("deadhead.csv", ways);
    }

    const Plan& plan_;
    const std::vector<PlannedRun>& runs_;
    fs::path folder_;
};

}  // namespace

void writePlanSources(const fs::path& instance, const fs::path& folder) {
    const std::string schools = contents(instance, "Schools.txt");
    const std::string stops = contents(instance, "Stops.txt");
    const std::string plan = contents(instance, "Plan.csv");
    const std::string trips = contents(instance, "Trips.txt");
    if (schools.empty() || stops.empty() || (plan.empty() && trips.empty())) {
        refuse(
            fmt::format("{} is no instance of the benchmark: it needs Schools.txt, Stops.txt, and "
                        "Plan.csv or Trips.txt.",
                        instance.string()));
    }
    try {
        Plan read = readPlan({schools, stops, plan});
        const std::vector<PlannedRun> ofTrips = tripsIn(trips, read);
        read.depotId = read.legs.empty() ? read.depotId : read.legs.front().from;
        SourceWriter(read, plan.empty() ? ofTrips : runsIn(read), folder).write();
    } catch (const std::exception& error) {
        refuse(fmt::format("{} cannot be read as an instance of the benchmark: {}.",
                           instance.string(), error.what()));
    }
}

}  // namespace tools::district
