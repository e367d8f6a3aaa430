#include "stops/triprecord/triprecord.h"

#include "fixture.h"
#include "stops/triprecord/stopstudents.h"
#include "stops/triprecord/triptimes.h"

namespace stops {
namespace {

using base::Date;

class StoredTripRecord : public TripRecordTest {
protected:
    ado::Connection& routing() { return *startup::gcnRouting; }
    Stamp stamp() { return {"PLANNER", session.clock.time}; }
    TripRecord read(int id) { return *readTripRecord(routing(), id); }
    SaveResult save(const TripRecord& held, const TripFields& fields) {
        return saveTripRecord(routing(), held, fields, stamp()).result;
    }
    bool timeAround(int id, Date time) {
        TripRecord held = read(id);
        TripFields fields = held.fields;
        fields[TripField::TimeAtStop] = time;
        EXPECT_EQ(save(held, fields), SaveResult::Saved);
        return timeRunAround(routing(), read(id), stamp(), [](const std::string&) {});
    }
    static std::string spanOfRun() {
        return rowsOf("SELECT STARTTIME, ENDTIME, ChangedBy FROM RUN WHERE RUN='R'");
    }
};

TEST_F(StoredTripRecord, IsSavedWithItsAuditColumnsAndTheStopsComment) {
    const TripRecord held = read(43);
    TripFields fields = held.fields;
    EXPECT_EQ(save(held, fields), SaveResult::Saved);
    const auto status = "SELECT STATUSCHGDT, changeddt FROM STOP_TRIPTYPE WHERE ID=43";
    EXPECT_EQ(rowsOf(status), "Null|1/31/2026 8:05:09 AM");
    fields[TripField::Active] = false;
    fields[TripField::Students] = 6.0;
    fields[TripField::PickupSide] = "right";
    fields[TripField::Comment] = "Ask for O'Hara's \"gate\"";
    EXPECT_EQ(save(read(43), fields), SaveResult::Saved);
    EXPECT_EQ(record(43),
              "6|2.3533332|9|0|7:10:00 AM|right|False|Ask for O'Hara's \"gate\"|PLANNER");
    EXPECT_EQ(rowsOf(status), "1/31/2026 8:05:09 AM|1/31/2026 8:05:09 AM");
    EXPECT_EQ(read(50).fields[TripField::Comment], fields[TripField::Comment]);
}

TEST_F(StoredTripRecord, IsNotSavedOverWhatSomebodyElseDid) {
    for (const auto* change : {"UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 8 WHERE ID = 43",
                               "UPDATE STOP SET COMMENT = 'Gate code 9' WHERE INT_STOPID = 13",
                               "UPDATE STOP_TRIPTYPE SET RUN = ' ', RUNSEQ = 0 WHERE ID = 43"}) {
        const TripRecord held = read(43);
        TripFields fields = held.fields;
        fields[TripField::Distance] = 2.5;
        sql(change);
        const auto before = record(43);
        EXPECT_EQ(save(held, fields), SaveResult::Changed) << change;
        EXPECT_EQ(record(43), before);
    }
    const TripRecord held = read(43);
    sql("DELETE FROM STOP_TRIPTYPE WHERE ID = 43");
    EXPECT_EQ(save(held, held.fields), SaveResult::Deleted);
}

TEST_F(StoredTripRecord, IsTheFixedPointOfItsRunsTimes) {
    // 7:00 + load 1 + drive 9 is 7:10; 7:10 + load 2:21 + drive 10 is 7:22:21.
    EXPECT_TRUE(timeAround(43, Date::timeOfDay(7, 20)));
    EXPECT_EQ(timesOfRun(), "7:10:00 AM Null 7:20:00 AM 7:32:21 AM");
    EXPECT_EQ(spanOfRun(), "7:10:00 AM|7:32:21 AM|PLANNER");
}

TEST_F(StoredTripRecord, StaysTheFixedPointWhereAnEarlierStopHasTheSameTime) {
    EXPECT_TRUE(timeAround(43, Date::timeOfDay(7, 0)));
    EXPECT_EQ(timesOfRun(), "6:50:00 AM Null 7:00:00 AM 7:12:21 AM");
    EXPECT_EQ(spanOfRun(), "6:50:00 AM|7:12:21 AM|PLANNER");
}

TEST_F(StoredTripRecord, FixesNothingWhereItTakesNoPartInTheTimes) {
    EXPECT_FALSE(timeAround(42, Date::timeOfDay(7, 5)));
    EXPECT_FALSE(timeAround(50, Date::timeOfDay(7, 5)));
    EXPECT_EQ(timesOfRun(), "7:00:00 AM 7:05:00 AM 7:10:00 AM 7:30:00 AM");
    EXPECT_EQ(spanOfRun(), "7:00:00 AM|7:30:00 AM|Null");
    EXPECT_EQ(stopWithoutMinutes(routing(), "R"), "");
    sql("UPDATE STOP_TRIPTYPE SET LOAD_TIME = NULL WHERE ID = 43");
    EXPECT_EQ(stopWithoutMinutes(routing(), "R"), "B");
}

TEST_F(StoredTripRecord, ListsEachStudentOnce) {
    const auto lines = [](const table::TextTable& table) {
        std::string text;
        for (std::size_t row = 0; row < table.rowCount(); ++row) {
            for (std::size_t column = 0; column < table.columns.size(); ++column) {
                text += table.text(row, column) + "|";
            }
        }
        return text;
    };
    EXPECT_EQ(lines(readStopNeeds(routing(), read(43))), "AIDE| |1|WC|Wheelchair|1|");
    EXPECT_EQ(lines(readStopStudents(routing(), read(43))),
              "Adams, Lee||ST2|OAK|Hill, Kim|AIDE, WC|ST1|OAK|");
    EXPECT_EQ(readStopStudents(routing(), read(50)).rowCount(), 0U);
}

}  // namespace
}  // namespace stops
