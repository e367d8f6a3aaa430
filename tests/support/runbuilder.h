#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/testdistrict.h"

namespace support {

/// A stop as it stands on a run. What is not given has its column's default.
struct RunStop {
    std::optional<double> load = {};   ///< minutes
    std::optional<double> drive = {};  ///< minutes from the stop before
    std::optional<int> students = {};
    std::string at = {};  ///< a time of day
    std::string type = "REGULAR";
    std::optional<int> id = {};     ///< the trip record's key; else the next one
    std::optional<int> stop = {};   ///< the stop's own key; else the next one
    TestDistrict::Row more = {};    ///< further columns of the trip record
    TestDistrict::Row ofStop = {};  ///< further columns of the stop
};

/// A run with its stops, put into a district in one expression:
///
///     RunBuilder("R1").school("OAK").bell("8:00").with("PICKUP", true)
///         .stop("S1", {.load = 2, .at = "7:10"})
///         .stop("S2", {.drive = 10})
///         .into(district);
///
/// Sequences count from 1 in the order given. A stop whose id the district has is that stop, any
/// other is made. A run without an id is none: its stops are on no run. Runs and trip records are
/// active and dates may be given as text.
class RunBuilder {
public:
    explicit RunBuilder(std::string run) : run_(std::move(run)) {}

    RunBuilder& with(std::string column, base::Value value) {
        columns_.emplace_back(std::move(column), std::move(value));
        return *this;
    }
    RunBuilder& school(const std::string& school) { return with("SCHOOL", school); }
    RunBuilder& bell(const std::string& time) { return with("BELLTIME", time); }
    RunBuilder& starts(const std::string& time) { return with("STARTTIME", time); }
    RunBuilder& ends(const std::string& time) { return with("ENDTIME", time); }
    /// Of the run and its stops; "AM" unless told.
    RunBuilder& tripType(std::string type) {
        tripType_ = std::move(type);
        return *this;
    }
    RunBuilder& stop(std::string stopId, RunStop stop = {}) {
        stops_.emplace_back(std::move(stopId), std::move(stop));
        return *this;
    }
    void into(const TestDistrict& district) const;

private:
    std::string run_;
    std::string tripType_ = "AM";
    TestDistrict::Row columns_;
    std::vector<std::pair<std::string, RunStop>> stops_;
};

}  // namespace support
