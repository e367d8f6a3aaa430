#include "runsearch/schedule/sketchchecks.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/ado/recordset.h"

namespace schedule {

namespace {

/// The run as the rules would see it in its new place.
runedit::CheckedRun checkedRun(const Plan& plan, const ScheduledRun& moved) {
    runedit::CheckedRun run;
    const auto* route = plan.routeOf(moved);
    run.run = moved.id;
    run.vehicle = route == nullptr ? "" : route->vehicle;
    run.vehType = plan.vehicleTypes[static_cast<std::size_t>(moved.vehicleType)].code;
    run.capacity = runedit::integer16(moved.seats);
    run.pickup = moved.isPickUp;
    if (moved.bell) {
        run.bell = base::Date{*moved.bell};
    }
    return run;
}

runedit::StopRows shifted(runedit::StopRows stops, Seconds by) {
    for (auto& stop : stops) {
        if (stop.time) {
            stop.time = movedTime(*stop.time, by);
        }
    }
    return stops;
}

/// Gathers one line for each check that finds something.
class LineWriter {
public:
    explicit LineWriter(std::vector<CardLine>& lines) : lines_(lines) {}

    void add(std::size_t count, const char* thing, const std::string& rest) {
        if (count > 0) {
            lines_.push_back({lines_.empty() ? "Checks" : "",
                              fmt::format("{} {}{} {}", count, thing, count == 1 ? "" : "s", rest),
                              Trouble::Tight});
        }
    }

private:
    std::vector<CardLine>& lines_;
};

}  // namespace

const SketchChecks::Wanted& SketchChecks::wanted() {
    if (!wanted_) {
        ado::Recordset district("Select District.* from District", databases_.routing);
        const auto is = [&](const char* column) {
            return !district.Eof() && runedit::yesNoOf(district[column]);
        };
        wanted_ = {.passengers = is("CHECKRUNNUMPASS"),
                   .rightSide = is("CHECKRUNRIGHT"),
                   .earlyBell = is("CHECKRUNEARLYBELL"),
                   .lateBell = is("CHECKRUNLATEBELL"),
                   .rideTime = is("CHECKRUNRIDETIME"),
                   .special = is("CHECKRUNSPECIAL"),
                   .times = is("CHECKSTOPOVERLAP")};
        if (wanted_->rideTime) {
            wanted_->longestRide = runedit::integer16(runedit::wholeOf(district["MaxRideTime"]));
        }
    }
    return *wanted_;
}

const SketchChecks::Stored& SketchChecks::stored(const std::string& run) {
    if (const auto known = stored_.find(run); known != stored_.end()) {
        return known->second;
    }
    Stored found;
    const auto timed = runedit::timedStopsOf(run).append(runedit::InSequence);
    found.regular = runedit::readStops(databases_.routing, runedit::regularStopsOf(run));
    found.timed = runedit::readStops(databases_.routing, timed);
    if (wanted().special) {
        found.needs = runedit::readStopNeeds(found.regular, databases_.routing);
    }
    if (wanted().rightSide) {
        runedit::CheckedRun checked;
        checked.run = run;
        found.wrongSide = runedit::Check_RightSide(checked, databases_).size();
    }
    return stored_.emplace(run, std::move(found)).first->second;
}

const std::vector<runedit::NeedCount>& SketchChecks::carriedBy(const std::string& vehicleType) {
    const auto [known, isNew] = carried_.try_emplace(vehicleType);
    if (isNew) {
        known->second = runedit::needsCarriedBy(vehicleType, databases_.trip);
    }
    return known->second;
}

MoveChecks SketchChecks::of(const Plan& plan, const Drag& drag) {
    auto moved = plan.run(drag.run);
    const auto by = drag.start - moved.start.value_or(drag.start);
    plan.putOnRoute(moved, drag.route);
    const auto run = checkedRun(plan, moved);
    const auto& asks = wanted();
    const auto& as = stored(moved.id);
    const auto stops = shifted(as.timed, by);
    const auto passengers = runedit::countPassengers(run, as.regular);
    MoveChecks checks{.riders = passengers.total, .lines = {}};
    LineWriter lines(checks.lines);
    if (asks.passengers) {
        lines.add(passengers.findings.size(), "stop", "with more riders than seats");
    }
    if (asks.rightSide) {
        lines.add(as.wrongSide, "stop", "served from the wrong side");
    }
    if (asks.earlyBell && run.bell && !run.pickup) {
        lines.add(runedit::earlierThanBell(stops, *run.bell).size(), "stop", "before the bell");
    }
    if (asks.lateBell && run.bell && run.pickup) {
        lines.add(runedit::laterThanBell(stops, *run.bell).size(), "stop", "after the bell");
    }
    if (asks.rideTime) {
        lines.add(runedit::ridesTooLong(stops, asks.longestRide).size(), "stop",
                  fmt::format("with rides over {} min", asks.longestRide));
    }
    if (asks.special) {
        lines.add(runedit::needsNotMet(run, as.needs, carriedBy(run.vehType)).size(),
                  "special need", "not carried");
    }
    if (asks.times && stops.size() <= runedit::MaxComparedStops) {
        lines.add(runedit::conflictingTimes(stops).size(), "pair",
                  "of stops in the wrong order of time");
    }
    return checks;
}

}  // namespace schedule
