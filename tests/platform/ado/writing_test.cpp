#include <cmath>

#include <gmock/gmock.h>

#include "smalldistrict.h"

namespace {

using ado::CursorType;
using base::Date;
using base::Value;

constexpr const char* StopsOfRun =
    "SELECT STOP.*, STOP_TRIPTYPE.* FROM STOP INNER JOIN STOP_TRIPTYPE"
    " ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.RUN = 'R1'"
    " ORDER BY STOP_TRIPTYPE.RUNSEQ";

class Writing : public SmallDistrict {
protected:
    void open(const std::string& sql, CursorType type = CursorType::ForwardOnly) {
        records.Open(sql, connection, type);
    }
    void openR1() { open("Select RUN.* from RUN WHERE RUN.RUN='R1'"); }

    ado::Recordset records;
};

TEST_F(Writing, ConvertsToTheColumnsKind) {
    open("SELECT * FROM STOP_TRIPTYPE WHERE ID = 1");
    records["RUN"].Value("R7   ");
    records["RUNSEQ"].Value("12");
    records["LOAD_TIME"].Value(0.1);
    records["TIME_AT_STOP"].Value("7:5 am");
    records["ACTIVE"].Value(0);
    records["NOTE"].Value("verbatim  ");
    records.Update();
    EXPECT_EQ(other("SELECT RUN || '/' || RUNSEQ || '/' || LOAD_TIME || '/' || TIME_AT_STOP || '/'"
                    " || ACTIVE || '/' || NOTE FROM STOP_TRIPTYPE WHERE ID = 1"),
              "R7/12/0.1/1899-12-30 07:05:00/0/verbatim  ");
    EXPECT_EQ(records["RUN"].asText(), "R7");
    EXPECT_EQ(records["TIME_AT_STOP"].Value(), Value(Date::timeOfDay(7, 5)));

    records["RUN"].Value("    ");
    records["ACTIVE"].Value(2);
    records["LOAD_TIME"].Value(1.0 / 3);
    records.Update();
    EXPECT_EQ(other("SELECT '<' || RUN || '>' || ACTIVE || LOAD_TIME FROM STOP_TRIPTYPE"
                    " WHERE ID = 1"),
              "< >10.33333334");
    records["ACTIVE"].Value(Value());
    records["RUN"].Value("");
    records.Update();
    EXPECT_EQ(other("SELECT '<' || RUN || '>' || ACTIVE FROM STOP_TRIPTYPE WHERE ID = 1"), "< >0");
}

TEST_F(Writing, RefusesWhatDoesNotFitAndGoesOn) {
    open("SELECT * FROM STOP_TRIPTYPE WHERE ID = 1");
    EXPECT_EQ(errorOf([&] { records["RUNSEQ"].Value("first"); }), base::errors::TypeMismatch);
    EXPECT_EQ(errorOf([&] { records["TIME_AT_STOP"].Value("soon"); }), base::errors::TypeMismatch);
    EXPECT_EQ(errorOf([&] { records["ID"].Value(9); }), ado::errors::NotUpdatable);
    records["RUNSEQ"].Value(5);
    records.Update();
    EXPECT_EQ(other("SELECT RUNSEQ FROM STOP_TRIPTYPE WHERE ID = 1"), "5");
}

TEST_F(Writing, TellsADeletedFromAChangedRecord) {
    openR1();
    other("UPDATE RUN SET TOTAL_MILES = 9 WHERE RUN = 'R1'");
    records["DESCRIPTION"].Value("Elm");
    EXPECT_EQ(errorOf([&] { records.Update(); }), ado::errors::RecordChanged);
    EXPECT_EQ(other("SELECT DESCRIPTION || TOTAL_MILES FROM RUN WHERE RUN = 'R1'"), "Oak 9.0");

    records.Resync();
    EXPECT_EQ(records["TOTAL_MILES"].asNumber(), 9);
    EXPECT_EQ(records["DESCRIPTION"].asText(), "Oak ") << "what was set is dropped";
    records["DESCRIPTION"].Value("Elm");
    records.Update();
    EXPECT_EQ(other("SELECT DESCRIPTION FROM RUN WHERE RUN = 'R1'"), "Elm");

    other("DELETE FROM RUN WHERE RUN = 'R1'");
    records["DESCRIPTION"].Value("Ash");
    EXPECT_EQ(errorOf([&] { records.Update(); }), ado::errors::RecordDeleted);
    EXPECT_EQ(errorOf([&] { records.Update(); }), ado::errors::RecordDeleted) << "can be retried";
    EXPECT_EQ(errorOf([&] { records.Resync(); }), ado::errors::RecordDeleted);
    EXPECT_EQ(errorOf([&] { records.Delete(); }), ado::errors::RecordDeleted);
}

TEST_F(Writing, WritesOnlyTheFieldsThatChanged) {
    open("SELECT RUN.RUN, RUN.DESCRIPTION FROM RUN WHERE RUN.RUN='R1'");
    other("CREATE TRIGGER t BEFORE UPDATE OF RUN ON RUN BEGIN SELECT RAISE(ABORT, 'written'); END");
    other("UPDATE RUN SET TOTAL_MILES = 9");
    records["RUN"].Value("R1");
    records["DESCRIPTION"].Value("Elm");
    records.Update();
    EXPECT_EQ(other("SELECT DESCRIPTION || TOTAL_MILES FROM RUN WHERE RUN = 'R1'"), "Elm9.0");
}

TEST_F(Writing, EachRowOfAnOrderedJoinOnTheWay) {
    open(StopsOfRun);
    for (int minute = 1; !records.Eof(); ++minute) {
        records["TIME_AT_STOP"].Value(Date::timeOfDay(8, minute));
        records["STOP_TRIPTYPE.ACTIVE"].Value(false);
        records.Update();
        EXPECT_EQ(records["TIME_AT_STOP"].Value(), Value(Date::timeOfDay(8, minute)));
        records.MoveNext();
    }
    EXPECT_EQ(other("SELECT group_concat(TIME_AT_STOP || ACTIVE) FROM"
                    " (SELECT * FROM STOP_TRIPTYPE WHERE RUN = 'R1' ORDER BY RUNSEQ)"),
              "1899-12-30 08:01:000,1899-12-30 08:02:000,1899-12-30 08:03:000");
    EXPECT_EQ(other("SELECT sum(ACTIVE) FROM STOP"), "3") << "the other table's column was hit";
}

TEST_F(Writing, TheColumnThatTheRowsAreOrderedByDoesNotMeetThemAgain) {
    open("SELECT * FROM STOP_TRIPTYPE WHERE RUNSEQ > 0 ORDER BY RUN, RUNSEQ");
    int rows = 0;
    for (; !records.Eof() && rows < 100; records.MoveNext(), ++rows) {
        records["RUNSEQ"].Value(records["RUNSEQ"].asInteger() + 10);
        records.Update();
    }
    EXPECT_EQ(rows, 4);
    EXPECT_EQ(other("SELECT sum(RUNSEQ) FROM STOP_TRIPTYPE"), "47");
}

TEST_F(Writing, BothTablesOfAJoinTogetherOrNotAtAll) {
    open(StopsOfRun);
    records["STOPID"].Value("S1x");
    records["RUNSEQ"].Value(9);
    records.Update();
    EXPECT_EQ(other("SELECT STOPID || RUNSEQ FROM STOP JOIN STOP_TRIPTYPE USING (INT_STOPID)"
                    " WHERE ID = 1"),
              "S1x9");
    other("UPDATE STOP_TRIPTYPE SET NOTE = 'changed' WHERE ID = 1");
    records["STOPID"].Value("S1y");
    records["RUNSEQ"].Value(10);
    EXPECT_EQ(errorOf([&] { records.Update(); }), ado::errors::RecordChanged);
    EXPECT_EQ(other("SELECT STOPID || RUNSEQ FROM STOP JOIN STOP_TRIPTYPE USING (INT_STOPID)"
                    " WHERE ID = 1"),
              "S1x9");
}

TEST_F(Writing, AStopThatStandsInTwoRowsIsNotTakenForChangedByAnother) {
    open(
        "SELECT STOP.STOPID, STOP.STOPTYPE, STOP_TRIPTYPE.RUN FROM STOP INNER JOIN STOP_TRIPTYPE"
        " ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP.INT_STOPID = 3"
        " ORDER BY STOP_TRIPTYPE.RUN");
    records["STOPID"].Value("first");
    records.Update();
    records.MoveNext();
    EXPECT_EQ(records["RUN"].asText(), "R2");
    EXPECT_EQ(records["STOPID"].asText(), "first");
    records["STOPID"].Value("second");
    records.Update();
    EXPECT_EQ(other("SELECT STOPID FROM STOP WHERE INT_STOPID = 3"), "second");
}

TEST_F(Writing, OnARowThatAnOuterJoinDidNotFindIsRefused) {
    open(
        "SELECT STOP.STOPID, STOP_TRIPTYPE.RUNSEQ FROM STOP LEFT JOIN STOP_TRIPTYPE"
        " ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE STOP.INT_STOPID = 4");
    EXPECT_TRUE(records["RUNSEQ"].isNull());
    EXPECT_EQ(errorOf([&] { records["RUNSEQ"].Value(1); }), ado::errors::NotUpdatable);
    records["STOPID"].Value("S4x");
    records.Update();
    EXPECT_EQ(other("SELECT STOPID FROM STOP WHERE INT_STOPID = 4"), "S4x");
}

TEST_F(Writing, WhatCannotBeWrittenSaysSo) {
    open("SELECT RUN, Count(ID) AS HOWMANY FROM STOP_TRIPTYPE GROUP BY RUN");
    EXPECT_EQ(errorOf([&] { records["RUN"].Value("x"); }), ado::errors::NotUpdatable);
    EXPECT_EQ(errorOf([&] { records.AddNew(); }), ado::errors::NotUpdatable);
    EXPECT_EQ(errorOf([&] { records.Delete(); }), ado::errors::NotUpdatable);
    EXPECT_EQ(errorOf([&] { records.Resync(); }), ado::errors::NotUpdatable);
    records.Close();
    open("SELECT RUN.RUN, RUN.TOTAL_MILES + 1 AS MORE FROM RUN");
    EXPECT_EQ(errorOf([&] { records["MORE"].Value(1); }), ado::errors::NotUpdatable);
    records.Close();
    records.Open("SELECT * FROM RUN", connection, CursorType::Static, ado::LockType::ReadOnly);
    EXPECT_EQ(errorOf([&] { records["DESCRIPTION"].Value("x"); }), ado::errors::NotUpdatable);
    EXPECT_EQ(errorOf([&] { records.Delete(); }), ado::errors::NotUpdatable);
}

TEST_F(Writing, AppendsWithDefaultsAndReadsTheGeneratedKey) {
    open("Select Stop_Triptype.* from Stop_Triptype Where Stop_Triptype.ID=0");
    EXPECT_TRUE(records.Eof());
    for (const int stop : {1, 2}) {
        records.AddNew();
        EXPECT_FALSE(records.Eof());
        EXPECT_EQ(records["NOTE"].asText(), "new");
        EXPECT_EQ(records["RUNSEQ"].Value(), Value(0));
        EXPECT_TRUE(records["RUN"].isNull());
        records["INT_STOPID"].Value(stop);
        records["RUN"].Value("R2 ");
        records.Update();
        EXPECT_EQ(records["ID"].asInteger(), 4 + stop);
        EXPECT_EQ(records["RUN"].asText(), "R2");
        EXPECT_EQ(records["NOTE"].asText(), "new");
    }
    records["NOTE"].Value("afterwards");
    records.Update();
    records.MoveNext();
    EXPECT_TRUE(records.Eof());
    EXPECT_EQ(other("SELECT group_concat(ID || NOTE || ACTIVE) FROM STOP_TRIPTYPE WHERE ID > 4"),
              "5new1,6afterwards1");
}

TEST_F(Writing, AKeyOfADeletedRecordIsNotUsedAgain) {
    open("SELECT * FROM STOP_TRIPTYPE WHERE ID = 4", CursorType::Static);
    records.Delete();
    records.AddNew();
    records.Update();
    EXPECT_EQ(records["ID"].asInteger(), 5);
}

TEST_F(Writing, ADuplicateIsRefusedAndTheNewRecordCanBeDropped) {
    open("SELECT * FROM RUN ORDER BY RUN", CursorType::Static);
    records.MoveNext();
    records.AddNew();
    records["RUN"].Value("r1");
    EXPECT_EQ(errorOf([&] { records.Update(); }), store::numberOf(store::Fault::Constraint));
    records["RUN"].Value("R3");
    records.Update();
    records.AddNew();
    records["RUN"].Value("R4");
    records.CancelUpdate();
    EXPECT_EQ(records["RUN"].asText(), "R3");
    EXPECT_EQ(records.RecordCount(), 3);
    EXPECT_EQ(other("SELECT group_concat(RUN) FROM RUN"), "R1,R2,R3");
}

TEST_F(Writing, ASetFieldShowsUntilItIsWrittenOrDroppedAndLeavingTheRecordWrites) {
    open("SELECT * FROM RUN ORDER BY RUN");
    records["DESCRIPTION"].Value("Elm");
    EXPECT_EQ(records["DESCRIPTION"].textView(), "Elm");
    EXPECT_EQ(other("SELECT DESCRIPTION FROM RUN WHERE RUN = 'R1'"), "Oak ");
    records.CancelUpdate();
    EXPECT_EQ(records["DESCRIPTION"].asText(), "Oak ");
    records["DESCRIPTION"].Value("Ash");
    records.MoveNext();
    EXPECT_EQ(records["RUN"].asText(), "R2");
    EXPECT_EQ(other("SELECT DESCRIPTION FROM RUN WHERE RUN = 'R1'"), "Ash");
}

TEST_F(Writing, DeletedRecordsAreSteppedOver) {
    open("SELECT ID FROM STOP_TRIPTYPE ORDER BY ID", CursorType::Dynamic);
    records.MoveNext();
    records.Delete();
    EXPECT_EQ(errorOf([&] { return records["ID"].Value(); }), ado::errors::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { records.Delete(); }), ado::errors::NoCurrentRecord);
    records.MoveNext();
    EXPECT_EQ(records["ID"].asInteger(), 3);
    records.MovePrevious();
    EXPECT_EQ(records["ID"].asInteger(), 1);
    EXPECT_EQ(records.RecordCount(), 3);
    records.MoveFirst();
    for (; !records.Eof(); records.MoveNext()) {
        records.Delete();
    }
    EXPECT_EQ(records.RecordCount(), 0);
    EXPECT_TRUE(records.Bof());
    EXPECT_EQ(other("SELECT count(*) FROM STOP_TRIPTYPE"), "0");
}

TEST_F(Writing, FiguresAreComparedAsTheyAreStored) {
    other("UPDATE STOP_TRIPTYPE SET LOAD_TIME = 1.23456789012 WHERE ID = 1");
    open("SELECT * FROM STOP_TRIPTYPE WHERE ID = 1");
    EXPECT_EQ(records["LOAD_TIME"].asText(), "1.2345679");
    records["RUNSEQ"].Value(3);
    records.Update();
    records.Resync();
    records["RUNSEQ"].Value(4);
    records.Update();
    EXPECT_EQ(other("SELECT RUNSEQ FROM STOP_TRIPTYPE WHERE ID = 1"), "4");
}

}  // namespace
