#include <filesystem>
#include <sstream>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "platform/store/open/open.h"
#include "support/temporaryfolder.h"
#include "tools/district/check/checks.h"
#include "tools/district/import/apply/importer.h"
#include "tools/district/import/benchmark/plansources.h"
#include "tools/district/make/create.h"
#include "tools/district/make/plan.h"
#include "tools/district/make/sample.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

/// An instance imported into an empty district.
class Benchmark : public testing::Test {
protected:
    void import(const fs::path& instance) {
        createDistrict({.folder = folders_.root, .empty = EmptyDistrict{"Test", {"ADMIN", "pw"}}},
                       progress_);
        const fs::path sources = temporary_.path() + "sources";
        fs::create_directories(sources);
        writePlanSources(instance, sources);
        const ImportResult result = importInto({.folders = folders_,
                                                .sources = {sources},
                                                .map = {},
                                                .rejected = {},
                                                .rules = {},
                                                .now = base::Date::of(2026, 8, 1),
                                                .apply = true},
                                               progress_);
        EXPECT_EQ(result.outcome.refused, 0);
        const CheckReport report = checkDistrict(folders_, progress_);
        EXPECT_TRUE(report.isSound()) << report.text();
    }

    /// The stops of a run with their seconds of the day.
    [[nodiscard]] std::vector<std::pair<std::int64_t, std::int64_t>> stopsOf(
        const std::string& run) const {
        const auto database = store::open(folders_.database(data::DatabaseFile::Routing).string());
        const auto rows = database->prepare(
            "SELECT STOPID, TIME_AT_STOP FROM STOP_TRIPTYPE JOIN STOP USING (INT_STOPID)"
            " WHERE RUN = ? ORDER BY RUNSEQ");
        rows->bind(0, run);
        std::vector<std::pair<std::int64_t, std::int64_t>> stops;
        while (rows->step()) {
            stops.emplace_back(std::stoll(std::string(rows->text(0))),
                               base::Date::fromIso(rows->text(1)).value().seconds);
        }
        return stops;
    }

    support::TemporaryFolder temporary_;
    Folders folders_{temporary_.path() + "district"};
    Progress progress_;
};

}  // namespace

TEST_F(Benchmark, APlanComesInWithItsOwnTimes) {
    import(SAMPLE);
    const auto seconds = [](std::int64_t milliseconds) {
        return base::roundHalfEven(static_cast<double>(milliseconds) / 1000);
    };
    for (const PlanRun& planned : readPlan(embeddedPlan()).runs) {
        const auto stored = stopsOf(sampleRunId(planned));
        ASSERT_EQ(stored.size(), planned.pickups.size() + 1);
        std::int64_t time = seconds(planned.school.arrival);
        EXPECT_EQ(stored.back(), std::pair(std::int64_t{planned.school.stop}, time));
        std::int64_t next = planned.school.arrival;
        for (std::size_t i = planned.pickups.size(); i-- > 0; next = planned.pickups[i].arrival) {
            time -= seconds(next - planned.pickups[i].arrival);
            EXPECT_EQ(stored[i], std::pair(std::int64_t{planned.pickups[i].stop}, time));
        }
    }
}

// The published trips round each way and each boarding to whole seconds: two seconds a stop at
// most.
TEST_F(Benchmark, TripsStartWhenTheInstanceSaysAtTheLatest) {
    const std::string instance = temporary_.path() + "instance/";
    fs::create_directories(instance);
    for (const char* name : {"Schools.txt", "Stops.txt", "Trips.txt"}) {
        fs::copy(fs::path(SAMPLE) / name, instance + name);
    }
    import(instance);
    std::istringstream lines(support::contentsOf(instance + "Trips.txt"));
    int trips = 0;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream cells(line);
        const std::vector<std::string> all{std::istream_iterator<std::string>(cells), {}};
        if (all.size() > 10 && all[0] != "0") {
            const auto stops = stopsOf("T" + all[0]);
            ASSERT_EQ(stops.size(), std::stoul(all[8]) + 1);
            EXPECT_EQ(stops.front().first, std::stoll(all[10]));
            EXPECT_NEAR(static_cast<double>(stops.front().second), std::stod(all[6]),
                        2 * static_cast<double>(stops.size()))
                << line;
            ++trips;
        }
    }
    EXPECT_EQ(trips, 60);
    EXPECT_THROW(writePlanSources(temporary_.path(), temporary_.path()), base::RunTimeError);
}

}  // namespace tools::district
