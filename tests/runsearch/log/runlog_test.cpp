#include "platform/jet/error.h"
#include "runsearch/log/runlogreader.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace runsearch {

namespace {

TEST(RunLogQuery, JoinsTheFiltersThatAreFilled) {
    const struct {
        RunLogFilters filters;
        const char* between;
    } cases[] = {
        {{}, ""},
        {{.runId = "  ", .activityCode = " "}, ""},
        {{.runId = " 12 "}, " Where  RunLOG.RunID LIKE '12%'"},
        {{.activityCode = " 3"}, " Where  RunLOG.ACTIVITYCODE = 3"},
        {{.begDate = "1/2/2026", .endDate = " 1/4/2026 "},
         " Where DateValue(CStr([LOGDATE]))>=#1/2/2026# AND "
         "DateValue(CStr([LOGDATE]))<=#1/4/2026#"},
        {{"{}'", "1", "1/2/26", "2026-01-04"},
         " Where RunLOG.RunID LIKE '{}'%' AND RunLOG.ACTIVITYCODE = 1 AND "
         "DateValue(CStr([LOGDATE]))>=#1/2/26# AND DateValue(CStr([LOGDATE]))<=#2026-01-04#"},
    };
    for (const auto& [filters, between] : cases) {
        EXPECT_EQ(runLogPageQuery(filters, RunLogWay::ByRun, {}, 50),
                  std::string("Select TOP 50 RUNLOG.* FROM RUNLOG") + between +
                      " ORDER BY RUNLOG.LOGDATE DESC, RUNLOG.ID DESC");
    }
}

TEST(RunLogQuery, NamesTheFirstFilterThatCannotBeSearchedFor) {
    using Filter = RunLogFault::Filter;
    EXPECT_FALSE(firstFault({"it's", " -7 ", "1/5/26", "2026-1-31"}));
    for (const char* code : {"x", "1.5", "1 OR 1=1", "99999999999999999999"}) {
        EXPECT_EQ(firstFault({"", code, "x", "x"}).value().filter, Filter::ActivityCode) << code;
    }
    for (const char* day : {"x", "2/30/2026", "8:00", "12 am", "1/31/2026 8:00", "1/31/2026# OR"}) {
        EXPECT_EQ(firstFault({"", "", day, "x"}).value().filter, Filter::BegDate) << day;
        EXPECT_EQ(firstFault({"", "", "", day}).value().filter, Filter::EndDate) << day;
    }
}

void fillEntries(const support::TestDistrict& district) {
    district.sql(
        data::DatabaseFile::Routing,
        "INSERT INTO RUNLOG(ID, RUNID, StopID, TripType, LOGDATE, ACTIVITYCODE, Description) "
        "VALUES (1, '12', 'S1', 'AM', '2026-01-02 00:00:00', 1, 'added'), (2, '120', NULL, "
        "NULL, '2026-01-03 23:59:59', 2, NULL), (3, '12a', 'S1', 'PM', '2026-01-03 00:00:00', "
        "1, 'moved'), (4, '112', 'S1', 'AM', '2026-01-04 08:00:00', 1, 'x'), "
        "(100005, '2', 'S9', 'AM', NULL, 1, 'never')");
}

class RunLog : public support::DistrictSession {
protected:
    RunLog() : DistrictSession(fillEntries) {}
    static std::string found(const RunLogFilters& filters) {
        RunLogReader reader(*startup::gcnRouting, filters);
        auto table = RunLogReader::emptyTable();
        reader.read(100, table);
        std::vector<std::string> ids;
        while (ids.size() < table.rowCount()) {
            ids.push_back(table.text(ids.size(), "ID"));
        }
        return support::joined(ids);
    }
};

TEST_F(RunLog, FiltersMeetAndWholeDaysCount) {
    EXPECT_EQ(found({}), "4 2 3 1 100005");
    EXPECT_EQ(found({.runId = "12"}), "2 3 1");
    EXPECT_EQ(found({.begDate = "1/3/2026", .endDate = "1/3/2026"}), "2 3");
    EXPECT_EQ(found({.begDate = "1/4/2026"}), "4");
    EXPECT_EQ(found({"12", "1", "", "1/3/2026"}), "3 1");
    EXPECT_THROW(found({.runId = "it's"}), jet::SqlError);
}

// Entries of one second, of many and without a time; a run that most entries are of and a rare one,
// which are found through different indexes.
TEST_F(RunLog, IsReadInPartsOfAnySizeWithoutAGapOrARepetition) {
    byOthers("DELETE FROM RUNLOG");
    EXPECT_EQ(found({.runId = "R"}), "");
    byOthers(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 4000) INSERT "
        "INTO "
        "RUNLOG (ID, RUNID, LOGDATE, ACTIVITYCODE) SELECT i, iif(i % 50 = 0, 'R2', 'R10'), "
        "iif(i > 40, printf('2026-01-01 %02d:00:00', i / 400), NULL), i % 3 FROM n");
    for (const auto& [filters, entries] :
         {std::pair{RunLogFilters{}, 4000},
          {RunLogFilters{.runId = "R"}, 4000},
          {RunLogFilters{.runId = "R1"}, 3920},
          {RunLogFilters{.runId = "R2"}, 80},
          {RunLogFilters{.runId = "R1", .activityCode = "1"}, 1307}}) {
        for (const std::size_t part : {7U, 500U}) {
            RunLogReader reader(*startup::gcnRouting, filters);
            auto table = RunLogReader::emptyTable();
            while (!reader.atEnd()) {
                reader.read(part, table);
            }
            ASSERT_EQ(table.rowCount(), static_cast<std::size_t>(entries)) << filters.runId;
            for (std::size_t row = 1; row < table.rowCount(); ++row) {
                ASSERT_GT(std::stoi(table.text(row - 1, "ID")), std::stoi(table.text(row, "ID")));
            }
        }
    }
}

TEST_F(RunLog, IsReadInPartsWhichTheCountDoesNotDisturb) {
    RunLogReader reader(*startup::gcnRouting, {.activityCode = "1"});
    auto table = RunLogReader::emptyTable();
    reader.read(2, table);
    EXPECT_EQ(table.text(0, 2), "1/4/2026 8:00:00 AM");
    EXPECT_EQ(table.text(1, 3), "moved");
    reader.countOn();
    EXPECT_FALSE(reader.total()) << "the second hundred thousand keys are still to be looked at";
    reader.countOn();
    EXPECT_EQ(reader.total(), 4);
    reader.read(2, table);
    reader.read(2, table);
    EXPECT_TRUE(reader.atEnd());
    EXPECT_EQ(table.rowCount(), 4U);
    EXPECT_EQ(table.text(3, 0) + table.text(3, 2), "2");

    RunLogReader prefix(*startup::gcnRouting, {.runId = "12"});
    prefix.countOn();
    EXPECT_EQ(prefix.total(), 3);
}

}  // namespace

}  // namespace runsearch
