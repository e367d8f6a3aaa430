#include <numeric>

#include <gtest/gtest.h>

#include "runsearch/schedule/buses.h"
#include "startup/base/session.h"
#include "support/testsession.h"
#include "tools/district/make/madedistrict.h"

namespace schedule {

// The oracle counts at the start of each run, since no peak begins elsewhere.
TEST(SamplePeak, IsWhatAStatementOverThePlanCounts) {
    const tools::district::MadeDistrict district;
    const support::TestSession session;
    session.start(district.folder() + "/vireo");
    const auto plan = readPlan(
        *startup::gcnRouting,
        "SELECT RUN.*, ROUTE.ROUTEID, ROUTE.VEHICLE, ROUTE.EMPNUM, ' ' AS EMPNAME FROM ROUTE "
        "RIGHT JOIN RUN ON ROUTE.INT_ROUTEID = RUN.INT_ROUTEID");
    std::vector<int> runs(plan.runs.size());
    std::iota(runs.begin(), runs.end(), 0);
    const auto counted = district.number(
        "SELECT MAX(BUSES) FROM (SELECT (SELECT COUNT(DISTINCT COALESCE(NULLIF(TRIM(T.VEHICLE),"
        " ''), 'route ' || T.INT_ROUTEID, 'run ' || R.RUN)) FROM RUN AS R LEFT JOIN ROUTE AS T"
        " ON T.INT_ROUTEID = R.INT_ROUTEID WHERE R.STARTTIME <= S.STARTTIME"
        " AND R.ENDTIME > S.STARTTIME) AS BUSES FROM RUN AS S)");
    EXPECT_GT(counted, 1);
    EXPECT_EQ(busCurves(plan, runs).withRiders.peak().count, counted);
}

}  // namespace schedule
