#include <fstream>

#include <gmock/gmock.h>
#include <unistd.h>

#include "platform/ado/sqltext.h"
#include "platform/jet/error.h"
#include "smalldistrict.h"

namespace {

using ado::CursorType;
using base::Value;

using Reading = SmallDistrict;

TEST_F(Reading, GivesEachKindAsItsOwn) {
    ado::Recordset runs;
    runs.Open("SELECT RUN.* FROM RUN ORDER BY RUN.RUN", connection);
    EXPECT_EQ(runs["run"].Value(), Value("R1"));
    EXPECT_EQ(runs["DESCRIPTION"].Value(), Value("Oak "));
    EXPECT_EQ(runs["BellTime"].Value(), Value(base::Date::timeOfDay(8, 0)));
    EXPECT_EQ(runs["BellTime"].textView(), "1899-12-30 08:00:00");
    EXPECT_EQ(runs["PICKUP"].Value(), Value(true));
    EXPECT_TRUE(runs["INT_ROUTEID"].isNull());
    EXPECT_EQ(runs["TOTAL_MILES"].textView(), "3.5");
    runs.MoveNext();
    EXPECT_TRUE(runs["DESCRIPTION"].Value().isNull());
    EXPECT_EQ(runs["DESCRIPTION"].textView(), "");
    EXPECT_EQ(runs["INT_ROUTEID"].Value(), Value(7));
    EXPECT_EQ(runs["PICKUP"].Value(), Value(false));
    runs.Close();

    runs.Open("SELECT LOAD_TIME, ID FROM STOP_TRIPTYPE WHERE ID = 2", connection);
    EXPECT_EQ(runs["LOAD_TIME"].asText(), "1.1");
    EXPECT_EQ(runs.Fields(1).Value(), Value(2));
}

TEST_F(Reading, TakesDatesThatOtherToolsWrote) {
    other("UPDATE RUN SET BELLTIME = '2026-01-31'");
    ado::Recordset runs;
    runs.Open("SELECT BELLTIME FROM RUN", connection);
    EXPECT_EQ(runs.Fields(0).Value(), Value(base::Date::of(2026, 1, 31)));
    runs.Close();
    other("UPDATE RUN SET BELLTIME = 'noon'");
    runs.Open("SELECT BELLTIME FROM RUN", connection);
    EXPECT_EQ(runs.Fields(0).Value(), Value("noon"));
}

TEST_F(Reading, NamesColumnsThatAJoinHasTwiceByTheirTables) {
    ado::Recordset stops;
    stops.Open(
        "SELECT STOP.*, STOP_TRIPTYPE.* FROM STOP INNER JOIN STOP_TRIPTYPE"
        " ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.ID = 2",
        connection);
    EXPECT_EQ(stops["StopId"].asText(), "S2");
    EXPECT_EQ(stops["stop.active"].asBoolean(), false);
    EXPECT_EQ(stops["STOP_TRIPTYPE.ACTIVE"].asBoolean(), true);
    EXPECT_EQ(stops["STOP.ACTIVE"].Name(), "STOP.ACTIVE");
    EXPECT_EQ(stops["RUNSEQ"].Name(), "RUNSEQ");
    EXPECT_EQ(errorOf([&] { stops["ACTIVE"]; }), ado::errors::ItemNotFound);
    EXPECT_EQ(errorOf([&] { stops["NOTHING"]; }), ado::errors::ItemNotFound);
    EXPECT_EQ(errorOf([&] { return stops.Fields(99).Name(); }), ado::errors::ItemNotFound);
}

TEST_F(Reading, AnEmptyResultIsAtBothEnds) {
    for (const auto type : {CursorType::ForwardOnly, CursorType::Static, CursorType::Dynamic}) {
        ado::Recordset none;
        none.Open("SELECT * FROM RUN WHERE RUN.RUN = 'R9'", connection, type);
        EXPECT_TRUE(none.Eof());
        EXPECT_TRUE(none.Bof());
        EXPECT_EQ(none.fieldCount(), 6);
        EXPECT_EQ(errorOf([&] { return none["RUN"].Value(); }), ado::errors::NoCurrentRecord);
        EXPECT_EQ(errorOf([&] { none.MoveFirst(); }), ado::errors::NoCurrentRecord);
        EXPECT_EQ(errorOf([&] { none.MoveNext(); }), ado::errors::NoCurrentRecord);
        EXPECT_EQ(none.RecordCount(), type == CursorType::ForwardOnly ? -1 : 0);
    }
}

TEST_F(Reading, StaticGoesBackAndCountsForwardOnlyDoesNot) {
    ado::Recordset all;
    all.Open("SELECT ID FROM STOP_TRIPTYPE ORDER BY ID", connection, CursorType::Static);
    all.MoveNext();
    EXPECT_EQ(all.RecordCount(), 4);
    EXPECT_EQ(all[std::string_view("ID")].asInteger(), 2);
    all.MoveLast();
    EXPECT_EQ(all["ID"].asInteger(), 4);
    all.MoveNext();
    EXPECT_TRUE(all.Eof());
    EXPECT_FALSE(all.Bof());
    all.MovePrevious();
    EXPECT_EQ(all["ID"].asInteger(), 4);
    all.MoveFirst();
    all.MovePrevious();
    EXPECT_TRUE(all.Bof());
    EXPECT_EQ(errorOf([&] { all.MovePrevious(); }), ado::errors::NoCurrentRecord);
    all.MoveNext();
    EXPECT_EQ(all["ID"].asInteger(), 1);

    ado::Recordset forward;
    forward.Open("SELECT ID FROM STOP_TRIPTYPE ORDER BY ID", connection);
    const ado::Field& id = forward["ID"];
    forward.MoveFirst();
    forward.MoveNext();
    EXPECT_EQ(forward.RecordCount(), -1);
    EXPECT_EQ(errorOf([&] { forward.MovePrevious(); }), ado::errors::NotInThisContext);
    EXPECT_EQ(errorOf([&] { forward.MoveLast(); }), ado::errors::NotInThisContext);
    EXPECT_EQ(id.asInteger(), 2);
    forward.MoveFirst();
    EXPECT_EQ(id.asInteger(), 1);
    EXPECT_EQ(rowsOf(forward), "1,2,3,4");
}

TEST_F(Reading, WhatIsNotOpenOrNoSelectSaysSo) {
    ado::Recordset records;
    EXPECT_EQ(errorOf([&] { return records.Eof(); }), ado::errors::ObjectClosed);
    EXPECT_EQ(errorOf([&] { records.Close(); }), ado::errors::ObjectClosed);
    ado::Connection closed;
    EXPECT_EQ(errorOf([&] { records.Open("SELECT * FROM RUN", closed); }),
              ado::errors::ObjectClosed);
    EXPECT_EQ(errorOf([&] { records.Open("DELETE FROM RUN", connection); }),
              ado::errors::SelectNotExecutable);
    EXPECT_EQ(errorOf([&] { records.Open("SELECT * FROM RUNS", connection); }),
              jet::errors::NoSuchTable);
    EXPECT_EQ(
        errorOf([&] { records.Open("SELECT * FROM RUN WHERE RUN.RUN = 'O'Hara'", connection); }),
        jet::errors::Syntax);
    EXPECT_EQ(records.State(), ado::ObjectState::Closed);
    records.Open("SELECT * FROM RUN", connection);
    EXPECT_EQ(errorOf([&] { records.Open("SELECT * FROM RUN", connection); }),
              ado::errors::ObjectOpen);
    EXPECT_EQ(other("SELECT count(*) FROM RUN"), "2");
}

TEST_F(Reading, APlanServesEveryValueAndSeveralRecordsetsAtATime) {
    for (const auto& [run, pickup] :
         {std::pair{"R1", "True"}, {"R2", "False"}, {"r1 ", "True"}, {"none", ""}, {"", ""}}) {
        ado::Recordset runs;
        runs.Open(std::string("SELECT RUN.PICKUP FROM RUN WHERE RUN.RUN='") + run + "'",
                  connection);
        EXPECT_EQ(rowsOf(runs), pickup) << run;
    }
    ado::Recordset outer;
    outer.Open("SELECT ID FROM STOP_TRIPTYPE WHERE ID > 0 ORDER BY ID", connection);
    std::string all;
    for (; !outer.Eof(); outer.MoveNext()) {
        ado::Recordset inner;
        inner.Open(
            "SELECT ID FROM STOP_TRIPTYPE WHERE ID > " + outer["ID"].asText() + " ORDER BY ID",
            connection);
        all += rowsOf(inner) + ";";
    }
    EXPECT_EQ(all, "2,3,4;3,4;4;;");
}

TEST_F(Reading, PlansAreForgottenInTheirTurnAndMadeAgain) {
    for (int round = 0; round < 2; ++round) {
        for (int width = 1; width <= 300; ++width) {
            std::string where = "ID = 1";
            for (int i = 1; i < width % 40 + width / 40; ++i) {
                where +=
                    " AND RUNSEQ + " + std::string(static_cast<std::size_t>(width), '0') + "1 > 0";
            }
            ado::Recordset rows;
            rows.Open(
                "SELECT ID AS N" + std::to_string(width) + " FROM STOP_TRIPTYPE WHERE " + where,
                connection);
            ASSERT_EQ(rows.Fields("n" + std::to_string(width)).asInteger(), 1);
        }
    }
}

TEST_F(Reading, AKeyIsFoundWhateverApostrophesItHolds) {
    for (const std::string key : {"O'NEIL", "'", "''", "R1' OR '1'='1", "\"x\"", "it''s'"}) {
        ado::Recordset run;
        run.Open("SELECT * FROM RUN WHERE RUN.RUN = 'R1'", connection, CursorType::Dynamic);
        run.AddNew();
        run["RUN"].Value(key);
        run.Update();
        ado::Recordset found;
        found.Open("SELECT RUN.RUN FROM RUN WHERE RUN.RUN='" + ado::escaped(key) + "'", connection);
        EXPECT_EQ(rowsOf(found), key);
    }
}

TEST_F(Reading, ConditionsAreTrimmedAndJoinedAndBlankOnesLeftOut) {
    ado::Conditions where;
    EXPECT_EQ(std::string(where.keyword()) + where.text(), "");
    where.addFilled(" RUN LIKE '{}%'", "  ");
    where.addFilled(" RUN LIKE '{}%'", " O'N ");
    EXPECT_EQ(std::string(where.keyword()) + where.text(), " Where  RUN LIKE 'O'N%'");
    where.add(" (");
    where.append(" A = 1 ");
    where.append(")");
    EXPECT_EQ(where.text(), "RUN LIKE 'O'N%' AND ( A = 1)");
}

/// Memory that the process holds now, in bytes.
std::size_t residentBytes() {
    std::size_t whole = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST_F(Reading, RowsGoThroughWithoutBeingKept) {
    connection.Close();
    other(
        "CREATE TABLE LOG (NOTE TEXT); WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1"
        " FROM n WHERE i < 10000) INSERT INTO LOG SELECT printf('%10000s', 'x') FROM n");
    connection.Open(path);
    ado::Recordset log;
    log.Open("SELECT LOG.* FROM LOG", connection);
    const std::size_t before = residentBytes();
    std::size_t characters = 0;
    for (; !log.Eof(); log.MoveNext()) {
        characters += log["NOTE"].textView().size();
    }
    EXPECT_EQ(characters, 100'000'000U);
    EXPECT_LT(residentBytes(), before + (30U << 20));
}

}  // namespace
