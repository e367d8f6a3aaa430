#include "tools/district/make/sample.h"

#include <map>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/base/value.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

using data::DatabaseFile;

std::int64_t seconds(std::int64_t milliseconds) {
    return base::roundHalfEven(static_cast<double>(milliseconds) / 1000);
}

/// A row of a run as it is stored.
struct StoredStop {
    std::int64_t id;
    double load;
    double drive;
    base::Date time;
};

class Sample : public testing::Test {
protected:
    std::vector<StoredStop> stopsOf(const std::string& run) {
        const auto rows = routing_->prepare(
            "SELECT INT_STOPID, LOAD_TIME, TIME_TOSTOP, TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN ="
            " ? ORDER BY RUNSEQ");
        rows->bind(0, run);
        std::vector<StoredStop> stops;
        while (rows->step()) {
            stops.push_back({rows->integer(0), rows->real(1), rows->real(2),
                             base::Date::fromIso(rows->text(3)).value()});
        }
        return stops;
    }

    /// From one stop to another as the dead-head table has it, in seconds; -1 where it does not.
    std::int64_t deadHeadSeconds(std::int64_t from, std::int64_t to) {
        const auto rows = cross_->prepare(
            "SELECT TRAVEL_MINUTES FROM DEADHEAD_CROSS WHERE (DEST_INT_STOPID = ? AND"
            " ENDPOINT_INT_STOPID = ?) OR (DEST_INT_STOPID = ? AND ENDPOINT_INT_STOPID = ?)");
        int place = 0;
        for (const std::int64_t id : {from, to, to, from}) {
            rows->bind(place++, id);
        }
        return rows->step() ? base::roundHalfEven(rows->real(0) * 60) : -1;
    }

    MadeDistrict made_;
    Plan plan_ = readPlan(embeddedPlan());
    std::unique_ptr<store::Database> routing_ = made_.open(DatabaseFile::Routing);
    std::unique_ptr<store::Database> cross_ = made_.open(DatabaseFile::DeadCross);
};

}  // namespace

// The published plan is the oracle: its arrivals, moved by the day's shift and rounded once a gap,
// must come out of the stored minutes and stand in the stored times.
TEST_F(Sample, StoredMinutesGiveThePlannedTimesOfAllRuns) {
    ASSERT_EQ(plan_.runs.size(), 59U);
    for (const PlanRun& planned : plan_.runs) {
        const std::string id = sampleRunId(planned);
        const auto stored = stopsOf(id);
        auto visits = planned.pickups;
        visits.push_back(planned.school);
        ASSERT_EQ(stored.size(), visits.size()) << id;
        std::int64_t expected = seconds(planned.school.arrival) + SampleShiftSeconds;
        for (std::size_t i = visits.size(); i-- > 0;) {
            EXPECT_EQ(stored[i].id, visits[i].stop) << id;
            EXPECT_EQ(stored[i].time.seconds, expected) << id << " stop " << i;
            if (i > 0) {
                const std::int64_t gap = seconds(visits[i].arrival - visits[i - 1].arrival);
                const auto minutes =
                    static_cast<float>(stored[i - 1].load) + static_cast<float>(stored[i].drive);
                EXPECT_EQ(base::roundHalfEven(static_cast<double>(minutes * 60)), gap) << id;
                expected -= gap;
            }
        }
        const auto run = routing_->prepare("SELECT STARTTIME, ENDTIME FROM RUN WHERE RUN = ?");
        run->bind(0, id);
        ASSERT_TRUE(run->step());
        EXPECT_EQ(run->text(0), stored.front().time.iso());
        EXPECT_EQ(run->text(1), stored.back().time.iso());
    }
}

