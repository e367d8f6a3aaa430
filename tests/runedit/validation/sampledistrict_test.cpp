#include <map>

#include <gmock/gmock.h>

#include "runedit/validation/mdlValidate_Runs.h"
#include "startup/base/session.h"
#include "support/rows.h"
#include "support/testsession.h"
#include "tools/district/make/madedistrict.h"

namespace runedit {
namespace {

using Counts = std::map<std::string, int>;

std::vector<std::string> columnOf(const std::string& sql) {
    return support::rowsOf(sql, *startup::gcnRouting);
}

std::vector<std::string> warnings() {
    return columnOf(
        "SELECT RUN, WARNINGTYPE, WARNINGTEXT FROM RUNWARNING ORDER BY RUN, "
        "WARNINGTYPE, WARNINGTEXT");
}

Counts countByType() {
    Counts counts;
    for (const auto& type : columnOf("SELECT WARNINGTYPE FROM RUNWARNING")) {
        ++counts[type];
    }
    return counts;
}

// The district comes with the warnings that its maker recorded on its own.
TEST(SampleDistrict, ValidatingEveryRunFindsWhatIsRecorded) {
    const tools::district::MadeDistrict made;
    const support::TestSession session;
    session.start(made.folder() + "/vireo");
    const auto recorded = warnings();
    const auto countsBefore = countByType();
    ASSERT_THAT(countsBefore,
                testing::AllOf(testing::SizeIs(4), testing::Contains(testing::Key("PASSENGERS")),
                               testing::Contains(testing::Key("RIDETIME"))));
    for (const auto& run : columnOf("SELECT RUN FROM RUN")) {
        CheckRun(run, 0, false, "Y");
    }
    EXPECT_EQ(countByType(), countsBefore);
    EXPECT_EQ(warnings(), recorded);
    EXPECT_TRUE(session.boxes.shown.empty());
}

}  // namespace
}  // namespace runedit
