#include <csignal>
#include <optional>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/ado/command.h"
#include "platform/store/open/open.h"
#include "smalldistrict.h"

namespace {

using ado::CursorType;

class Connections : public SmallDistrict {
protected:
    [[nodiscard]] std::string miles() const {
        return other("SELECT group_concat(TOTAL_MILES) FROM RUN");
    }
    void setMiles(int miles) {
        connection.Execute("UPDATE RUN SET RUN.TOTAL_MILES = " + std::to_string(miles));
    }
};

TEST_F(Connections, ExecuteAndCommandsCountTheRowsThatTheyChange) {
    EXPECT_EQ(connection.Execute("UPDATE RUN SET RUN.PICKUP = True"), 2);
    EXPECT_EQ(connection.Execute("DELETE FROM RUN WHERE RUN.RUN = 'R9'"), 0);
    ado::Command command;
    command.CommandText("DELETE FROM RUN WHERE RUN.RUN = 'R1 '");
    EXPECT_EQ(errorOf([&] { command.Execute(); }), ado::errors::ObjectClosed);
    command.ActiveConnection(&connection);
    EXPECT_EQ(command.Execute(), 1);
    EXPECT_EQ(errorOf([&] { connection.Execute("SELECT * FROM RUN"); }),
              ado::errors::SelectNotExecutable);
}

TEST_F(Connections, AHalfReadRecordsetNeitherHindersAWriteNorSeesIt) {
    for (const auto type : {CursorType::ForwardOnly, CursorType::Static}) {
        ado::Recordset stops;
        stops.Open("SELECT ID, RUNSEQ FROM STOP_TRIPTYPE ORDER BY ID", connection, type);
        stops.MoveNext();
        const std::string before = other("SELECT RUNSEQ FROM STOP_TRIPTYPE WHERE ID = 3");
        other("UPDATE STOP_TRIPTYPE SET NOTE = 'another program'");
        connection.Execute("UPDATE STOP_TRIPTYPE SET RUNSEQ = RUNSEQ + 10");
        EXPECT_EQ(stops["ID"].asInteger(), 2);
        stops.MoveNext();
        EXPECT_EQ(stops["RUNSEQ"].asText(), before);
        stops.MoveNext();
        stops.MoveNext();
        EXPECT_TRUE(stops.Eof());
    }
    EXPECT_EQ(other("SELECT sum(RUNSEQ) FROM STOP_TRIPTYPE"), "87");
}

TEST_F(Connections, TransactionsBeginBesideOpenRecordsetsAndNest) {
    ado::Recordset runs;
    runs.Open("SELECT * FROM RUN", connection);
    other("UPDATE RUN SET TOTAL_MILES = 1");
    connection.BeginTrans();
    EXPECT_THROW(PlainFile(path).run("UPDATE RUN SET TOTAL_MILES = 2"), std::runtime_error);
    setMiles(3);
    connection.BeginTrans();
    setMiles(4);
    connection.RollbackTrans();
    EXPECT_EQ(miles(), "1.0,1.0");
    connection.CommitTrans();
    EXPECT_EQ(miles(), "3.0,3.0");
    EXPECT_EQ(errorOf([&] { connection.CommitTrans(); }), ado::errors::NoTransaction);
    EXPECT_EQ(errorOf([&] { connection.RollbackTrans(); }), ado::errors::NoTransaction);
    connection.BeginTrans();
    setMiles(5);
    connection.RollbackTrans();
    EXPECT_EQ(miles(), "3.0,3.0");
}

TEST_F(Connections, ARecordsetReadInATransactionOutlivesItsRollback) {
    connection.BeginTrans();
    ado::Recordset stops;
    stops.Open("SELECT ID FROM STOP_TRIPTYPE ORDER BY ID", connection);
    connection.RollbackTrans();
    EXPECT_EQ(rowsOf(stops), "1,2,3,4");
}

TEST_F(Connections, AUnitOfWorkKeepsWhatAFaultLeft) {
    try {
        const ado::CommitOnExit unit(connection);
        setMiles(7);
        const ado::CommitOnExit inner(connection);
        connection.Execute("INSERT INTO RUN (RUN) VALUES ('R1')");
        FAIL() << "took a duplicate key";
    } catch (const store::StoreError& error) {
        EXPECT_EQ(error.fault(), store::Fault::Constraint);
    }
    EXPECT_EQ(miles(), "7.0,7.0");
    EXPECT_EQ(errorOf([&] { connection.CommitTrans(); }), ado::errors::NoTransaction);

    std::optional<ado::CommitOnExit> unit(connection);
    setMiles(8);
    unit->commit();
    EXPECT_EQ(miles(), "8.0,8.0");
    unit.reset();
    unit.emplace(connection);
    setMiles(9);
    connection.Close();
    EXPECT_EQ(miles(), "9.0,9.0") << "closing keeps the unit, too";
}

TEST_F(Connections, GroupWorkGivesWayToAnotherProgram) {
    ado::Connection another;
    another.Open(path);
    ado::GroupWork work(connection);
    another.BeginTrans();
    EXPECT_FALSE(work.unit([this] { setMiles(4); }));
    another.CommitTrans();
    EXPECT_TRUE(work.unit([this] { setMiles(5); }));
    EXPECT_EQ(miles(), "5.0,5.0");
}

TEST_F(Connections, AKilledProgramLeavesNoHalfUnit) {
    connection.Close();
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        connection.Open(path);
        const ado::CommitOnExit unit(connection);
        setMiles(99);
        ado::Recordset runs;
        runs.Open("SELECT * FROM RUN", connection);
        runs.Delete();
        const bool told = write(ready[1], "x", 1) == 1;
        pause();
        _exit(told ? 0 : 1);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    kill(child, SIGKILL);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    close(ready[0]);
    close(ready[1]);
    EXPECT_EQ(miles(), "3.5,0.0");
    connection.Open(path);
    setMiles(1);
}

TEST_F(Connections, ClosingClosesTheRecordsetsAndLetsGoOfTheFile) {
    ado::Recordset half;
    half.Open("SELECT * FROM RUN", connection);
    ado::Recordset done;
    done.Open("SELECT * FROM RUN WHERE RUN.RUN = 'R9'", connection, CursorType::Static);
    connection.Close();
    EXPECT_EQ(connection.State(), ado::ObjectState::Closed);
    EXPECT_EQ(half.State(), ado::ObjectState::Closed);
    EXPECT_EQ(errorOf([&] { half.MoveNext(); }), ado::errors::ObjectClosed);
    EXPECT_EQ(errorOf([&] { connection.Execute("DELETE FROM RUN"); }), ado::errors::ObjectClosed);
    EXPECT_EQ(other("PRAGMA locking_mode = EXCLUSIVE; UPDATE RUN SET TOTAL_MILES = 1;"
                    " SELECT changes()"),
              "2");
    connection.Open(path);
    EXPECT_EQ(errorOf([&] { connection.Open(path); }), ado::errors::ObjectOpen);
    half.Open("SELECT * FROM RUN", connection);
    EXPECT_FALSE(half.Eof());
}

TEST_F(Connections, LinkedTablesAreJoinedAndOwnOnesWin) {
    {
        const auto trip = store::createFile(folder.path() + "trip.mdb");
        trip->create({"RUN", {{"NOTHING"}}});
        trip->create(
            {"EMPLOYEE",
             {{"EMPNUM", store::ColumnKind::Integer}, {"LASTNAME", store::ColumnKind::Text}},
             {"EMPNUM"}});
        trip->execute("INSERT INTO EMPLOYEE VALUES (7, 'Smith')");
    }
    EXPECT_NE(errorOf([&] { ado::Recordset().Open("SELECT * FROM EMPLOYEE", connection); }), 0);
    connection.link(folder.path() + "trip.mdb");
    ado::Recordset drivers;
    drivers.Open(
        "SELECT RUN.RUN, EMPLOYEE.LASTNAME FROM RUN LEFT JOIN EMPLOYEE"
        " ON RUN.INT_ROUTEID = EMPLOYEE.EMPNUM ORDER BY RUN.RUN",
        connection);
    EXPECT_EQ(errorOf([&] { connection.link(path); }), ado::errors::ObjectOpen);
    EXPECT_EQ(rowsOf(drivers), "R1|Null,R2|Smith");
}

}  // namespace
