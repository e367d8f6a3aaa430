// The statements of statements.txt, parsed, translated and run on a small district.

#include <gmock/gmock.h>
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
    const bool isFile = &district == &sharedDistrict();
    if (!step.translation.empty() && isFile) {
        EXPECT_EQ(district.text(step.sql), step.translation);
    }
    const auto rows = district.run(step.sql);
    if (step.comparesRows && !isFile && step.sql.find("ORDER B") == step.sql.npos) {
        EXPECT_THAT(rows, ::testing::UnorderedElementsAreArray(step.rows));
    } else if (step.comparesRows) {
        EXPECT_EQ(rows, step.rows);
    }
    if (step.rowCount >= 0) {
        EXPECT_EQ(rows.size(), static_cast<std::size_t>(step.rowCount));
    }
}

void run(District& district, const Block& block) {
    for (const Step& step : block) {
        SCOPED_TRACE("statements.txt, line " + std::to_string(step.line) + ": " + step.sql);
        ASSERT_TRUE(step.comparesRows || step.rowCount >= 0 || !step.error.empty())
            << "nothing is expected";
        step.error.empty() ? expectResult(district, step) : expectError(district, step);
    }
}

TEST_P(Statements, GiveTheirTranslationAndRows) { run(sharedDistrict(), GetParam()); }

// In one case, since each case that ctest runs would start a server of its own.
TEST(StatementsOnAServer, GiveTheSameRows) {
    District* const district = serverDistrict();
    if (district == nullptr) {
        GTEST_SKIP() << "PostgreSQL's server is not installed";
    }
    for (const Block& block : readStatements()) {
        district->database().begin();
        try {
            run(*district, block);
        } catch (const base::RunTimeError& error) {
            ADD_FAILURE() << "line " << block.front().line << ": " << error.what();
        }
        district->database().rollback();
    }
}

std::string nameOf(const ::testing::TestParamInfo<Block>& block) {
    return "Line" + std::to_string(block.param.front().line);
}

INSTANTIATE_TEST_SUITE_P(File, Statements, ::testing::ValuesIn(readStatements()), nameOf);

}  // namespace

}  // namespace jet::testing
