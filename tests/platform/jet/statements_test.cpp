// The statements of statements.txt, parsed, translated and run on a small district.

#include <gtest/gtest.h>

#include "district.h"
#include "statementfile.h"

namespace jet::testing {

namespace {

class Statements : public ::testing::TestWithParam<Block> {
protected:
    void SetUp() override { sharedDistrict().database().begin(); }
    void TearDown() override { sharedDistrict().database().rollback(); }
};

void expectError(District& district, const Step& step) {
    try {
        (void)district.text(step.sql);
        ADD_FAILURE() << "no error";
    } catch (const SqlError& error) {
        EXPECT_EQ(error.position(), step.position) << error.what();
        EXPECT_TRUE(error.description().starts_with(step.error)) << error.what();
    }
}

void expectResult(District& district, const Step& step) {
    if (!step.translation.empty()) {
        EXPECT_EQ(district.text(step.sql), step.translation);
    }
    const auto rows = district.run(step.sql);
    if (step.comparesRows) {
        EXPECT_EQ(rows, step.rows);
    }
    if (step.rowCount >= 0) {
        EXPECT_EQ(rows.size(), static_cast<std::size_t>(step.rowCount));
    }
}

TEST_P(Statements, GiveTheirTranslationAndRows) {
    for (const Step& step : GetParam()) {
        SCOPED_TRACE("statements.txt, line " + std::to_string(step.line) + ": " + step.sql);
        ASSERT_TRUE(step.comparesRows || step.rowCount >= 0 || !step.error.empty())
            << "nothing is expected";
        step.error.empty() ? expectResult(sharedDistrict(), step)
                           : expectError(sharedDistrict(), step);
    }
}

std::string nameOf(const ::testing::TestParamInfo<Block>& block) {
    return "Line" + std::to_string(block.param.front().line);
}

INSTANTIATE_TEST_SUITE_P(File, Statements, ::testing::ValuesIn(readStatements()), nameOf);

}  // namespace

}  // namespace jet::testing
