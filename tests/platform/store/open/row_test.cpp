#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plainfile.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "support/temporaryfolder.h"
#include "tables.h"

namespace {

using base::Value;
using store::RowOutcome;

class Rows : public testing::Test {
protected:
    Rows() : database(store::createFile(folder.path() + "r.mdb")), other(folder.path() + "r.mdb") {
        database->create(everyKind());
        table = database->catalog().find("STOPS");
        row = {
            table, insert("R1", "Oak "), {{column("RUN"), "R1"}, {column("DESCRIPTION"), "Oak "}}};
    }

    [[nodiscard]] const store::Column* column(const char* name) const { return table->find(name); }
    Value insert(const char* run, const char* description) {
        return database->insert(*table,
                                {{column("RUN"), run}, {column("DESCRIPTION"), description}});
    }
    RowOutcome setSeq(int seq) { return database->update(row, {{column("SEQ"), seq}}); }

    support::TemporaryFolder folder{support::TemporaryFolder::Place::Memory};
    std::unique_ptr<store::Database> database;
    PlainFile other;
    const store::Table* table = nullptr;
    store::FetchedRow row;
};

TEST_F(Rows, AreWrittenOnlyWhereTheyAreStillAsFetched) {
    EXPECT_EQ(setSeq(7), RowOutcome::Written);
    EXPECT_EQ(other.run("SELECT SEQ FROM STOPS"), "7");

    // Letter case and trailing blanks are changes too, though comparisons do not see them.
    for (const char* change : {"DESCRIPTION = 'OAK '", "DESCRIPTION = 'Oak'", "RUN = NULL"}) {
        other.run(std::string("UPDATE STOPS SET ") + change);
        EXPECT_EQ(setSeq(8), RowOutcome::Changed) << change;
        EXPECT_EQ(database->remove(row), RowOutcome::Changed) << change;
        other.run("UPDATE STOPS SET RUN = 'R1', DESCRIPTION = 'Oak '");
    }
    EXPECT_EQ(other.run("SELECT SEQ FROM STOPS"), "7");

    other.run("UPDATE STOPS SET MILES = 99");
    EXPECT_EQ(setSeq(8), RowOutcome::Written) << "a column that was not fetched changed";
}

TEST_F(Rows, FetchedAsNullStayComparable) {
    row.values.push_back({column("AT"), {}});
    EXPECT_EQ(setSeq(1), RowOutcome::Written);
    other.run("UPDATE STOPS SET AT = '1899-12-30 08:00:00'");
    EXPECT_EQ(setSeq(2), RowOutcome::Changed);
}

TEST_F(Rows, KeepEveryKindOfValueExactly) {
    const std::vector<store::ColumnValue> given{
        {column("DESCRIPTION"), "Zażółć 'x' ; --"},
        {column("MILES"), 0.1},
        {column("ACTIVE"), true},
        {column("AT"), base::Date::of(2026, 1, 31, 7, 5, 9)}};
    std::vector<store::ColumnValue> read = given;
    ASSERT_TRUE(database->read(*table, database->insert(*table, given), read));
    EXPECT_EQ(read[0].value, given[0].value);
    EXPECT_EQ(read[1].value, given[1].value);
    EXPECT_EQ(read[2].value, Value(1));
    EXPECT_EQ(read[3].value, Value("2026-01-31 07:05:09"));
    EXPECT_EQ(database->defaultOf(*column("MILES")), Value(1.5));
    EXPECT_TRUE(database->defaultOf(*column("RUN")).isNull());
}

}  // namespace