// Walks every bus's day as the dead-head calculation does and compares leg by leg.
TEST_F(Sample, EveryBusDrivesItsPlannedDeadHeadLegs) {
    struct Leg {
        std::int64_t from;
        std::int64_t to;
        std::int64_t seconds;
        bool operator==(const Leg&) const = default;
    };
    std::map<std::int64_t, std::vector<Leg>> planned;
    for (const PlanLeg& leg : plan_.legs) {
        if (leg.action == "deadhead") {
            planned[leg.bus].push_back({leg.from, leg.to, seconds(leg.end - leg.start)});
        }
    }
    std::map<std::int64_t, std::vector<Leg>> driven;
    const auto runs = routing_->prepare(
        "SELECT r.INT_ROUTEID, r.GARAGE_STOPID, u.FirstStop, u.LastStop, u.STARTTIME, u.ENDTIME"
        " FROM ROUTE AS r INNER JOIN RUN AS u ON u.INT_ROUTEID = r.INT_ROUTEID"
        " ORDER BY r.INT_ROUTEID, u.STARTTIME, u.ENDTIME");
    const std::int64_t gap = made_.number("SELECT Back_To_Garage_Gap FROM District");
    std::int64_t bus = 0;
    std::int64_t here = 0;
    std::int64_t garage = 0;
    base::Date end;
    const auto drive = [&](std::int64_t to) {
        driven[bus].push_back({here, to, deadHeadSeconds(here, to)});
    };
    while (runs->step()) {
        if (runs->integer(0) != bus) {
            if (bus != 0) {
                drive(garage);
            }
            bus = runs->integer(0);
            garage = here = runs->integer(1);
        } else {
            const auto start = base::Date::fromIso(runs->text(4)).value();
            EXPECT_LT(start.seconds - end.seconds, gap * 60) << bus;
        }
        drive(runs->integer(2));
        here = runs->integer(3);
        end = base::Date::fromIso(runs->text(5)).value();
    }
    drive(garage);
    EXPECT_EQ(driven, planned);
    std::size_t legs = 0;
    for (const auto& [one, its] : driven) {
        legs += its.size();
    }
    EXPECT_EQ(legs, 90U);
}

TEST_F(Sample, CountsEveryStudentOnce) {
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM STUDENT"), 3409);
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM (SELECT t.ID FROM STOP_TRIPTYPE AS t"
                           " LEFT JOIN STU_ADDR_TRIPTYPE AS a ON a.INT_STOPID = t.INT_STOPID"
                           " AND a.TRIPTYPE = t.TRIPTYPE GROUP BY t.ID, t.NUM_STUDENTS"
                           " HAVING COUNT(a.INT_STUID) <> t.NUM_STUDENTS)"),
              0);
}

TEST_F(Sample, HoldsWhatEveryDistrictHas) {
    const std::map<std::string, std::string> wanted = {
        {"runs on no route", "RUN WHERE INT_ROUTEID IS NULL AND ACTIVE = 1"},
        {"runs to be solved again", "RUN WHERE REGENERATE = 1"},
        {"inactive runs", "RUN WHERE ACTIVE = 0"},
        {"afternoon runs", "RUN WHERE PICKUP = 0"},
        {"right-side stops", "STOP WHERE RIGHTSIDE = 1"},
        {"inactive stops", "STOP WHERE ACTIVE = 0"},
        {"turn points", "STOP WHERE STOPTYPE = 'DIRECTIONAL'"},
        {"stops without a place on a run",
         "STOP AS s INNER JOIN STOP_TRIPTYPE AS t ON t.INT_STOPID = s.INT_STOPID"
         " WHERE s.XPOS = 0 AND s.YPOS = 0 AND t.RUN LIKE 'P%'"},
        {"never assigned", "STOP_TRIPTYPE WHERE RUN IS NULL"},
        {"taken off", "STOP_TRIPTYPE WHERE RUN = ' '"},
        {"blank", "STOP_TRIPTYPE WHERE RUN = ''"},
        {"routes with an aide", "ROUTE WHERE AID_EMPNUM IS NOT NULL"},
        {"special needs", "STU_SPECIALNEEDS"},
        {"log entries", "RUNLOG WHERE ACTIVITYCODE = 5"},
        {"closed schools", "SCHOOL WHERE ACTIVE = 0"}};
    for (const auto& [what, from] : wanted) {
        EXPECT_GT(made_.number("SELECT COUNT(*) FROM " + from), 0) << what;
    }
    for (const char* type : {"PASSENGERS", "RIDETIME", "RIGHTSIDE", "SPECIAL"}) {
        EXPECT_GT(made_.number(fmt::format(
                      "SELECT COUNT(*) FROM RUNWARNING WHERE WARNINGTYPE = '{}'", type)),
                  0)
            << type;
    }
    for (const char* type : {"Start", "Direction", "Turn Back", "Landmark", "Stop", "Total"}) {
        EXPECT_GT(
            made_.number(fmt::format("SELECT COUNT(*) FROM RUNDIR WHERE LINETYPE = '{}'", type)), 0)
            << type;
    }
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM ROUTE"), 31);
    EXPECT_EQ(made_.number("SELECT COUNT(*) FROM RUN WHERE INT_ROUTEID IS NOT NULL"), 59);
}

}  // namespace tools::district
