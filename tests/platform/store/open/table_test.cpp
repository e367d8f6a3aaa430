#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plainfile.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "support/temporaryfolder.h"
#include "tables.h"

namespace {

using store::ColumnKind;
using store::Fault;
using testing::ElementsAre;
using testing::HasSubstr;

class Tables : public testing::Test {
protected:
    Tables() : database(store::createFile(folder.path() + "t.mdb")) {
        database->create(everyKind());
    }

    Fault faultOf(const std::string& sql) {
        const auto error = refusalOf([&] { return database->execute(sql); });
        EXPECT_THAT(error.description(), HasSubstr("t.mdb"));
        return error.fault();
    }

    support::TemporaryFolder folder{support::TemporaryFolder::Place::Memory};
    std::unique_ptr<store::Database> database;
};

TEST_F(Tables, AreReadBackAsTheyWereDescribed) {
    const auto again = store::open(folder.path() + "t.mdb");
    const store::Table* table = again->catalog().find("stops");
    ASSERT_NE(table, nullptr);
    const store::Table given = everyKind();
    ASSERT_EQ(table->columns.size(), given.columns.size());
    for (std::size_t i = 0; i < given.columns.size(); ++i) {
        EXPECT_EQ(table->columns[i].name, given.columns[i].name);
        EXPECT_EQ(table->columns[i].kind, given.columns[i].kind) << given.columns[i].name;
    }
    EXPECT_THAT(table->key, ElementsAre("ID"));
    ASSERT_EQ(table->indexes.size(), 2U);
    EXPECT_THAT(table->indexes[0].columns, ElementsAre("RUN", "SEQ"));
    EXPECT_TRUE(table->indexes[1].unique);
    EXPECT_EQ(table->find("miles")->defaultSql, "1.5");
    EXPECT_FALSE(table->find("active")->nullable);
    EXPECT_EQ(table->rowKey, "rowid");
}

TEST_F(Tables, OfOtherToolsAreReadSensibly) {
    const PlainFile other(folder.path() + "t.mdb");
    other.run(
        "CREATE TABLE OTHER (a VARCHAR(20), b BIGINT, c NUMERIC(8,2), d TIMESTAMP, e BIT, f,"
        " g BOOLEAN, h DOUBLE PRECISION);"
        "CREATE TABLE KEYED (a TEXT, b TEXT, PRIMARY KEY (b, a)) WITHOUT ROWID");
    const auto again = store::open(folder.path() + "t.mdb");
    std::vector<ColumnKind> kinds;
    for (const auto& column : again->catalog().find("OTHER")->columns) {
        kinds.push_back(column.kind);
    }
    EXPECT_THAT(kinds, ElementsAre(ColumnKind::Text, ColumnKind::Integer, ColumnKind::Number,
                                   ColumnKind::Date, ColumnKind::YesNo, ColumnKind::Text,
                                   ColumnKind::YesNo, ColumnKind::Number));
    EXPECT_THAT(again->catalog().find("KEYED")->key, ElementsAre("b", "a"));
    EXPECT_EQ(again->catalog().find("KEYED")->rowKey, "");
}

TEST_F(Tables, CodesCarryNoTrailingBlanksButMayBeOneBlank) {
    for (const char* code : {"'R1'", "' '", "''", "' R1'", "NULL"}) {
        EXPECT_EQ(database->execute(std::string("INSERT INTO STOPS (RUN) VALUES (") + code + ")"),
                  1);
    }
    EXPECT_EQ(faultOf("INSERT INTO STOPS (RUN) VALUES ('R1 ')"), Fault::Constraint);
    EXPECT_EQ(faultOf("INSERT INTO STOPS (RUN) VALUES ('  ')"), Fault::Constraint);
    EXPECT_EQ(faultOf("UPDATE STOPS SET RUN = RUN || ' ' WHERE ID = 1"), Fault::Constraint);
    EXPECT_EQ(database->execute("UPDATE STOPS SET SEQ = 5 WHERE RUN = 'r1'"), 1);
}

TEST_F(Tables, RefuseWhatDoesNotFitAColumn) {
    EXPECT_EQ(faultOf("INSERT INTO STOPS (ACTIVE) VALUES (-1)"), Fault::Constraint);
    EXPECT_EQ(faultOf("INSERT INTO STOPS (ACTIVE) VALUES (NULL)"), Fault::Constraint);
    EXPECT_EQ(faultOf("INSERT INTO STOPS (MILES) VALUES (NULL)"), Fault::Constraint);
    EXPECT_EQ(faultOf("INSERT INTO STOPS (ID) VALUES ('one')"), Fault::Constraint);
    database->execute("INSERT INTO STOPS (DESCRIPTION) VALUES ('Oak')");
    const auto duplicate = refusalOf(
        [&] { return database->execute("INSERT INTO STOPS (DESCRIPTION) VALUES ('OAK')"); });
    EXPECT_THAT(duplicate.description(), HasSubstr("STOPS.DESCRIPTION"));
}

TEST_F(Tables, ContradictionsAreRefusedAndLeaveNothing) {
    EXPECT_THROW(database->create({"A", {{"ID", ColumnKind::Counter}, {"X"}}, {"X"}}),
                 store::StoreError);
    EXPECT_THROW(database->create({"A", {{"X"}}, {}, {{{"Y"}}}}), store::StoreError);
    EXPECT_THROW(database->create(everyKind()), store::StoreError);
    EXPECT_EQ(PlainFile(folder.path() + "t.mdb")
                  .run("SELECT count(*) FROM sqlite_schema WHERE name = 'A'"),
              "0");
}

TEST_F(Tables, OpenInAnyToolOfTheEngine) {
    database->execute(
        "INSERT INTO STOPS (RUN, DESCRIPTION, AT) VALUES"
        " ('R1', 'Oak ', '1899-12-30 08:00:00')");
    const PlainFile other(folder.path() + "t.mdb");
    EXPECT_EQ(other.run("SELECT DESCRIPTION || AT FROM STOPS WHERE RUN = 'r1' AND MILES = 1.5"
                        " AND ACTIVE = 0 ORDER BY DESCRIPTION"),
              "Oak 1899-12-30 08:00:00");
    EXPECT_EQ(other.run("UPDATE STOPS SET RUN = 'R2'; REINDEX; VACUUM; PRAGMA integrity_check"),
              "ok");
    EXPECT_EQ(other.run("SELECT group_concat(typeof(MILES) || typeof(ACTIVE)) FROM STOPS"),
              "realinteger");
}

TEST_F(Tables, NamesInQuotesAreNamesAndOneTextIsOneStatement) {
    EXPECT_EQ(faultOf("SELECT \"nothing\" FROM STOPS"), Fault::Statement);
    EXPECT_EQ(faultOf("DELETE FROM STOPS; DROP TABLE STOPS"), Fault::Statement);
    EXPECT_EQ(faultOf(" "), Fault::Statement);
    EXPECT_NE(database->catalog().find("STOPS"), nullptr);
}

}  // namespace
