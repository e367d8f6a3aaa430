#include "tools/district/make/sample.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/base/value.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

std::int64_t seconds(std::int64_t milliseconds) {
    return base::roundHalfEven(static_cast<double>(milliseconds) / 1000);
}

/// "stop at second, …" of a published run, moved by the day's shift and rounded once a gap.
std::string plannedStops(const PlanRun& run) {
    std::int64_t time = seconds(run.school.arrival) + SampleShiftSeconds;
    std::string stops = fmt::format("{} at {}", run.school.stop, time);
    std::int64_t next = run.school.arrival;
    for (std::size_t i = run.pickups.size(); i-- > 0; next = run.pickups[i].arrival) {
        time -= seconds(next - run.pickups[i].arrival);
        stops = fmt::format("{} at {}, {}", run.pickups[i].stop, time, stops);
    }
    return stops;
}

class Sample : public testing::Test {
protected:
    static const MadeDistrict& made() {
        static const MadeDistrict district;
        return district;
    }
    [[nodiscard]] std::string storedStops(const std::string& run) const {
        const auto rows = routing_->prepare(
            "SELECT INT_STOPID, TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN = ? ORDER BY RUNSEQ");
        rows->bind(0, run);
        std::string stops;
        while (rows->step()) {
            stops += fmt::format("{}{} at {}", stops.empty() ? "" : ", ", rows->integer(0),
                                 base::Date::fromIso(rows->text(1)).value().seconds);
        }
        return stops;
    }

    std::unique_ptr<store::Database> routing_ = made().open(data::DatabaseFile::Routing);
};

}  // namespace

// What follows from the stored minutes and the dead-heads is held against the published plan where
// it is calculated.
TEST_F(Sample, StoresThePlannedStopsAndTimesOfAllRuns) {
    for (const PlanRun& planned : readPlan(embeddedPlan()).runs) {
        EXPECT_EQ(storedStops(sampleRunId(planned)), plannedStops(planned));
    }
    EXPECT_EQ(made().number("SELECT COUNT(*) FROM RUN AS r WHERE r.PICKUP = 1 AND r.STARTTIME <>"
                            " (SELECT MIN(TIME_AT_STOP) FROM STOP_TRIPTYPE WHERE RUN = r.RUN)"),
              0);
    EXPECT_EQ(made().number("SELECT COUNT(*) FROM ROUTE"), 31);
    EXPECT_EQ(made().number("SELECT COUNT(*) FROM RUN WHERE INT_ROUTEID IS NOT NULL"), 59);
}

TEST_F(Sample, CountsEveryStudentOnce) {
    EXPECT_EQ(made().number("SELECT COUNT(*) FROM STUDENT"), 3409);
    EXPECT_EQ(made().number("SELECT COUNT(*) FROM (SELECT t.ID FROM STOP_TRIPTYPE AS t"
                            " LEFT JOIN STU_ADDR_TRIPTYPE AS a ON a.INT_STOPID = t.INT_STOPID"
                            " AND a.TRIPTYPE = t.TRIPTYPE GROUP BY t.ID, t.NUM_STUDENTS"
                            " HAVING COUNT(a.INT_STUID) <> t.NUM_STUDENTS)"),
              0);
}

}  // namespace tools::district
